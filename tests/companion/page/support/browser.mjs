// Opens pages of kvx view in a headless browser, as a person's browser would from a file.
//
// Every page that is opened here is watched: a request that leaves its file, a line on the console
// or an error of a script makes closePage fail.
import assert from "node:assert/strict";
import { createRequire } from "node:module";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import { readPng } from "./png.mjs";

// Set by run-page-test.
const { KORVEX_BROWSER, KORVEX_PAGE_PACKAGES, KORVEX_PAGES, KORVEX_EXAMPLES } = process.env;
const { chromium } = createRequire(join(KORVEX_PAGE_PACKAGES, "package.json"))("playwright-core");

export const Examples = ["stiffened-panel", "water-trough", "lattice-tower"];

// The folder of a model and its results, and the page that kvx view made of it.
export const folderOf = (name) => join(KORVEX_PAGES, name);
export const pageOf = (name) => join(KORVEX_PAGES, `${name}.html`);
export const exampleOf = (name) => join(KORVEX_EXAMPLES, name);

// WebGL without a graphics processor, so that pictures do not depend on the machine.
export function startBrowser() {
  return chromium.launch({
    executablePath: KORVEX_BROWSER,
    args: [
      "--no-sandbox",
      "--use-gl=angle",
      "--use-angle=swiftshader",
      "--enable-unsafe-swiftshader",
      "--hide-scrollbars",
    ],
  });
}

// The driver's own remark, whenever a click asks which pixel was hit: it waits for the picture.
const DriverRemark = /GL Driver Message \(OpenGL, Performance, .*GPU stall due to ReadPixels/;

// Opens a file; settings: hash (behind #), width, height, colorScheme, reducedMotion. The page that
// comes back has `problems`, what it did that it must not.
export async function openFile(browser, file, settings = {}) {
  const context = await browser.newContext({
    viewport: { width: settings.width ?? 1100, height: settings.height ?? 640 },
    colorScheme: settings.colorScheme ?? "light",
    // Flights and animations at their end at once, unless a test looks at them.
    reducedMotion: settings.reducedMotion ?? "reduce",
    acceptDownloads: true,
  });
  await context.grantPermissions(["clipboard-read", "clipboard-write"]);
  const page = await context.newPage();
  const address = pathToFileURL(file).href;
  page.problems = [];
  page.setDefaultTimeout(10000);
  page.on("request", (request) => {
    const isOwn = request.url().split("#")[0] === address || /^(data|blob):/.test(request.url());
    if (!isOwn) page.problems.push(`asked for ${request.url()}`);
  });
  page.on("console", (message) => {
    if (!DriverRemark.test(message.text())) page.problems.push(`console: ${message.text()}`);
  });
  page.on("pageerror", (error) => page.problems.push(`error: ${error.message}`));
  await page.goto(address + (settings.hash ?? ""));
  return page;
}

// Opens a model's page and waits for its first picture.
export async function openPage(browser, name, settings = {}) {
  const page = await openFile(browser, pageOf(name), settings);
  await page.waitForFunction(() => window.kvx !== undefined, null, { timeout: 30000 });
  await settle(page);
  return page;
}

// Closes a page that did nothing that it must not.
export async function closePage(page) {
  await page.context().close();
  assert.deepEqual(page.problems, []);
}

// Waits until what was asked for is drawn: frames are drawn when the browser asks for them.
export function settle(page) {
  return page.evaluate(
    () =>
      new Promise((done) => {
        let left = 3;
        const step = () => {
          left -= 1;
          if (left > 0) requestAnimationFrame(step);
          else done();
        };
        requestAnimationFrame(step);
      }),
  );
}

// What the page shows at the moment.
export const stateOf = (page) => page.evaluate(() => window.kvx.state());

// The window as it is seen, decoded; clip: { x, y, width, height }.
export async function seeWindow(page, clip) {
  return readPng(await page.screenshot(clip ? { clip } : {}));
}
