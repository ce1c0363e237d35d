// What a person does with the page: looks at the picture alone, sets controls by their names.
import { seeWindow, settle } from "./browser.mjs";

// The picture without what floats over it.
export async function seePicture(page) {
  const hide = await page.addStyleTag({ content: ".over { visibility: hidden !important; }" });
  await settle(page);
  const picture = await seeWindow(page);
  await hide.evaluate((style) => style.remove());
  return picture;
}

// Opens folded groups of the panel and the legend by their headings.
export async function unfold(page, ...titles) {
  for (const title of titles) {
    const group = page.locator("details", { has: page.locator("summary", { hasText: title }) });
    if ((await group.getAttribute("open")) === null) await group.locator("summary").click();
  }
}

// Sets check boxes of the group "Show": { Shading: false, ... }.
export async function setShows(page, boxes) {
  await unfold(page, "Show");
  for (const [name, isChecked] of Object.entries(boxes)) {
    await page.getByRole("checkbox", { name, exact: true }).setChecked(isChecked);
  }
  await settle(page);
}

// Colours alone: no light, lines or symbols, nothing deformed.
export async function showColorsAlone(page) {
  const names = ["Shading", "Element edges", "Undeformed", "Supports", "Loads", "Global axes"];
  const boxes = {};
  for (const name of names) {
    const box = page.getByRole("checkbox", { name, exact: true });
    if ((await box.count()) > 0 && (await box.isEnabled())) boxes[name] = false;
  }
  await setShows(page, boxes);
  await setScale(page, "0");
}

export async function setScale(page, text) {
  const field = page.getByRole("spinbutton", { name: "Scale of displacements" });
  if (!(await field.isEnabled())) return;
  await field.fill(text);
  await field.press("Enter");
  await settle(page);
}

export async function choose(page, list, value) {
  await page.getByRole("combobox", { name: list, exact: true }).selectOption(value);
  await settle(page);
}

// One of a row of radio buttons.
export async function chooseOne(page, group, name) {
  const buttons = page.getByRole("group", { name: group, exact: true });
  await buttons.getByRole("radio", { name, exact: true }).check();
  await settle(page);
}

export async function press(page, button) {
  await page.getByRole("button", { name: button, exact: true }).first().click();
  await settle(page);
}

// The limits and bands of the legend.
export async function setLegend(page, from, to, bands) {
  await unfold(page, "Scale");
  for (const [name, value] of [["From", from], ["To", to], ["From", from]]) {
    const field = page.getByRole("textbox", { name, exact: true });
    await field.fill(String(value));
    await field.press("Enter");
  }
  await choose(page, "Bands", String(bands));
}

// Where a place of the model is in the window.
export function projectPlace(page, place) {
  return page.evaluate((at) => {
    const box = document.querySelector("canvas").getBoundingClientRect();
    const [x, y] = window.kvx.scene.project(at);
    return [box.left + x, box.top + y];
  }, place);
}

// A plain linear congruential generator (Knuth 1997, section 3.3.4): the same numbers each time.
export function makeRandom(seed) {
  let state = BigInt(seed);
  return () => {
    state = (state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number(state >> 40n) / 2 ** 24;
  };
}
