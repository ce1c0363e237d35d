// The page by itself: it asks for nothing, and what it shows of names stays text.
import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { after, before, test } from "node:test";

import { closePage, openFile, openPage, pageOf, settle, startBrowser } from "./support/browser.mjs";
import { countPixels } from "./support/png.mjs";
import { seePicture } from "./support/person.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Pages = ["stiffened-panel", "water-trough", "lattice-tower", "cases", "strips", "planted",
  "broken", "unsolved"];

for (const name of Pages) {
  test(`${name}: opens from a file, asks for nothing, has nothing on the console`, async () => {
    const page = await openPage(browser, name);
    assert.match(await page.title(), new RegExp(name === "unsolved" ? "strips" : name));
    const picture = await seePicture(page);
    // More than one colour: something is drawn.
    const first = picture.bytes.subarray(0, 3);
    const others = countPixels(picture, (...color) => color.some((v, k) => Math.abs(v - first[k]) > 16));
    assert.ok(others > 500, `only ${others} pixels are drawn`);
    await closePage(page);
  });
}

test("names with <, &, quotes and </script> stay text", async () => {
  const page = await openPage(browser, "planted");
  const name = `</script><img src=x onerror=alert(1)> & "tube" 'T' <!-- </style> \\u003c`;
  assert.equal(await page.evaluate(() => window.kvx.model.sections[0].name), name);
  // Where it is shown it is the text of an element.
  await page.getByText("Filter", { exact: true }).click();
  await page.getByRole("checkbox", { name }).first().waitFor();
  assert.equal(await page.locator("img").count(), 0);
  assert.equal(await page.locator("body > style, body > p").filter({ hasText: "onerror" }).count(), 0);
  await closePage(page);
});

test("the licence of what draws the page is in it", () => {
  const html = readFileSync(pageOf("strips"), "utf8");
  assert.match(html, /three\.js[^]*The MIT License[^]*Permission is hereby granted/);
});

// What comes back from a mail or a disk that failed.
for (const [what, spoil] of [
  ["a block cut off in its middle", (html) => html.replace(/(id="kvx-block-structure">[^<]{100})[^<]*/, "$1")],
  ["a letter of a block exchanged", (html) => html.replace(/(id="kvx-block-structure">[^<]{60})./, "$1*")],
  ["no block", (html) => html.replace(/<script[^>]*id="kvx-block-structure"[^<]*<\/script>/, "")],
  ["the model's text cut off", (html) => html.replace(/(id="kvx-model">[^<]{200})[^<]*/, "$1")],
]) {
  test(`${what}: a sentence says so`, async () => {
    const html = readFileSync(pageOf("strips"), "utf8");
    const spoilt = spoil(html);
    assert.notEqual(spoilt, html);
    const file = pageOf("spoilt");
    writeFileSync(file, spoilt);
    const page = await openFile(browser, file);
    const sentence = page.getByRole("alert").first();
    await sentence.waitFor({ timeout: 10000 });
    assert.match(await sentence.textContent(), /damaged|cut off|not|cannot/);
    await settle(page);
    await page.context().close();
  });
}
