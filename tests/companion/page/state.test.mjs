// What stays and what goes out: the address, the link, the picture as a file; keys, help and theme.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { after, before, test } from "node:test";

import { closePage, openPage, pageOf, settle, startBrowser, stateOf } from "./support/browser.mjs";
import { choose, chooseOne, press, seePicture, setScale, setShows, unfold } from "./support/person.mjs";
import { countDifferences, countPixels, readPng } from "./support/png.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Deck = "stiffened-panel";

// Sets many things, as a person who prepares a view for a colleague.
async function arrange(page) {
  await choose(page, "Shells", "s1");
  await chooseOne(page, "Face", "Lower");
  await chooseOne(page, "Values at corners", "By element");
  await setScale(page, "12.5");
  await setShows(page, { "Element edges": false, Loads: true, Supports: false });
  await unfold(page, "Clip", "Scale");
  await chooseOne(page, "Plane across", "x");
  await page.getByRole("slider", { name: "Place of the plane" }).fill("700");
  await choose(page, "Colour map", "viridis");
  await choose(page, "Bands", "8");
  await press(page, "Left view");
  await press(page, "Isometric view");
  await page.mouse.move(330, 300);
  await page.mouse.wheel(0, -200);
  await settle(page);
}

test("the address carries the whole state: another window shows the same", async () => {
  const page = await openPage(browser, Deck);
  await arrange(page);
  const address = await waitForAddress(page);
  const [state, picture] = [await stateOf(page), await seePicture(page)];
  const other = await openPage(browser, Deck, { hash: address });
  const otherState = await stateOf(other);
  // The camera has seven digits in the address: no edge moves by a part of a pixel that is seen. With
  // five, 371 pixels differed.
  assert.deepEqual({ ...otherState, camera: null }, { ...state, camera: null });
  const differences = countDifferences(picture, await seePicture(other));
  assert.ok(differences < 30, `${differences} pixels differ`);
  // Opened again after a reload.
  await other.reload();
  await other.waitForFunction(() => window.kvx !== undefined);
  await settle(other);
  assert.deepEqual({ ...(await stateOf(other)), camera: null }, { ...state, camera: null });
  await closePage(page);
  await closePage(other);
});

// The address is written a moment after the last change.
async function waitForAddress(page) {
  await page.waitForTimeout(600);
  return page.evaluate(() => location.hash);
}

test("an address with nonsense opens the page all the same", async () => {
  const page = await openPage(browser, "strips", {
    hash: "#shells=nothing&face=inner&scale=-3&clip=q:2&range=5:1&camera=1,2&pick=beam:77&case=9&=&%",
  });
  const plain = await openPage(browser, "strips");
  assert.deepEqual({ ...(await stateOf(page)), camera: null }, { ...(await stateOf(plain)), camera: null });
  await closePage(page);
  await closePage(plain);
});

