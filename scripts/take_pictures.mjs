// Takes pictures of pages: node take_pictures.mjs FOLDER [NAME...]; see take-pictures beside it.
import { writeFileSync } from "node:fs";
import { join } from "node:path";

import {
  closePage,
  openPage,
  seeWindow,
  settle,
  startBrowser,
} from "../tests/companion/page/support/browser.mjs";
import { writeSmallPng } from "./small_png.mjs";

// name of the file, page, what stands behind # in its address, size of the window; way: from the
// model to the eye, near: part of the field that shows all; isWhole: with bar and lists.
const Pictures = [
  { name: "page", page: "stiffened-panel", hash: "#pick=shell:275&beams=detailMiddle&show=-supports", size: [1280, 800], isWhole: true },
  {
    name: "deck-lower-face",
    page: "stiffened-panel",
    hash: "#controls=closed&face=lower&show=-supports",
    size: [1000, 560],
    way: [0.5, -0.62, -0.55],
    near: 0.97,
  },
  {
    name: "deck-details",
    page: "stiffened-panel",
    hash: "#controls=closed&shells=plain&beams=detail&range=0:120&show=-shells,-edges,-supports,-outline",
    size: [1000, 560],
    way: [-0.45, -0.72, -0.45],
    near: 0.5,
  },
  { name: "trough", page: "water-trough", hash: "#controls=closed", size: [1000, 560], near: 0.9 },
  {
    name: "tower",
    page: "lattice-tower",
    hash: "#controls=closed&beams=beamStress&show=loads",
    size: [800, 800],
    way: [0.55, -0.75, 0.3],
    near: 0.9,
  },
];
const MostBytes = 150000; // a picture must not make the pages of the documentation slow

async function take(browser, picture, folder) {
  const [width, height] = picture.size;
  const page = await openPage(browser, picture.page, { width, height, hash: picture.hash });
  await page.evaluate(([way]) => {
    const { scene } = window.kvx;
    if (way !== null) scene.setCamera({ ...scene.camera(), direction: way, up: [0, 0, 1] }, false);
    scene.fit();
  }, [picture.way ?? null]);
  await settle(page);
  await page.evaluate(([near]) => {
    const { scene } = window.kvx;
    const camera = scene.camera();
    scene.setCamera({ ...camera, height: near * camera.height }, false);
  }, [picture.near ?? 1]);
  if (!picture.isWhole) {
    await page.addStyleTag({ content: ".topbar, .lists, .notices { display: none !important; }" });
  }
  await settle(page);
  const path = join(folder, `${picture.name}.png`);
  const file = writeSmallPng(await seeWindow(page));
  await closePage(page);
  if (file.length > MostBytes) throw new Error(`${path} has ${file.length} bytes.`);
  writeFileSync(path, file);
  console.log(`${path}: ${Math.ceil(file.length / 1000)} kB`);
}

const [folder, ...names] = process.argv.slice(2);
const browser = await startBrowser();
try {
  for (const picture of Pictures) {
    if (names.length === 0 || names.includes(picture.name)) await take(browser, picture, folder);
  }
} finally {
  await browser.close();
}
