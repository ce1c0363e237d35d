// The page's data: JSON and blocks, as the program writes them.
import assert from "node:assert/strict";
import { test } from "node:test";

import { openCases, readModel } from "../../../../companion/view/page/src/data/load_model";
import { addDecimals, addDoubles, addIntegers, encodeBlock, makeBlock } from "./page_block_text";
import type { TestBlock } from "./page_block_text";

// Stands for a Document: texts by id.
type Texts = Map<string, string>;

function asDocument(texts: Texts) {
  return {
    getElementById(id: string) {
      const text = texts.get(id);
      return text === undefined ? null : { textContent: text };
    },
  };
}

function addTable(block: TestBlock, name: string, corners: number, elements: number[][]): void {
  addIntegers(block, `${name}.nodes`, elements.flat());
  for (const column of ["thickness", "material", "part"]) {
    addIntegers(block, `${name}.${column}`, elements.map((_, row) => row));
  }
  assert.ok(elements.every((nodes) => nodes.length === corners));
}

// One four-node shell, no triangle, one beam, one support, as the program lists their columns.
function makeStructure(): TestBlock {
  const block = makeBlock();
  addDoubles(block, "coordinates", [0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0.1]);
  addTable(block, "shells", 4, [[0, 1, 2, 3]]);
  addTable(block, "triangles", 3, []);
  addIntegers(block, "beams.nodes", [0, 2]);
  addIntegers(block, "beams.section", [-1]);
  addIntegers(block, "beams.material", [0]);
  addIntegers(block, "beams.part", [1]);
  addDoubles(block, "beams.z", [0, 0, 1]);
  addIntegers(block, "supportNodes", [3]);
  addIntegers(block, "supportFlags", [63]);
  addIntegers(block, "lines.beam", [44]);
  return block;
}

function makeLoads(): TestBlock {
  const block = makeBlock();
  addIntegers(block, "forceNodes", [2]);
  addDecimals(block, "forces", [0, 0, -5, 0, 0, 0]);
  addIntegers(block, "prescribedNodes", []);
  addIntegers(block, "prescribedDofs", []);
  addDecimals(block, "prescribedValues", []);
  addIntegers(block, "shellLoads", [0]);
  addDecimals(block, "shellPressures", [1, 2, 3]);
  addIntegers(block, "triangleLoads", []);
  addDecimals(block, "trianglePressures", []);
  addIntegers(block, "beamLoads", [0]);
  addDecimals(block, "lineLoads", [4, 5]);
  return block;
}

function addStresses(block: TestBlock, prefix: string): void {
  addIntegers(block, `${prefix}.rows`, [0, 1, 1, 0]);
  addDecimals(block, `${prefix}.upper`, Array.from({ length: 12 }, (_, i) => i));
  addDecimals(block, `${prefix}.lower`, Array.from({ length: 12 }, (_, i) => -i));
  addDecimals(block, `${prefix}.upperMises`, [1.5, NaN]);
  addDecimals(block, `${prefix}.lowerMises`, [2.5, 3.5]);
}

function makeResults(): TestBlock {
  const block = makeBlock();
  addDecimals(block, "displacements", Array.from({ length: 24 }, (_, i) => i / 4));
  addIntegers(block, "reactionNodes", [3]);
  addDecimals(block, "reactions", [0, 0, 5, 0, 0, 0]);
  addStresses(block, "shells");
  addDecimals(block, "forces", Array.from({ length: 24 }, (_, i) => i));
  return block;
}

function makeCorners(): TestBlock {
  const block = makeBlock();
  addDecimals(block, "upper", Array.from({ length: 12 }, (_, i) => i));
  addDecimals(block, "lower", Array.from({ length: 12 }, (_, i) => i));
  addDecimals(block, "shear", [1, 2]);
  return block;
}

function makeDetails(): TestBlock {
  const block = makeBlock();
  addDoubles(block, "coordinates", Array.from({ length: 12 }, (_, i) => i / 10));
  addDecimals(block, "displacements", Array.from({ length: 12 }, () => 0));
  addIntegers(block, "shells", [0, 1, 2, 3]);
  addIntegers(block, "beams", [0]);
  addStresses(block, "stresses");
  return block;
}

