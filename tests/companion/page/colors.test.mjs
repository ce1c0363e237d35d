// Colours of the picture against the published table of cividis and the values of result files.
//
// Light, lines and symbols are switched off through their check boxes, as a person would.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { closePage, folderOf, openPage, settle, startBrowser } from "./support/browser.mjs";
import { cividisAt, CividisLevels, colorDistance } from "./support/colors.mjs";
import { readModelFile } from "./support/model_file.mjs";
import { choose, chooseOne, press, projectPlace, seePicture, setLegend, setShows,
  showColorsAlone, unfold } from "./support/person.mjs";
import { countPixels, pixelOf } from "./support/png.mjs";
import { readStresses } from "./support/result_files.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

// Squares of make-models.mjs: 100 wide, 150 apart along y, with 5, 15 .. 95 N/mm².
const Squares = Array.from({ length: 10 }, (_, k) => ({ stress: 5 + 10 * k, y: 150 * k }));

// Flat colours seen from above.
async function openStrips(name = "strips") {
  const page = await openPage(browser, name);
  await showColorsAlone(page);
  await press(page, "Top view");
  await press(page, "Fit");
  return page;
}

async function colorsOfSquares(page, rows = Squares) {
  const picture = await seePicture(page);
  const colors = [];
  for (const { y } of rows) {
    // Not on the diagonal, where two triangles meet.
    const [px, py] = await projectPlace(page, [50, y + 40, 0]);
    colors.push(pixelOf(picture, px, py));
  }
  return colors;
}

test("squares have the colours of their stresses, without bands", async () => {
  const page = await openStrips();
  await choose(page, "Shells", "mises");
  await setLegend(page, 0, 100, 0);
  const colors = await colorsOfSquares(page);
  Squares.forEach(({ stress }, k) => {
    // A table of 256 colours: half a row off.
    const expected = cividisAt(stress / 100);
    const distance = colorDistance(colors[k], expected);
    assert.ok(distance <= CividisLevels + 1, `${stress}: ${colors[k]}, not ${expected}`);
  });
  await closePage(page);
});

test("with ten bands each has the colour of its band, the outer ones those of the map's ends", async () => {
  const page = await openStrips();
  await choose(page, "Shells", "mises");
  await setLegend(page, 0, 100, 10);
  const colors = await colorsOfSquares(page);
  colors.forEach((color, band) => {
    assert.ok(colorDistance(color, cividisAt(band / 9)) <= CividisLevels, `band ${band}: ${color}`);
  });
  await closePage(page);
});

test("values beyond a narrower range stand apart from those within", async () => {
  const page = await openStrips();
  await choose(page, "Shells", "mises");
  await setLegend(page, 20, 80, 0);
  const colors = await colorsOfSquares(page);
  const [below, above] = [colors[0], colors[9]];
  assert.deepEqual([colors[1], colors[8]], [below, above]);
  for (const color of colors.slice(2, 8)) {
    assert.ok(colorDistance(color, below) > 16 && colorDistance(color, above) > 16);
  }
  assert.ok(colorDistance(colors[5], cividisAt((55 - 20) / 60)) <= CividisLevels + 1);
  await closePage(page);
});

test("another colour map changes the picture and comes back", async () => {
  const page = await openStrips();
  await choose(page, "Shells", "mises");
  await setLegend(page, 0, 100, 0);
  const before = await colorsOfSquares(page);
  await choose(page, "Colour map", "grey");
  const greys = await colorsOfSquares(page);
  for (const [red, green, blue] of greys) assert.ok(Math.max(red, green, blue) - Math.min(red, green, blue) < 4);
  // Brighter with each value.
  greys.slice(1).forEach((grey, k) => assert.ok(grey[1] > greys[k][1]));
  await choose(page, "Colour map", "cividis");
  assert.deepEqual(await colorsOfSquares(page), before);
  await closePage(page);
});

test("a square without numbers has a colour that is in no map, and the legend counts it", async () => {
  const page = await openStrips("broken");
  await choose(page, "Shells", "mises");
  await setLegend(page, 0, 100, 0);
  const colors = await colorsOfSquares(page);
  assert.ok(colorDistance(colors[3], cividisAt(0.35)) <= CividisLevels + 1, `${colors[3]}`);
  for (let share = 0; share <= 1; share += 0.01) {
    assert.ok(colorDistance(colors[9], cividisAt(share)) > 40, `${colors[9]}`);
  }
  // Two triangles of three corners each, and the beam.
  await page.getByRole("region", { name: "Legend" }).getByText("7 places without a number").waitFor();
  await closePage(page);
});

