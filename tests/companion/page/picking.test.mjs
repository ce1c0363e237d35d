// Picking: at the place where a node, an element or a beam is drawn, a click finds it, and the card
// shows its row of the model file and the values of the result files.
import assert from "node:assert/strict";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { closePage, Examples, folderOf, openPage, settle, startBrowser } from "./support/browser.mjs";
import { readModelFile } from "./support/model_file.mjs";
import { makeRandom, setScale } from "./support/person.mjs";
import { readCsv, readDisplacements, readStresses } from "./support/result_files.mjs";

let browser = null;
before(async () => (browser = await startBrowser()));
after(() => browser.close());

const Tries = 200; // of each kind
const Clicks = 8; // of these with the mouse, to read the card
const NodeReach = 8; // CSS pixels in which a node wins

// From above, and from below where stiffeners stand.
const Directions = [
  [0.6, -0.5, 0.62],
  [-0.5, 0.6, -0.62],
];

function readExample(name) {
  const folder = folderOf(name);
  return {
    file: readModelFile(join(folder, "fem_solving.txt")),
    displacements: readDisplacements(folder),
    stresses: readStresses(folder, true),
    forces: readCsv(join(folder, "forces.csv")),
  };
}

// `count` different numbers below `size`, or all of them.
function draw(size, count, seed) {
  const random = makeRandom(seed);
  const numbers = Array.from({ length: size }, (_, k) => k);
  for (let k = 0; k < Math.min(count, size); k += 1) {
    const other = k + Math.floor(random() * (size - k));
    [numbers[k], numbers[other]] = [numbers[other], numbers[k]];
  }
  return numbers.slice(0, Math.min(count, size));
}

const add = (a, b, t = 1) => a.map((value, d) => value + t * b[d]);
const scale = (a, t) => a.map((value) => value * t);
const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
const size = (a) => Math.hypot(...a);
const unit = (a) => scale(a, 1 / size(a));
const meanOf = (places) => scale(places.reduce((sum, place) => add(sum, place), [0, 0, 0]), 1 / places.length);

// What is aimed at: a place on the thing, and how large it is.
function aimAt(kind, number, model, sections) {
  const placeOf = (node) => model.nodes[node].place;
  if (kind === "node") return { kind, number, place: placeOf(number), length: 0 };
  if (kind === "beam") return aimAtBeam(number, model, sections);
  const places = model[`${kind}s`][number].nodes.map(placeOf);
  // Not in the very middle, where a stiffener may stand on the other side.
  const place = add(meanOf(places), add(places[0], meanOf(places), -1), 0.3);
  const length = Math.max(...places.map((other) => size(add(other, places[0], -1))));
  return { kind, number, place, length };
}

// Half-way along, in the web at the height of the centroid; the axis of a tube.
function aimAtBeam(number, model, sections) {
  const beam = model.beams[number];
  const [a, b] = beam.nodes.map((node) => model.nodes[node].place);
  const z = sections[number].z;
  const place = add(meanOf([a, b]), z, sections[number].height);
  return { kind: "beam", number, place, length: size(add(b, a, -1)) };
}

// Local z of each beam from the file's vectors (docs/model-file.md), the centroid from the page.
function describeBeams(page) {
  return page.evaluate(() => {
    const { beams, sections } = window.kvx.model;
    return Array.from({ length: beams.count }, (_, k) => ({
      z: [...beams.z.slice(3 * k, 3 * k + 3)],
      height: sections[beams.section[k]].centroid[1],
    }));
  });
}

// For each aim: looks at it closely, or as the camera stands, and picks where it is.
function pickAll(page, aims, direction) {
  return page.evaluate(
    ([list, way]) => {
      const { scene } = window.kvx;
      const whole = scene.camera();
      return list.map((aim) => {
        if (aim.length > 0) {
          const up = [0, 0, 1];
          scene.setCamera({ target: aim.place, direction: way, up, height: 3 * aim.length }, false);
        } else {
          scene.setCamera({ ...whole, direction: way, height: 1.5 * whole.height }, false);
        }
        const at = aim.kind === "node" ? scene.projectNode(aim.number) : scene.project(aim.place);
        const picked = scene.pick(at[0], at[1]);
        const isNode = picked !== null && picked.kind === "node";
        return { picked, at, nodeAt: isNode ? scene.projectNode(picked.number) : null };
      });
    },
    [aims, direction],
  );
}

// Whether what was found in place of the aim lies before it, or is a node near by.
function isBefore(aim, found, direction) {
  if (found.picked === null) return false;
  if (found.nodeAt !== null) {
    const distance = Math.hypot(found.nodeAt[0] - found.at[0], found.nodeAt[1] - found.at[1]);
    if (distance <= NodeReach + 1) return true;
  }
  const deeper = dot(add(found.picked.place, aim.place, -1), direction);
  return deeper > -1e-3 * (aim.length + 1);
}

