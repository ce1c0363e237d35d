// Opens the page that page_bench has made: node bench/page_bench.mjs PAGE PACKAGES
//
// Prints the time of its scripts until the first picture, without the graphics processor's, and the
// draw calls. PACKAGES is a folder of scripts/fetch-page-packages; KORVEX_BROWSER names a browser
// other than chromium-headless-shell.
import { createRequire } from "node:module";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

const [page, packages] = process.argv.slice(2);
if (packages === undefined) {
  console.error("usage: node bench/page_bench.mjs PAGE PACKAGES");
  process.exit(64);
}
const { chromium } = createRequire(resolve(packages, "package.json"))("playwright-core");
const browser = await chromium.launch({
  executablePath: process.env.KORVEX_BROWSER ?? "/usr/bin/chromium-headless-shell",
  args: ["--no-sandbox", "--use-gl=angle", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"],
});
const tab = await browser.newPage({ viewport: { width: 640, height: 480 } });
const tools = await tab.context().newCDPSession(tab);
await tools.send("Performance.enable");
const start = performance.now();
await tab.goto(pathToFileURL(page).href);
// With its colours: the legend tells where the highest value is.
await tab.getByRole("button", { name: /^Maximum: / }).waitFor({ timeout: 300000 });
const isDrawn = () => window.kvx.scene.drawCalls().shells > 0;
await tab.waitForFunction(isDrawn, null, { timeout: 300000 });
const seconds = (performance.now() - start) / 1000;

const { metrics } = await tools.send("Performance.getMetrics");
const metric = (name) => metrics.find((each) => each.name === name).value;
const calls = await tab.evaluate(() => window.kvx.scene.drawCalls());
const sections = await tab.evaluate(() => window.kvx.model.sections.length);
const print = (name, text) => console.log(`${name.padEnd(22)} ${text}`);
print("scripts", `${metric("ScriptDuration").toFixed(2)} s until the first picture`);
print("main thread", `${metric("TaskDuration").toFixed(2)} s: scripts, reading the file, layout`);
print("by the clock", `${seconds.toFixed(2)} s, drawn without a graphics processor`);
print("draw calls", `${calls.shells} for shells, ${calls.beams} for beams of ${sections} sections`);
await browser.close();
