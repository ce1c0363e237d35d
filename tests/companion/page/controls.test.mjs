// Controls, used as a person would: what they change in the picture, the texts and the state.
import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { closePage, folderOf, openPage, settle, startBrowser, stateOf } from "./support/browser.mjs";
import { readModelFile } from "./support/model_file.mjs";
import { choose, chooseOne, press, projectPlace, seePicture, setLegend, setScale, setShows,
  showColorsAlone, unfold } from "./support/person.mjs";
import { countDifferences, countPixels, pixelOf } from "./support/png.mjs";
import { readDisplacements } from "./support/result_files.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Deck = "stiffened-panel";

// How much of the picture changes by what is done.
async function changeOf(page, act) {
  const earlier = await seePicture(page);
  await act();
  await settle(page);
  return countDifferences(earlier, await seePicture(page));
}

test("the deformation: slider, field, automatic; nodes stand where the file says", async () => {
  const page = await openPage(browser, Deck);
  const model = readModelFile(join(folderOf(Deck), "fem_solving.txt"));
  const displacements = readDisplacements(folderOf(Deck));
  const sizes = displacements.map((row) => Math.hypot(...row.slice(0, 3)));
  const largest = sizes.indexOf(Math.max(...sizes));
  const places = model.nodes.map((node) => node.place);
  const spans = [0, 1, 2].map((d) => Math.max(...places.map((p) => p[d])) - Math.min(...places.map((p) => p[d])));

  // Automatic: the largest displacement is drawn as at most 5 % of the diagonal, as a round factor.
  const field = page.getByRole("spinbutton", { name: "Scale of displacements" });
  const automatic = Number(await field.inputValue());
  const drawn = (automatic * sizes[largest]) / Math.hypot(...spans);
  assert.ok(drawn <= 0.05 && drawn > 0.02, `${drawn}`);

  for (const factor of [0, automatic, 3 * automatic]) {
    await setScale(page, String(factor));
    const place = places[largest].map((x, d) => x + factor * displacements[largest][d]);
    const [x, y] = await page.evaluate((node) => window.kvx.scene.projectNode(node), largest);
    const box = await page.locator("canvas").boundingBox();
    const [px, py] = await projectPlace(page, place);
    assert.ok(Math.hypot(px - box.x - x, py - box.y - y) < 0.1, `${factor}`);
  }

  const slider = page.getByRole("slider", { name: "Deformation" });
  const change = await changeOf(page, () => slider.fill("0"));
  assert.ok(change > 500, `${change}`);
  assert.equal((await stateOf(page)).scale, 0);
  await slider.fill(await slider.getAttribute("max"));
  assert.equal((await stateOf(page)).scale, 10 * automatic);
  await press(page, "Automatic");
  assert.equal((await stateOf(page)).scale, null);
  assert.equal(Number(await field.inputValue()), automatic);
  // What is no number changes nothing.
  await field.fill("wide");
  await field.press("Enter");
  assert.equal((await stateOf(page)).scale, null);
  await closePage(page);
});

test("the animation moves and stops", async () => {
  const page = await openPage(browser, "water-trough", { reducedMotion: "no-preference" });
  await press(page, "Animate");
  const one = await seePicture(page);
  await page.waitForTimeout(400);
  assert.ok(countDifferences(one, await seePicture(page)) > 100);
  await press(page, "Animate");
  const still = await seePicture(page);
  await page.waitForTimeout(200);
  assert.equal(countDifferences(still, await seePicture(page)), 0);
  await closePage(page);
});

test("each check box shows and hides something", async () => {
  const page = await openPage(browser, Deck);
  await unfold(page, "Show");
  for (const name of ["Shells", "Beams", "Element edges", "Undeformed", "Supports", "Loads",
    "Support forces", "Free edges", "Side colours", "Shading", "Global axes"]) {
    const box = page.getByRole("checkbox", { name, exact: true });
    const was = await box.isChecked();
    const change = await changeOf(page, () => box.setChecked(!was));
    assert.ok(change > 10, `${name}: ${change}`);
    assert.equal(await changeOf(page, () => box.setChecked(was)) > 10, true, name);
  }
  await closePage(page);
});