function makeJson(): Record<string, unknown> {
  const solved = { loads: "loads-0", results: "results-0", corners: "corners-0" };
  return {
    title: "deck </script>",
    program: "kvx 0",
    file: "fem_solving.txt",
    notices: [],
    parts: 2,
    thicknesses: [12, null],
    materials: [{ E: 210000, nu: null, density: 0 }],
    sections: [
      {
        type: "T", index: 0, mirrored: true, offset: null, name: "<T>", sizes: "", area: null,
        rings: [[0, null]], centroid: [1, null], Iy: 3, Iz: 4,
      },
    ],
    findings: [
      { code: "K1", severity: "hint", line: 0, message: "", remedy: "", place: null, nodes: [],
        elements: {} },
      { code: "K2", severity: "error", line: 3, message: "", remedy: "", place: [1, null, 3],
        nodes: [[0, 0], [2, 3]], elements: { beam: [[0, 0]], shell: [[4, 6]] } },
    ],
    cases: [
      { name: "a", isSolved: true, note: "", blocks: { ...solved, details: "details-0" } },
      { name: "b", isSolved: false, note: "not solved", blocks: { loads: "loads-0" } },
    ],
    firstLines: { node: 5, shell: 10, triangle: 0, beam: 20 },
    nodeCount: 4,
    counts: { shells: 1, triangles: 0, beams: 1 },
    blocks: {},
  };
}

// The deck of a model: two groups, the second one of the shell and two nodes.
function addOrigin(block: TestBlock): void {
  addDoubles(block, "origin.node", [11, 12, 5e15, 14]);
  addDoubles(block, "origin.shell", [4711]);
  addDoubles(block, "origin.triangle", []);
  addDoubles(block, "origin.beam", [9]);
  addIntegers(block, "origin.shell.type", [1]);
  addIntegers(block, "origin.triangle.type", []);
  addIntegers(block, "origin.beam.type", [-1]);
  addIntegers(block, "origin.node.groups", [2, 0, 3]);
  addIntegers(block, "origin.shell.groups", [0]);
  addIntegers(block, "origin.triangle.groups", []);
  addIntegers(block, "origin.beam.groups", [0]);
}

const originJson = {
  source: "deck.bdf",
  format: "Nastran bulk data",
  types: ["CBAR", "CQUAD4"],
  thicknesses: ["PSHELL 1", ""],
  materials: ["MAT1 1"],
  groups: [
    { name: "a", source: "SET 1", counts: { node: 1, shell: 0, triangle: 0, beam: 1 } },
    { name: "b", source: "SET 2", counts: { node: 2, shell: 1, triangle: 0, beam: 0 } },
  ],
};

function makePage(
  change: (json: Record<string, unknown>) => void = () => {},
  structure = makeStructure(),
): Texts {
  const json = makeJson();
  const texts: Texts = new Map();
  const columns: Record<string, unknown> = {};
  const blocks = {
    structure,
    "loads-0": makeLoads(),
    "results-0": makeResults(),
    "corners-0": makeCorners(),
    "details-0": makeDetails(),
  };
  for (const [id, block] of Object.entries(blocks)) {
    columns[id] = block.columns;
    texts.set(`kvx-block-${id}`, encodeBlock(block));
  }
  json.blocks = columns;
  change(json);
  texts.set("kvx-model", JSON.stringify(json).replaceAll("<", "\\u003c"));
  return texts;
}

test("the model, with null for numbers that are none", async () => {
  const model = await readModel(asDocument(makePage()));
  assert.equal(model.title, "deck </script>");
  assert.deepEqual(model.thicknesses, [12, NaN]);
  assert.deepEqual(model.materials, [{ E: 210000, nu: NaN, density: 0 }]);
  assert.deepEqual(model.sections[0].rings, [[0, NaN]]);
  assert.deepEqual(model.sections[0].centroid, [1, NaN]);
  assert.equal(model.sections[0].name, "<T>");
  assert.ok(Number.isNaN(model.sections[0].offset) && Number.isNaN(model.sections[0].area));
  assert.equal(model.findings[0].place, null);
  assert.deepEqual(model.findings[1].place, [1, NaN, 3]);
  // Runs: first and last number.
  assert.deepEqual(model.findings[1].nodes, [0, 2, 3]);
  assert.deepEqual(
    model.findings[1].elements.map(({ kind, number }) => `${kind} ${number}`),
    ["shell 4", "shell 5", "shell 6", "beam 0"],
  );
  assert.equal(model.coordinates[11], 0.1);
  assert.deepEqual(model.shells.nodes, Int32Array.of(0, 1, 2, 3));
  assert.equal(model.triangles.count, 0);
  assert.deepEqual(model.beams.section, Int32Array.of(-1));
  assert.deepEqual(model.beams.z, Float64Array.of(0, 0, 1));
  assert.deepEqual(model.supportFlags, Int32Array.of(63));
  assert.equal(model.lines.node, null);
  assert.deepEqual(model.lines.beam, Int32Array.of(44));
});

