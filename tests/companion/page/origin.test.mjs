// The page of an imported model: what nodes and elements are called in the deck, found by their
// numbers there, and shown by its groups.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { closePage, openPage, settle, startBrowser, stateOf } from "./support/browser.mjs";
import { choose, press, seePicture, unfold } from "./support/person.mjs";
import { countDifferences } from "./support/png.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Deck = "strips <1>.bdf"; // of make-models.mjs, with the numbers there

async function find(page, kind, number) {
  await choose(page, "Kind", kind);
  await page.getByRole("textbox", { name: "Number" }).fill(String(number));
  await press(page, "Find");
  await settle(page);
  return (await stateOf(page)).picked;
}

test("things are found by their numbers in the deck, and the card names them", async () => {
  const page = await openPage(browser, "imported");
  await unfold(page, "Find");
  const card = page.getByRole("region", { name: "Picked" });
  assert.deepEqual(await find(page, "node of the deck", 1005), { kind: "node", number: 2 });
  assert.match(await card.innerText(), /in strips <1>\.bdf\s+node 1005/);
  assert.deepEqual(await find(page, "element of the deck", 5003), { kind: "shell", number: 2 });
  assert.match(await card.innerText(), /CQUAD4 5003\s+groups\s+deck, <b>bars<\/b>/);
  assert.match(await card.innerText(), /PSHELL 30/);
  assert.deepEqual(await find(page, "element of the deck", 6002), { kind: "triangle", number: 1 });
  assert.deepEqual(await find(page, "element of the deck", 7002), { kind: "beam", number: 1 });
  assert.match(await card.innerText(), /CBAR 7002/);
  assert.match(await card.innerText(), /PBARL 2/);
  // By the model's own number as before.
  assert.deepEqual(await find(page, "shell", 3), { kind: "shell", number: 3 });
  await closePage(page);
});

test("a number that the deck has not is told, and nothing else is picked", async () => {
  const page = await openPage(browser, "imported");
  await unfold(page, "Find");
  const answer = page.getByRole("status").filter({ hasText: Deck });
  for (const number of [1002, 5003, 0, -1]) {
    assert.equal(await find(page, "node of the deck", number), null);
    assert.equal(await answer.innerText(), `${Deck} has no node ${number} that was imported.`);
  }
  assert.equal(await find(page, "element of the deck", "1.5"), null);
  assert.equal(await answer.innerText(), `Numbers of ${Deck} are whole.`);
  await closePage(page);
});

test("groups of the deck are a filter", async () => {
  const page = await openPage(browser, "imported");
  await unfold(page, "Filter");
  const groups = page.getByRole("group", { name: "Group", exact: true });
  const names = await groups.getByRole("listitem").allInnerTexts();
  const words = names.map((text) => text.replaceAll(/\s+/g, " ").replace(" only", ""));
  assert.deepEqual(words, ["deck 3 shells", "<b>bars</b> 2 shells, 2 beams", "no group"]);

  const whole = await seePicture(page);
  await groups.getByRole("button", { name: "Only deck" }).click({ force: true });
  await settle(page);
  assert.deepEqual((await stateOf(page)).hidden.groups, [-1, 1]);
  const one = await seePicture(page);
  assert.ok(countDifferences(whole, one) > 500);
  await page.waitForFunction(() => window.location.hash.includes("hide-group=-1,1"));

  await groups.getByRole("button", { name: "Show all" }).click();
  await settle(page);
  assert.equal(countDifferences(whole, await seePicture(page)), 0);
  await closePage(page);
});

test("a model that was not imported has nothing of it", async () => {
  const page = await openPage(browser, "strips");
  await unfold(page, "Find", "Filter");
  const kinds = await page.getByRole("combobox", { name: "Kind" }).locator("option").allInnerTexts();
  assert.deepEqual(kinds, ["node", "shell", "triangle", "beam"]);
  assert.equal(await page.getByRole("group", { name: "Group", exact: true }).count(), 0);
  await closePage(page);
});