test("thicknesses are categories: each square has a colour of its own", async () => {
  const page = await openStrips();
  await choose(page, "Shells", "thickness");
  const colors = await colorsOfSquares(page, Squares.slice(0, 8));
  for (let i = 0; i < 8; i += 1) {
    for (let j = 0; j < i; j += 1) assert.ok(colorDistance(colors[i], colors[j]) > 24, `${i}, ${j}`);
  }
  await closePage(page);
});

// Elements of the deck whose four corners hardly differ, so that their middle has nearly one value.
function findEvenShells(stresses, face, span) {
  const even = [];
  stresses.shells.forEach((corners, number) => {
    const values = corners.map((corner) =>
      face === "larger" ? Math.max(corner.upper[6], corner.lower[6]) : corner[face][6],
    );
    const [low, high] = [Math.min(...values), Math.max(...values)];
    if (high - low < span && high < Limit) even.push({ number, low, high });
  });
  return even;
}

const Limit = 60; // of the legend, N/mm²; higher stresses vary too much within their elements
const Span = 3; // of the corners of an element
const Shells = 60; // that are looked at

async function checkDeck(page, face, isAveraged, view) {
  const folder = folderOf("stiffened-panel");
  const model = readModelFile(`${folder}/fem_solving.txt`);
  const even = findEvenShells(readStresses(folder, isAveraged), face, Span);
  await press(page, view);
  await press(page, "Fit");
  const picture = await seePicture(page);
  const seen = [];
  // From the lowest to the highest.
  even.sort((a, b) => a.low - b.low);
  for (let k = 0; k < Shells; k += 1) {
    const shell = even[Math.floor((k * (even.length - 1)) / (Shells - 1))];
    const places = model.shells[shell.number].nodes.map((node) => model.nodes[node].place);
    // A little off the middle: there two triangles may meet, or a stiffener stand below.
    const middle = [0, 1, 2].map((d) => places.reduce((sum, place) => sum + place[d], 0) / 4);
    const aim = middle.map((value, d) => value + 0.2 * (places[0][d] - middle[d]) + 0.1 * (places[1][d] - middle[d]));
    const [x, y] = await projectPlace(page, aim);
    const color = pixelOf(picture, x, y);
    const shares = [0, 0.25, 0.5, 0.75, 1].map((t) => (shell.low + t * (shell.high - shell.low)) / Limit);
    const distance = Math.min(...shares.map((share) => colorDistance(color, cividisAt(share))));
    assert.ok(distance <= CividisLevels + 2, `shell ${shell.number}: ${color}, ${shell.low} .. ${shell.high}`);
    seen.push(shell.low);
  }
  assert.ok(Math.max(...seen) - Math.min(...seen) > 0.3 * Limit, `${Math.max(...seen)}`);
}

test("elements of the deck have the colours of their values in the result files", async () => {
  const page = await openPage(browser, "stiffened-panel");
  await showColorsAlone(page);
  await setShows(page, { Beams: false });
  await choose(page, "Shells", "mises");
  await setLegend(page, 0, Limit, 0);
  for (const face of ["upper", "lower", "larger"]) {
    await chooseOne(page, "Face", face[0].toUpperCase() + face.slice(1));
    await checkDeck(page, face, true, "Top view");
  }
  await chooseOne(page, "Values at corners", "By element");
  await checkDeck(page, "larger", false, "Top view");
  await chooseOne(page, "Values at corners", "Averaged");
  await chooseOne(page, "Face", "Visible");
  await checkDeck(page, "upper", true, "Top view");
  await checkDeck(page, "lower", true, "Bottom view");
  await closePage(page);
});

test("light makes shades of the colours", async () => {
  const page = await openPage(browser, "water-trough");
  await showColorsAlone(page);
  await choose(page, "Shells", "plain");
  const count = async () => {
    const picture = await seePicture(page);
    const colors = new Set();
    countPixels(picture, (...color) => colors.add(color.join()));
    return colors.size;
  };
  const flat = await count();
  await setShows(page, { Shading: true });
  assert.ok((await count()) > flat);
  await unfold(page, "Show");
  await settle(page);
  await closePage(page);
});

// Colours are read on the legend: none may look like that of another band.
test("light leaves the colours of numbers nearly as they are", async () => {
  const page = await openPage(browser, "water-trough");
  await showColorsAlone(page);
  const flat = await seePicture(page);
  await setShows(page, { Shading: true });
  const lit = await seePicture(page);
  let darker = 0;
  for (let at = 0; at < flat.bytes.length; ++at) {
    const [before, after] = [flat.bytes[at], lit.bytes[at]];
    if (at % flat.channels === 3 || before === after) continue;
    ++darker;
    // The factor is 0.94 .. 1; 1 for rounding.
    assert.ok(after <= before && after >= 0.94 * before - 1, `${before} became ${after}`);
  }
  assert.ok(darker > 1000, "shading is seen");
  await closePage(page);
});