test("filters hide what has the thickness, section, material or part", async () => {
  const page = await openPage(browser, "strips");
  await showColorsAlone(page);
  await press(page, "Top view");
  await press(page, "Fit");
  await unfold(page, "Filter");
  const at = await projectPlace(page, [50, 340, 0]); // the third square, 3 thick
  const tube = await projectPlace(page, [200, 1500, 20]);
  const picture = await seePicture(page);
  const ground = pixelOf(picture, 2, 478);
  const isGround = async ([x, y]) => {
    const color = pixelOf(await seePicture(page), x, y);
    return color.every((value, channel) => Math.abs(value - ground[channel]) < 12);
  };
  assert.equal(await isGround(at), false);
  const thickness = page.getByRole("group", { name: "Thickness", exact: true });
  await thickness.getByRole("checkbox", { name: "3", exact: true }).uncheck();
  assert.equal(await isGround(at), true);
  assert.deepEqual((await stateOf(page)).hidden.thicknesses, [2]);
  await thickness.getByRole("button", { name: "Show all" }).click();
  assert.equal(await isGround(at), false);

  const part = page.getByRole("group", { name: "Part", exact: true });
  assert.equal(await part.getByRole("checkbox").count(), 12);
  await part.getByRole("button", { name: /^Only/ }).nth(2).click();
  assert.equal((await stateOf(page)).hidden.parts.length, 11);
  assert.equal(await isGround(at), false);
  assert.equal(await isGround(tube), true);
  // The legend's extremes are those of what is left: 25 N/mm².
  await page.getByRole("button", { name: /^Maximum: 25 in shell 2/ }).waitFor();
  await part.getByRole("button", { name: "Show all" }).click();

  const section = page.getByRole("group", { name: "Section", exact: true });
  assert.equal(await isGround(tube), false);
  await section.getByRole("checkbox").first().uncheck();
  assert.equal(await isGround(tube), true);
  await closePage(page);
});

test("the clipping plane takes away one side, then the other", async () => {
  const page = await openPage(browser, Deck);
  await showColorsAlone(page);
  await press(page, "Top view");
  await press(page, "Fit");
  await unfold(page, "Clip");
  // The panel is 7200 long: places on both sides of its middle.
  const model = readModelFile(join(folderOf(Deck), "fem_solving.txt"));
  const xs = model.nodes.map((node) => node.place[0]);
  const [low, high] = [Math.min(...xs), Math.max(...xs)];
  const left = await projectPlace(page, [low + 0.3 * (high - low), 1333, 0]);
  const right = await projectPlace(page, [low + 0.7 * (high - low), 1333, 0]);
  const look = async () => {
    const picture = await seePicture(page);
    const ground = pixelOf(picture, 2, 478);
    return [left, right].map(([x, y]) =>
      pixelOf(picture, x, y).some((value, channel) => Math.abs(value - ground[channel]) > 12),
    );
  };
  assert.deepEqual(await look(), [true, true]);
  await chooseOne(page, "Plane across", "x");
  await page.getByRole("slider", { name: "Place of the plane" }).fill("500");
  assert.deepEqual(await look(), [true, false]);
  await page.getByRole("checkbox", { name: "Other side" }).check();
  assert.deepEqual(await look(), [false, true]);
  await page.getByRole("slider", { name: "Place of the plane" }).fill("900");
  assert.deepEqual(await look(), [false, false]);
  await chooseOne(page, "Plane across", "Off");
  assert.deepEqual(await look(), [true, true]);
  await closePage(page);
});

