// For everybody: each control has a name, the keyboard reaches it, and texts stand out from their
// ground (W3C, Web Content Accessibility Guidelines 2.1, 1.4.3: contrast of 4.5).
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { closePage, openPage, settle, startBrowser } from "./support/browser.mjs";
import { contrastOf } from "./support/colors.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Controls = "button, input, select, summary, textarea, a[href], [tabindex='0']";
const LeastContrast = 4.5;

// Everything that can be opened, open.
async function openAll(page) {
  await page.evaluate(() => document.querySelectorAll("details").forEach((group) => (group.open = true)));
  await page.keyboard.press("h");
  await settle(page);
}

for (const name of ["stiffened-panel", "cases", "broken", "unsolved"]) {
  test(`${name}: every control has a name`, async () => {
    const page = await openPage(browser, name, { hash: "#pick=node:3", width: 1200, height: 800 });
    await openAll(page);
    const tools = await page.context().newCDPSession(page);
    const { nodes } = await tools.send("Accessibility.getFullAXTree");
    const roles = /^(button|checkbox|radio|combobox|slider|spinbutton|textbox|link|tab|image|DisclosureTriangle|dialog)$/;
    const found = nodes.filter((node) => !node.ignored && roles.test(node.role?.value ?? ""));
    assert.ok(found.length > 30, `${found.length}`);
    const nameless = found.filter((node) => !(node.name?.value ?? "").trim());
    assert.deepEqual(nameless.map((node) => node.role.value), []);
    await closePage(page);
  });
}

test("tab reaches every control, and the focus is seen", async () => {
  const page = await openPage(browser, "stiffened-panel", { width: 1200, height: 800 });
  await page.evaluate(() => document.querySelectorAll("details").forEach((group) => (group.open = true)));
  // One of a row of radio buttons is enough: arrows reach the others.
  const wanted = await page.evaluate((selector) => {
    const isUsable = (control) =>
      !control.disabled && control.checkVisibility() && !control.closest("fieldset:disabled") &&
      !(control.type === "radio" && !control.checked);
    window.wanted = [...document.querySelectorAll(selector)].filter(isUsable);
    return window.wanted.length;
  }, Controls);
  assert.ok(wanted > 30);
  const reached = new Set();
  const unseen = [];
  for (let k = 0; k < wanted + 5; k += 1) {
    await page.keyboard.press("Tab");
    const at = await page.evaluate(() => {
      const control = document.activeElement;
      const isMarked = (element) => {
        const style = element && getComputedStyle(element);
        return style && (style.outlineStyle !== "none" || style.boxShadow !== "none");
      };
      // Of a radio button its text is marked.
      const holder = control.type === "radio" ? control.closest("label") : control;
      const marked = [control, holder, control.nextElementSibling].some(isMarked);
      return [window.wanted.indexOf(control), marked];
    });
    reached.add(at[0]);
    if (at[0] >= 0 && !at[1]) unseen.push(at[0]);
  }
  reached.delete(-1);
  const missed = await page.evaluate(
    (numbers) => window.wanted.filter((_, k) => !numbers.includes(k)).map((control) => control.outerHTML.slice(0, 120)),
    [...reached],
  );
  assert.deepEqual(missed, []);
  assert.deepEqual(unseen, []);
  await closePage(page);
});

// The colours of each text and of what lies behind it: all grounds up to an opaque one, over the
// picture's ground.
function collectTexts(page) {
  return page.evaluate(() => {
    const parse = (text) => {
      const [red, green, blue, alpha = 1] = text.match(/[\d.]+/g).map(Number);
      return { color: [red, green, blue], alpha };
    };
    const over = (front, back) =>
      back.map((value, channel) => front.alpha * front.color[channel] + (1 - front.alpha) * value);
    const groundOf = (element) => {
      const layers = [];
      for (let at = element; at !== null; at = at.parentElement) {
        layers.push(parse(getComputedStyle(at).backgroundColor));
        if (layers.at(-1).alpha === 1) break;
      }
      return layers.reverse().reduce((back, layer) => over(layer, back), [255, 255, 255]);
    };
    const texts = [];
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    for (let node = walker.nextNode(); node !== null; node = walker.nextNode()) {
      const element = node.parentElement;
      if (node.textContent.trim() === "" || element.closest("script, style, option, :disabled")) continue;
      if (!element.checkVisibility({ checkOpacity: true, checkVisibilityCSS: true })) continue;
      const ground = groundOf(element);
      texts.push({
        text: node.textContent.trim().slice(0, 40),
        color: over(parse(getComputedStyle(element).color), ground),
        ground,
      });
    }
    return texts;
  });
}

for (const colorScheme of ["light", "dark"]) {
  test(`texts stand out from their ground, ${colorScheme}`, async () => {
    for (const name of ["stiffened-panel", "broken"]) {
      const page = await openPage(browser, name, { colorScheme, hash: "#pick=node:3", width: 1200, height: 800 });
      await openAll(page);
      await page.keyboard.press("?");
      const texts = await collectTexts(page);
      assert.ok(texts.length > 60, `${texts.length}`);
      const weak = texts.filter(({ color, ground }) => contrastOf(color, ground) < LeastContrast);
      assert.deepEqual(weak, []);
      await closePage(page);
    }
  });
}