for (const name of Examples) {
  test(`${name}: nodes, elements and beams are found where they are drawn`, async () => {
    const { file } = readExample(name);
    const page = await openPage(browser, name);
    await setScale(page, "0");
    const beams = await describeBeams(page);
    const kinds = { node: file.nodes, shell: file.shells, triangle: file.triangles, beam: file.beams };
    for (const [kind, rows] of Object.entries(kinds)) {
      const aims = draw(rows.length, Tries, 5).map((number) => aimAt(kind, number, file, beams));
      let left = aims;
      for (const direction of Directions.map(unit)) {
        const found = await pickAll(page, left, direction);
        left = left.filter((aim, k) => {
          const { picked } = found[k];
          if (picked?.kind === kind && picked.number === aim.number) return false;
          assert.ok(isBefore(aim, found[k], direction), `${kind} ${aim.number}: ${JSON.stringify(found[k])}`);
          return true;
        });
      }
      assert.ok(left.length <= aims.length / 2, `${left.length} of ${aims.length} of ${kind} are hidden`);
    }
    await closePage(page);
  });

  test(`${name}: the card of what was clicked has the values of the result files`, async () => {
    const example = readExample(name);
    const page = await openPage(browser, name, { hash: "#controls=closed&scale=0" });
    const beams = await describeBeams(page);
    await page.evaluate(() => (window.wholeHeight = window.kvx.scene.camera().height));
    const checks = { node: checkNode, shell: checkShell, triangle: checkShell, beam: checkBeam };
    const { file } = example;
    const rows = { node: file.nodes, shell: file.shells, triangle: file.triangles, beam: file.beams };
    for (const [kind, check] of Object.entries(checks)) {
      let clicked = 0;
      for (const number of draw(rows[kind].length, 4 * Clicks, 11)) {
        if (clicked === Clicks) break;
        const aim = aimAt(kind, number, file, beams);
        // Stiffeners are seen from below.
        const direction = Directions[kind === "beam" ? 1 : 0];
        if (!(await clickAt(page, aim, direction))) continue;
        clicked += 1;
        check(example, kind, number, await readCard(page));
      }
      assert.ok(clicked >= Math.min(Clicks, rows[kind].length) / 2, `${clicked} of ${kind}`);
    }
    await closePage(page);
  });
}

// Looks closely at the aim and clicks it; whether it was picked.
async function clickAt(page, aim, direction) {
  const [x, y] = await page.evaluate(
    ([target, height, node, direction]) => {
      const { scene } = window.kvx;
      // Of a node: a part of the model.
      const seen = height > 0 ? height : window.wholeHeight / 5;
      scene.setCamera({ target, direction, up: [0, 0, 1], height: seen }, false);
      const box = document.querySelector("canvas").getBoundingClientRect();
      const at = node === null ? scene.project(target) : scene.projectNode(node);
      return [box.left + at[0], box.top + at[1]];
    },
    [aim.place, 3 * aim.length, aim.kind === "node" ? aim.number : null, direction],
  );
  await settle(page);
  await page.mouse.click(x, y);
  await settle(page);
  const picked = await page.evaluate(() => window.kvx.state().picked);
  return picked !== null && picked.kind === aim.kind && picked.number === aim.number;
}

// The card as a map of rows by heading: { Model: { "in the file": "row 3, ..." }, ... }.
function readCard(page) {
  return page.getByRole("region", { name: "Picked" }).evaluate((card) => {
    const groups = {};
    let title = "";
    for (const part of card.querySelectorAll("h3, dt")) {
      if (part.tagName === "H3") {
        title = part.textContent;
      } else {
        groups[title] ??= {};
        groups[title][part.textContent] = part.nextElementSibling.textContent;
      }
    }
    return { title: card.querySelector("h2").textContent, groups };
  });
}

const Dofs = ["ux", "uy", "uz", "rx", "ry", "rz"];

function checkNode({ file, displacements }, kind, number, card) {
  assert.equal(card.title, `Node ${number}`);
  const first = card.groups.Model;
  assert.equal(first["in the file"], `row ${number}, line ${file.nodes[number].line} of fem_solving.txt`);
  assert.deepEqual(["X", "Y", "Z"].map((axis) => Number(first[axis])), file.nodes[number].place);
  const motion = card.groups.Displacement;
  const shown = Dofs.map((dof) => Number(motion[dof].replace(" (held)", "")));
  // Of what is held the solver leaves a little.
  const wanted = displacements[number].map((value, d) => (/held/.test(motion[Dofs[d]]) ? 0 : value + 0));
  assert.deepEqual(shown, wanted);
  const held = displacements[number].filter((_, d) => /held/.test(motion[Dofs[d]]));
  assert.ok(held.every((value) => Math.abs(value) < 1e-9), `${held}`);
}

function checkShell({ file, stresses }, kind, number, card) {
  const name = kind === "shell" ? "Shell" : "Triangle";
  assert.equal(card.title, `${name} ${number}`);
  const row = file[`${kind}s`][number];
  const first = card.groups.Model;
  assert.equal(first["in the file"], `row ${number}, line ${row.line} of fem_solving.txt`);
  assert.equal(first.nodes, row.nodes.join(", "));
  assert.equal(Number(first.thickness.split(" ")[0]), file.thicknesses[row.thickness]);
  const shown = card.groups["von Mises stress, averaged"];
  for (const corner of stresses[`${kind}s`][number]) {
    const [upper, lower] = shown[`node ${corner.node}`].match(/[-+.\deE]*\d/g).map(Number);
    assert.deepEqual([upper, lower], [corner.upper[6], corner.lower[6]]);
  }
}

// Section forces at the first node; the page has six digits of them.
function checkBeam({ file, forces }, kind, number, card) {
  assert.equal(card.title, `Beam ${number}`);
  const row = file.beams[number];
  assert.equal(card.groups.Model["in the file"], `row ${number}, line ${row.line} of fem_solving.txt`);
  assert.equal(card.groups.Model.nodes, row.nodes.join(", "));
  const start = forces.find((other) => Number(other.element) === number && Number(other.distance) === 0);
  for (const force of ["N", "Vy", "Vz", "T", "My", "Mz"]) {
    const shown = Number(card.groups["Section forces"][force].split(/ to |;/)[0]);
    assert.equal(shown, Number(Number(start[force]).toPrecision(6)), `${force} of beam ${number}`);
  }
}