test("standard views, projection and keys of the picture turn the model", async () => {
  const page = await openPage(browser, Deck);
  const directions = {
    "Top view": [0, 0, 1],
    "Bottom view": [0, 0, -1],
    "Front view": [0, -1, 0],
    "Back view": [0, 1, 0],
    "Left view": [-1, 0, 0],
    "Right view": [1, 0, 0],
  };
  for (const [name, direction] of Object.entries(directions)) {
    await press(page, name);
    const camera = await page.evaluate(() => window.kvx.scene.camera());
    camera.direction.forEach((value, d) => assert.ok(Math.abs(value - direction[d]) < 1e-6, name));
  }
  await press(page, "Isometric view");
  const { direction } = await page.evaluate(() => window.kvx.scene.camera());
  assert.ok(direction[2] > 0.3 && direction[0] > 0.3);
  const was = (await stateOf(page)).isOrthographic;
  assert.ok((await changeOf(page, () => press(page, "Orthographic"))) > 200);
  assert.equal((await stateOf(page)).isOrthographic, !was);

  // With the mouse: left turns, the wheel nears.
  const before = await page.evaluate(() => window.kvx.scene.camera());
  await page.mouse.move(330, 300);
  await page.mouse.down();
  await page.mouse.move(380, 320, { steps: 4 });
  await page.mouse.up();
  await page.mouse.wheel(0, -300);
  await settle(page);
  const after = await page.evaluate(() => window.kvx.scene.camera());
  assert.ok(Math.hypot(...after.direction.map((v, d) => v - before.direction[d])) > 0.05);
  assert.ok(after.height < 0.95 * before.height);
  await closePage(page);
});

test("load cases and envelopes: the picture and the legend follow", async () => {
  const page = await openPage(browser, "cases");
  const list = page.getByRole("combobox", { name: "Load case" });
  const names = await list.locator("option").allTextContents();
  assert.deepEqual(names, ["base", "weight", "heel", "pallet", "harbour", "sea", "Highest of all", "Lowest of all"]);
  await choose(page, "Shells", "uz");
  const extremes = {};
  const maximum = page.getByRole("button", { name: /^Maximum:/ });
  const minimum = page.getByRole("button", { name: /^Minimum:/ });
  const valueOf = async (button) => Number((await button.getAttribute("aria-label")).match(/: (\S+) /)[1].replace("−", "-"));
  for (const name of names) {
    await list.selectOption({ label: name });
    await settle(page);
    extremes[name] = [await valueOf(minimum), await valueOf(maximum)];
  }
  const cases = names.slice(0, 6);
  // Of what six-digit files hold; the deck alone bends down under its own loads.
  for (const name of cases) {
    const uz = readDisplacements(join(folderOf("cases"), "results", name)).map((row) => row[2]);
    assert.deepEqual(extremes[name], [Math.min(...uz), Math.max(...uz)], name);
  }
  const all = cases.flatMap((name) => extremes[name]);
  assert.equal(extremes["Highest of all"][1], Math.max(...all));
  assert.equal(extremes["Lowest of all"][0], Math.min(...all));
  await closePage(page);
});

test("shells and beams of different kinds are not painted with one scale", async () => {
  const page = await openPage(browser, Deck);
  await choose(page, "Beams", "beamMy");
  const state = await stateOf(page);
  assert.equal(state.beamQuantity, "beamMy");
  assert.notEqual(state.shellQuantity, "mises");
  assert.ok((await changeOf(page, () => setShows(page, { "Force diagrams": true }))) > 50);
  await choose(page, "Shells", "mises");
  assert.notEqual((await stateOf(page)).beamQuantity, "beamMy");
  await closePage(page);
});