test("the deck of an imported model", async () => {
  assert.equal((await readModel(asDocument(makePage()))).origin, null);
  const structure = makeStructure();
  addOrigin(structure);
  const page = makePage((json) => (json.origin = originJson), structure);
  const { origin } = await readModel(asDocument(page));
  assert.ok(origin !== null);
  assert.equal(origin.source, "deck.bdf");
  assert.deepEqual(origin.numbers.node, Float64Array.of(11, 12, 5e15, 14));
  assert.deepEqual(origin.numbers.shell, Float64Array.of(4711));
  assert.deepEqual(origin.typeRows.beam, Int32Array.of(-1));
  assert.deepEqual(origin.groups.map(({ name }) => name), ["a", "b"]);
  assert.deepEqual([...origin.groups[0].members.node], [2]);
  assert.deepEqual([...origin.groups[1].members.node], [0, 3]);
  assert.deepEqual([...origin.groups[0].members.beam, ...origin.groups[1].members.shell], [0, 0]);
  assert.equal(origin.groups[0].members.shell.length, 0);
  // Without its columns the page is damaged.
  const damaged = makePage((json) => (json.origin = originJson));
  await assert.rejects(readModel(asDocument(damaged)), /column origin/);
});

test("a case with everything", async () => {
  const document = asDocument(makePage());
  const cases = openCases(document, await readModel(document));
  const loads = await cases.loads(0);
  assert.deepEqual(loads.forces, Float32Array.of(0, 0, -5, 0, 0, 0));
  assert.deepEqual(loads.lineLoads, Float32Array.of(4, 5));
  const results = await cases.results(0);
  assert.equal(results?.displacements[23], 5.75);
  assert.deepEqual(results?.shells.upperMises, Float32Array.of(1.5, NaN));
  assert.deepEqual([results?.shells.upper[11], results?.shells.lower[11]], [11, -11]);
  assert.equal(results?.detailStresses, null);
  assert.deepEqual((await cases.corners(0))?.shear, Float32Array.of(1, 2));
  const details = await cases.details(0);
  assert.equal(details?.coordinates[11], 1.1);
  assert.deepEqual(details?.stresses.lowerMises, Float32Array.of(2.5, 3.5));
});

test("a case is decoded once; one that is not solved has null", async () => {
  const document = asDocument(makePage());
  const cases = openCases(document, await readModel(document));
  assert.equal(cases.results(0), cases.results(0));
  assert.equal(await cases.results(1), null);
  assert.equal(await cases.corners(1), null);
  assert.equal(await cases.details(1), null);
  assert.deepEqual((await cases.loads(1)).forceNodes, Int32Array.of(2));
});

test("pages whose parts are missing or do not fit are refused with a sentence", async () => {
  const without = (id: string) => {
    const texts = makePage();
    texts.delete(id);
    return readModel(asDocument(texts));
  };
  await assert.rejects(without("kvx-model"), /kvx-model is missing/);
  await assert.rejects(without("kvx-block-structure"), /kvx-block-structure is missing/);
  const moreNodes = makePage((json) => (json.nodeCount = 5));
  await assert.rejects(readModel(asDocument(moreNodes)), /column coordinates is missing or does/);
  const noBlocks = makePage((json) => (json.blocks = {}));
  await assert.rejects(readModel(asDocument(noBlocks)), /block structure is not listed/);
  const moreBeams = makePage((json) => (json.counts = { shells: 1, triangles: 0, beams: 2 }));
  await assert.rejects(readModel(asDocument(moreBeams)), /column beams.nodes/);
});
