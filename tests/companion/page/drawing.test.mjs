// What drawing costs, and models that lack something.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { closePage, Examples, openPage, settle, startBrowser } from "./support/browser.mjs";
import { choose, press, seePicture, setShows } from "./support/person.mjs";
import { countDifferences } from "./support/png.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const MostShellCalls = 2; // four-node and three-node shells

for (const name of Examples) {
  test(`${name}: two draw calls for shells, one for each section of beams at most`, async () => {
    const page = await openPage(browser, name);
    const [calls, sections, shells] = await page.evaluate(() => {
      const { scene, model } = window.kvx;
      return [scene.drawCalls(), model.sections.length, model.shells.count + model.triangles.count];
    });
    assert.ok(calls.shells <= MostShellCalls && calls.shells > 0 === shells > 0, `${calls.shells}`);
    assert.ok(calls.beams <= sections && calls.beams > 0 === sections > 0, `${calls.beams}`);
    await closePage(page);
  });
}

test("a model without beams has no controls for them, one without shells none for shells", async () => {
  const trough = await openPage(browser, "water-trough");
  assert.equal(await trough.getByRole("combobox", { name: "Beams", exact: true }).count(), 0);
  assert.equal(await trough.getByRole("checkbox", { name: "Beams", exact: true }).count(), 0);
  await closePage(trough);
  const tower = await openPage(browser, "lattice-tower");
  assert.equal(await tower.getByRole("combobox", { name: "Shells", exact: true }).count(), 0);
  assert.equal(await tower.getByRole("group", { name: "Face", exact: true }).count(), 0);
  await closePage(tower);
});

test("beams by detail models are drawn as these", async () => {
  const page = await openPage(browser, "strips");
  await setShows(page, { Shells: false });
  const values = await page
    .getByRole("combobox", { name: "Beams", exact: true })
    .locator("option")
    .evaluateAll((list) => list.map((option) => option.value));
  assert.ok(values.includes("detail"), `${values}`);
  await choose(page, "Beams", "beamN");
  const own = await seePicture(page);
  await choose(page, "Beams", "detail");
  assert.ok(countDifferences(own, await seePicture(page)) > 50);
  await closePage(page);
});

test("a narrow window keeps the picture and all controls", async () => {
  const page = await openPage(browser, "stiffened-panel", { width: 400, height: 640 });
  const canvas = await page.locator("canvas").boundingBox();
  assert.ok(canvas.width >= 400 && canvas.height >= 500);
  await page.getByRole("button", { name: "Controls", exact: true }).click();
  await settle(page);
  await page.getByRole("button", { name: "Controls", exact: true }).click();
  await press(page, "Fit");
  await closePage(page);
});

test("the window may change its size", async () => {
  const page = await openPage(browser, "strips");
  await page.setViewportSize({ width: 900, height: 500 });
  await settle(page);
  const size = await page.locator("canvas").evaluate((canvas) => [canvas.width, canvas.height]);
  assert.deepEqual(size, [900, 500]);
  await closePage(page);
});
