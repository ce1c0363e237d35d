// The lists: the highest values and the findings, against what kvx itself prints.
import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { closePage, folderOf, openPage, settle, startBrowser, stateOf } from "./support/browser.mjs";
import { press } from "./support/person.mjs";
import { readCsv, readStresses } from "./support/result_files.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

test("the highest stresses are those of the result file, and a click flies there", async () => {
  const name = "stiffened-panel";
  const top = readCsv(join(folderOf(name), "top.csv"));
  const page = await openPage(browser, name, { hash: "#beams=plain" });
  await press(page, "Highest values");
  const table = page.getByRole("table", { name: "Highest values" });
  const rows = await table.locator("tbody tr").evaluateAll((list) =>
    list.map((row) => [...row.cells].map((cell) => cell.textContent)),
  );
  const shown = rows.map(([, value, element, face, node]) => [Number(value), element, face, Number(node)]);
  // Each element once, with its largest corner; of values that are equal in the file the lower number
  // comes first.
  const expected = readStresses(folderOf(name), true).shells.map((corners, number) => {
    const values = corners.flatMap(({ upper, lower, node }) => [
      [upper[6], `shell ${number}`, "upper", node],
      [lower[6], `shell ${number}`, "lower", node],
    ]);
    return values.reduce((best, value) => (value[0] > best[0] ? value : best));
  });
  expected.sort((a, b) => b[0] - a[0] || 0);
  // Those that share the value at a node and face stand in one row.
  const joined = new Map();
  for (const [value, element, face, node] of expected) {
    const key = `${value} ${face} ${node}`;
    const numbers = joined.get(key)?.numbers ?? [];
    joined.set(key, { value, numbers: [...numbers, element.slice(6)], face, node });
  }
  const wanted = [...joined.values()].map(({ value, numbers, face, node }) => [
    value, `shell${numbers.length > 1 ? "s" : ""} ${numbers.join(", ")}`, face, node,
  ]);
  assert.equal(shown.length, 20);
  assert.deepEqual(shown, wanted.slice(0, 20));
  await page.getByText("Highest: von Mises stress, larger of both faces", { exact: true }).waitFor();
  // The value of kvx top, which has more digits.
  assert.equal(shown[0][0], Number(Number(top[0].value).toPrecision(6)));

  await table.getByRole("button").first().click();
  await settle(page);
  const { picked } = await stateOf(page);
  assert.ok([`shell ${picked.number}`, `shells ${picked.number}`].some((name) => shown[0][1].startsWith(name)));
  // It is seen beside the sheets, as it is drawn.
  const seen = await page.evaluate((node) => {
    const [x, y] = window.kvx.scene.projectNode(node);
    return document.elementFromPoint(x, y)?.tagName;
  }, shown[0][3]);
  assert.equal(seen, "CANVAS");
  await press(page, "Close list");
  assert.equal(await table.count(), 0);
  await closePage(page);
});

test("the legend's maximum is the first of the list, and flies there", async () => {
  const page = await openPage(browser, "water-trough");
  const top = readCsv(join(folderOf("water-trough"), "top.csv"))[0];
  const button = page.getByRole("button", { name: /^Maximum:/ });
  const label = await button.getAttribute("aria-label");
  assert.equal(Number(label.match(/: (\S+) in/)[1]), Number(Number(top.value).toPrecision(6)));
  await button.click();
  await settle(page);
  assert.equal((await stateOf(page)).picked.number, Number(top.element));
  await closePage(page);
});

test("findings: code, line and message; a click goes to the element", async () => {
  const page = await openPage(browser, "broken");
  // Open from the start: the model has errors.
  assert.equal((await stateOf(page)).shows.findings, true);
  await page.getByRole("button", { name: /^Findings: 2 errors, 1 hint$/ }).waitFor();
  const table = page.getByRole("table", { name: "Findings" });
  const row = table.getByRole("row").filter({ hasText: "K104" }).first();
  const text = await row.textContent();
  assert.match(text, /error/);
  assert.match(text, /line 98/);
  assert.match(text, /beam 2 .* orientation vector <1,0,0> is parallel/);
  await row.getByRole("button", { name: "K104" }).click();
  await settle(page);
  assert.deepEqual((await stateOf(page)).picked, { kind: "beam", number: 2 });
  await closePage(page);
});

test("findings of one code stand together, with their count", async () => {
  const page = await openPage(browser, "stiffened-panel");
  // Each of the girders' 84 beams is short.
  await page.getByRole("button", { name: /^Findings: 84 hints$/ }).click();
  const table = page.getByRole("table", { name: "Findings" });
  assert.equal(await table.locator("tbody tr").count(), 1);
  await table.getByText("84 times", { exact: true }).waitFor();
  await table.getByText("83 more", { exact: true }).click();
  assert.equal((await stateOf(page)).picked, null);
  await table.getByRole("button", { name: /^beam 145, line/ }).click();
  await settle(page);
  assert.deepEqual((await stateOf(page)).picked, { kind: "beam", number: 145 });
  await closePage(page);
});