test("copying the link puts the address on the clipboard", async () => {
  const page = await openPage(browser, "strips");
  await choose(page, "Shells", "uz");
  await press(page, "Copy link");
  const text = await page.evaluate(() => navigator.clipboard.readText());
  assert.match(text, /strips\.html#.*shells=uz/);
  await closePage(page);
});

test("the picture is saved as PNG, with the legend and without controls", async () => {
  const page = await openPage(browser, Deck);
  const waiting = page.waitForEvent("download");
  await press(page, "Save picture");
  const download = await waiting;
  assert.match(download.suggestedFilename(), /^stiffened-panel.*\.png$/);
  const picture = readPng(readFileSync(await download.path()));
  // Twice the pixels of the window at least, so that print is sharp.
  assert.ok(picture.width >= 2 * 640 && picture.height >= 2 * 400, `${picture.width} x ${picture.height}`);
  const isColored = (red, green, blue) => Math.max(red, green, blue) - Math.min(red, green, blue) > 40;
  assert.ok(countPixels(picture, isColored) > 0.03 * picture.width * picture.height);
  // The legend stands at the right: the colours of the map's ends, one above the other.
  const right = { ...picture, bytes: rightPart(picture, 0.25) };
  const near = (a, b) => a.every((value, channel) => Math.abs(value - b[channel]) <= 4);
  for (const end of [[0, 34, 78], [254, 232, 56]]) {
    assert.ok(countPixels(right, (...color) => near(color, end)) > 50, `${end}`);
  }
  await closePage(page);
});

function rightPart(picture, share) {
  const rows = [];
  const row = picture.width * picture.channels;
  const from = Math.floor(picture.width * (1 - share)) * picture.channels;
  for (let y = 0; y < picture.height; y += 1) rows.push(picture.bytes.subarray(y * row + from, (y + 1) * row));
  return Buffer.concat(rows);
}

test("keys do what the help says", async () => {
  const page = await openPage(browser, Deck);
  await page.locator("canvas").focus();
  const toggles = { e: "edges", u: "outline", s: "supports", d: "loads" };
  for (const [key, name] of Object.entries(toggles)) {
    const was = (await stateOf(page)).shows[name];
    await page.keyboard.press(key);
    assert.equal((await stateOf(page)).shows[name], !was, key);
  }
  const direction = () => page.evaluate(() => window.kvx.scene.camera().direction);
  await page.keyboard.press("2");
  await settle(page);
  assert.ok((await direction())[2] > 0.999);
  await page.keyboard.press("1");
  await settle(page);
  const iso = await direction();
  await page.keyboard.press("ArrowLeft");
  await settle(page);
  assert.ok(Math.hypot(...(await direction()).map((value, d) => value - iso[d])) > 0.01);
  const near = await page.evaluate(() => window.kvx.scene.camera().height);
  await page.keyboard.press("PageUp");
  await settle(page);
  assert.ok((await page.evaluate(() => window.kvx.scene.camera().height)) < near);
  await page.keyboard.press("+");
  assert.ok((await stateOf(page)).scale > 0);
  await page.keyboard.press("0");
  assert.equal((await stateOf(page)).scale, null);
  const was = await stateOf(page);
  for (const key of ["o", "c"]) await page.keyboard.press(key);
  const now = await stateOf(page);
  assert.deepEqual([now.isOrthographic, now.isPanelOpen], [!was.isOrthographic, !was.isPanelOpen]);
  await page.keyboard.press("h");
  await page.getByRole("table", { name: "Highest values" }).waitFor();
  await page.keyboard.press("Escape");
  assert.equal(await page.getByRole("table", { name: "Highest values" }).count(), 0);
  await closePage(page);
});

test("help opens with ?, lists the keys, and Escape closes it", async () => {
  const page = await openPage(browser, "strips");
  await page.keyboard.press("?");
  const help = page.getByRole("dialog", { name: "Help" });
  await help.waitFor();
  assert.match(await help.textContent(), /animate/i);
  // The focus stays within.
  for (let k = 0; k < 12; k += 1) await page.keyboard.press("Tab");
  assert.ok(await help.evaluate((dialog) => dialog.contains(document.activeElement) || document.activeElement === document.body));
  await page.keyboard.press("Escape");
  await help.waitFor({ state: "hidden" });
  await press(page, "Help");
  await help.waitFor();
  await page.getByRole("button", { name: "Close help" }).click();
  await help.waitFor({ state: "hidden" });
  await closePage(page);
});

test("light and dark: as the system, or as chosen", async () => {
  for (const colorScheme of ["light", "dark"]) {
    const page = await openPage(browser, "strips", { colorScheme });
    const brightness = async () => {
      const picture = await seePicture(page);
      return picture.bytes[0] + picture.bytes[1] + picture.bytes[2];
    };
    const own = await brightness();
    assert.equal(own > 384, colorScheme === "light", `${own}`);
    const seen = new Set([own > 384]);
    for (let k = 0; k < 2; k += 1) {
      await page.getByRole("button", { name: /^Theme: / }).click();
      await settle(page);
      seen.add((await brightness()) > 384);
    }
    assert.equal(seen.size, 2);
    await closePage(page);
  }
});

test("the page is the same bytes each time", () => {
  // prepare-pages has made it twice.
  assert.ok(readFileSync(pageOf(Deck)).equals(readFileSync(pageOf(`${Deck}-again`))));
});