test("the legend: limits that a person types, bands, the whole range again", async () => {
  const page = await openPage(browser, "strips");
  await choose(page, "Shells", "mises");
  await setLegend(page, 10, 60, 5);
  const legend = page.getByRole("region", { name: "Legend" });
  // The strips have 5 to 95: the outermost colours stand for what is beyond the limits, too.
  const labels = await legend.locator(".labels span").allTextContents();
  assert.deepEqual(labels, ["≥ 60", "50", "40", "30", "20", "≤ 10"]);
  await press(page, "Whole range");
  assert.equal((await stateOf(page)).range, null);
  await page.getByRole("button", { name: /^Maximum: 95 in triangle/ }).waitFor();
  await page.getByRole("button", { name: /^Least shown: 5 in shell 0/ }).waitFor();
  await closePage(page);
});

test("finding a node by its number flies there", async () => {
  const page = await openPage(browser, Deck);
  await unfold(page, "Find");
  await choose(page, "Kind", "node");
  await page.getByRole("textbox", { name: "Number" }).fill("500");
  await press(page, "Find");
  await page.getByRole("heading", { name: "Node 500" }).waitFor();
  const camera = await page.evaluate(() => window.kvx.scene.camera());
  const { place } = readModelFile(join(folderOf(Deck), "fem_solving.txt")).nodes[500];
  // Near it, as deformed.
  assert.ok(Math.hypot(...camera.target.map((value, d) => value - place[d])) < 400);
  await page.getByRole("textbox", { name: "Number" }).fill("5000");
  await press(page, "Find");
  await page.getByText("There are nodes 0 to 1074.").waitFor();
  await closePage(page);
});

test("an unsolved model shows shapes, supports, loads, and no results", async () => {
  const page = await openPage(browser, "unsolved");
  const list = page.getByRole("combobox", { name: "Shells", exact: true }).locator("option");
  const options = await list.evaluateAll((rows) => rows.map((row) => row.value));
  assert.ok(options.includes("thickness"));
  assert.ok(!options.includes("mises"));
  assert.equal(await page.getByRole("slider", { name: "Deformation" }).isEnabled(), false);
  assert.ok((await changeOf(page, () => setShows(page, { Supports: false }))) > 10);
  const picture = await seePicture(page);
  assert.ok(countPixels(picture, (red, green, blue) => Math.max(red, green, blue) - Math.min(red, green, blue) > 30) > 200);
  await closePage(page);
});

test("the legend names the load case, and how displacements are drawn", async () => {
  const page = await openPage(browser, "cases", { hash: "#case=4&controls=closed" });
  const legend = page.getByRole("region", { name: "Legend" });
  await legend.getByText("case harbour", { exact: true }).waitFor();
  await page.evaluate(() => window.kvx.change({ scale: 50 }));
  await legend.getByText("Displacements drawn 50 times", { exact: true }).waitFor();
  await page.evaluate(() => window.kvx.change({ scale: 0 }));
  await legend.getByText("Drawn undeformed", { exact: true }).waitFor();
  await page.evaluate(() => window.kvx.change({ case: -1 }));
  await legend.getByText("highest of all cases", { exact: true }).waitFor();
  await closePage(page);
});

test("with the same limits for all cases, keys step through them with one ruler", async () => {
  const page = await openPage(browser, "cases");
  const legend = page.getByRole("region", { name: "Legend" });
  await unfold(page, "Scale");
  const limitsOf = async () => (await legend.locator(".labels span").allTextContents()).join();
  const walk = async () => {
    const seen = new Set();
    for (let k = 0; k < 6; k += 1) {
      seen.add(await limitsOf());
      if (k < 5) await page.keyboard.press("]");
      await settle(page);
      await page.waitForFunction((row) => window.kvx.state().case === row, Math.min(5, k + 1));
    }
    return seen.size;
  };
  assert.ok((await walk()) > 1);
  for (let k = 0; k < 6; k += 1) await page.keyboard.press("[");
  await page.waitForFunction(() => window.kvx.state().case === 0);
  await page.getByRole("checkbox", { name: "Same limits for all cases" }).check();
  await page.getByRole("checkbox", { name: "Same limits for all cases" }).blur();
  await settle(page);
  assert.equal(await walk(), 1);
  await closePage(page);
});
