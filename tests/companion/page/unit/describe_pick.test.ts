// What the card says of nodes, elements and beams.
import assert from "node:assert/strict";
import { test } from "node:test";

import { describePick } from "../../../../companion/view/page/src/fields/describe_pick";
import type { PickSources } from "../../../../companion/view/page/src/fields/describe_pick";
import { computeBeamField } from "../../../../companion/view/page/src/fields/beam_field";
import {
  envelopeOf,
  envelopeOfBeams,
} from "../../../../companion/view/page/src/fields/envelope";
import { computeShellField } from "../../../../companion/view/page/src/fields/shell_field";
import type { Kind } from "../../../../companion/view/page/src/data/page_model";
import {
  makeSmallCorners,
  makeSmallLoads,
  makeSmallModel,
  makeSmallResults,
  makeSmallSources,
} from "./small_model";

function makeSources(): PickSources {
  return {
    model: makeSmallModel(),
    loads: makeSmallLoads(),
    results: makeSmallResults(),
    corners: makeSmallCorners(),
    shellField: null,
  };
}

// "group / name: value" of each row.
function linesOf(kind: Kind, number: number, sources = makeSources()): string[] {
  return describePick(sources, { kind, number }).flatMap(({ title, rows }) =>
    rows.map(({ name, value }) => `${title} / ${name}: ${value}`),
  );
}

test("a node", () => {
  assert.deepEqual(linesOf("node", 3), [
    " / in the file: row 3, line 13 of fem_solving.txt",
    " / X: 0",
    " / Y: 1",
    " / Z: 0",
    "Displacement / ux: 3",
    "Displacement / uy: 6",
    "Displacement / uz: 6",
    "Displacement / rx: 0.003",
    "Displacement / ry: 0",
    "Displacement / rz: 0",
    "Displacement / |u|: 9", // sqrt(9 + 36 + 36)
    "Support / held: ux, uz", // flags 1 + 4
    "Support / uz prescribed: 0.25",
    "Reaction / Fz: 7",
    "von Mises stress, averaged / face: upper, lower",
    "von Mises stress, averaged / shell 0: 30.5, 60.5", // row 3
    "von Mises stress, averaged / shell 2: 80.5, 160.5", // row 8
    "Elements / shells: 0, 2",
  ]);
});

test("a node in the plate: elements with one average share a row", () => {
  const lines = linesOf("node", 1);
  const stress = "von Mises stress, averaged / shell 0, shell 1: 10.5, 20.5";
  assert.ok(lines.includes(stress));
  assert.ok(lines.includes("Elements / beams: 0, 1"));
  assert.ok(lines.includes("Findings / K104, warning: The thickness is <odd>."));
  assert.ok(linesOf("node", 4).includes("Loads / Fz: -1000"));
  assert.ok(!linesOf("node", 4).some((line) => line.startsWith("Loads / Fx")));
});

test("a node of the triangle alone", () => {
  // Row 12 of the averages.
  const lines = linesOf("node", 8);
  assert.ok(lines.includes("von Mises stress, averaged / triangle 0: 120.5, 240.5"));
  assert.ok(lines.includes("Elements / triangles: 0"));
});

test("a four-node shell", () => {
  assert.deepEqual(linesOf("shell", 0), [
    " / in the file: row 0, line 30 of fem_solving.txt",
    " / nodes: 0, 1, 4, 3",
    " / thickness: 10 (row 0)",
    " / material: E 210000, ν 0.3 (row 0)",
    " / part: 0",
    "Pressure / along the normal: 0.5",
    "Pressure / at nodes 1, 2, 3: 1, 2, 3",
    "von Mises stress, averaged / face: upper, lower",
    "von Mises stress, averaged / node 0: 0.5, 0.5",
    "von Mises stress, averaged / node 1: 10.5, 20.5",
    "von Mises stress, averaged / node 4: 20.5, 40.5",
    "von Mises stress, averaged / node 3: 30.5, 60.5",
    "von Mises stress, by element / face: upper, lower",
    // Upper (c, 2 c, 0): c sqrt(3). Lower (-c, c, 3): sqrt(3 c^2 + 27).
    "von Mises stress, by element / node 0: 0, 5.1962",
    "von Mises stress, by element / node 1: 1.7321, 5.4772",
    "von Mises stress, by element / node 4: 3.4641, 6.245",
    "von Mises stress, by element / node 3: 5.1962, 7.3485",
    // t = 10: 5 (upper + lower) and 100 (upper - lower) / 12. my of the second corner is the
    // difference of 16.7 and 8.3, so its fourth decimal is not sure.
    "Forces and moments by node, element axes / nx: 0, 0, 0, 0",
    "Forces and moments by node, element axes / ny: 0, 15, 30, 45",
    "Forces and moments by node, element axes / nxy: 15, 15, 15, 15",
    "Forces and moments by node, element axes / mx: 0, 16.667, 33.333, 50",
    "Forces and moments by node, element axes / my: 0, 8.333, 16.667, 25",
    "Forces and moments by node, element axes / mxy: -25, -25, -25, -25",
    "Forces and moments by node, element axes / qx, centre: 0",
    "Forces and moments by node, element axes / qy, centre: 0",
  ]);
});

test("a triangle with a row of lines of its own", () => {
  const lines = linesOf("triangle", 0);
  assert.equal(lines[0], " / in the file: row 0, line 77 of fem_solving.txt");
  assert.ok(lines.includes("von Mises stress, averaged / node 8: 120.5, 240.5"));
  assert.ok(lines.includes("Findings / K101, hint: A hint."));
  assert.ok(!lines.some((line) => line.includes("qx")));
  // Its own stresses are those of the first corner, 12: (12, 24, 0), t = 10.
  assert.deepEqual(
    lines.filter((line) => line.includes("by element") || line.includes("/ nx:")),
    [
      "von Mises stress, by element / face: upper, lower",
      "von Mises stress, by element / node 2: 20.785, 21.424",
      "Forces and moments at the first node, element axes / nx: 0",
    ],
  );
});

test("what is shown stands in the card, too", () => {
  const fieldOf = (id: string, face: "larger" | "visible") =>
    computeShellField(id, makeSmallSources(), { face, isAveraged: true });
  const shown = linesOf("shell", 1, { ...makeSources(), shellField: fieldOf("SX", "larger") });
  // Corner 6, node 5, has row 6: 60 and -120.
  assert.ok(shown.includes("Shown: stress along global X / node 5: -120"));
  const visible = linesOf("shell", 1, { ...makeSources(), shellField: fieldOf("SX", "visible") });
  assert.ok(visible.includes("Shown: stress along global X / node 5: 60, -120"));
  const mises = linesOf("shell", 1, { ...makeSources(), shellField: fieldOf("mises", "larger") });
  assert.ok(!mises.some((line) => line.startsWith("Shown")));
});

test("of an envelope: what is shown, and the cases that govern", () => {
  const sources = { ...makeSources(), results: null, loads: null, corners: null };
  sources.model.cases = ["a", "unsolved", "b <c>"].map((name) => ({
    ...sources.model.cases[0],
    name,
    isSolved: name !== "unsolved",
  }));
  const other = makeSmallSources();
  other.results?.shells.lowerMises.fill(1000, 3, 4);
  other.results?.forces.fill(120, 0, 1);
  const all = [makeSmallSources(), other];
  const shells = all.map((one) =>
    computeShellField("mises", one, { face: "larger", isAveraged: true }),
  );
  const beams = all.map((one) => computeBeamField("beamN", one));
  assert.ok(shells[0] !== null && shells[1] !== null && beams[0] !== null && beams[1] !== null);
  const shell = envelopeOf([shells[0], shells[1]], "highest");
  const beam = envelopeOfBeams([beams[0], beams[1]], sources.model, "highest");
  const shown = {
    ...sources,
    shellField: shell.field,
    beamField: beam.field,
    envelopes: { shell, beam },
  };
  // Corner 3 of shell 0 has row 3; only there the second solved case is higher.
  assert.deepEqual(linesOf("shell", 0, shown).slice(5), [
    "Shown: von Mises stress / node 0: 0.5 (a)",
    "Shown: von Mises stress / node 1: 20.5 (a)",
    "Shown: von Mises stress / node 4: 40.5 (a)",
    "Shown: von Mises stress / node 3: 1000 (b <c>)",
  ]);
  assert.deepEqual(linesOf("beam", 0, shown).slice(8), [
    "Shown: axial force / highest: 120 at x = 0 (b <c>)",
    "Shown: axial force / lowest: 120 at x = 0 (b <c>)",
  ]);
});

test("a beam", () => {
  assert.deepEqual(linesOf("beam", 0), [
    " / in the file: row 0",
    " / nodes: 0, 1",
    " / length: 2",
    " / section: flat bar 0, FB <4 x 2>, Hw 4, Tw 2",
    " / A: 10",
    " / Iy, Iz: 20, 5",
    " / material: E 210000, ν 0.3 (row 0)",
    " / part: 0",
    "Section forces / N: 100",
    "Section forces / Vy: 0; -0.25 at x = 1", // s^2 - s
    "Section forces / Vz: 0",
    "Section forces / T: 0",
    "Section forces / My: 0 to 40",
    "Section forces / Mz: 10",
    "Stress / highest σ: 16 at x = 2, y = -1, z = 2", // beam_field.test.ts
    "Stress / lowest σ: 4 at x = 2, y = 1, z = -2",
    "Stress / detail model at mid-length, σv: 15.25",
    "Displacement / |u|, node 0: 0",
    "Displacement / |u|, node 1: 3",
  ]);
});

test("a beam without a section, under load", () => {
  const lines = linesOf("beam", 1);
  assert.ok(lines.includes(" / section: none"));
  assert.ok(lines.includes("Line load along z / first, second node: -3, -4"));
  assert.ok(lines.includes("Stress / detail model at mid-length, σv: nan"));
  assert.ok(!lines.some((line) => line.includes("highest")));
});

test("a moment that vanishes at the second end shows as zero", () => {
  // My = 1234567 - 1234567 s^2 in six digits: 1.23457e6 and -1.23456e6, which leaves 10.
  const sources = makeSources();
  sources.results?.forces.set([1.23457e6, 0, -1.23456e6, 0], 16);
  assert.ok(linesOf("beam", 0, sources).includes("Section forces / My: 1.23457e+06 to 0"));
});

test("before solving there are rows of the model alone", () => {
  const sources = { ...makeSources(), results: null, corners: null, loads: null };
  assert.deepEqual(linesOf("node", 0, sources).slice(1), [
    " / X: 0", " / Y: 0", " / Z: 0", "Support / held: ux, uy, uz, rx, ry, rz",
    "Elements / shells: 0", "Elements / beams: 0",
  ]);
  assert.equal(linesOf("shell", 0, sources).length, 5);
  assert.equal(linesOf("beam", 0, sources).length, 8);
});

test("rows that do not exist, and numbers that are none", () => {
  const sources = makeSources();
  sources.model.shells.thickness[0] = 9;
  sources.model.shells.material[0] = -1;
  sources.model.materials[1].E = NaN;
  sources.results?.displacements.fill(NaN);
  sources.results?.forces.fill(NaN);
  sources.results?.shells.upperMises.fill(NaN);
  const lines = linesOf("shell", 0, sources);
  assert.ok(lines.includes(" / thickness: does not exist (row 9)"));
  assert.ok(lines.includes(" / material: does not exist (row -1)"));
  assert.ok(lines.includes("von Mises stress, averaged / node 1: nan, 20.5"));
  assert.ok(linesOf("beam", 1, sources).includes(" / material: E nan, ν 0.33 (row 1)"));
  assert.ok(linesOf("node", 1, sources).includes("Displacement / |u|: nan"));
  assert.ok(linesOf("beam", 0, sources).includes("Section forces / N: nan"));
  assert.ok(linesOf("beam", 0, sources).includes("Stress / highest σ: nan"));
});

test("what does not exist has no rows", () => {
  for (const kind of ["node", "shell", "triangle", "beam"] as const) {
    for (const number of [-1, 9, 1e9]) assert.deepEqual(linesOf(kind, number), []);
  }
});

test("a held displacement is 0, and exact in what is copied", () => {
  const sources = makeSources();
  const { displacements } = sources.results ?? assert.fail();
  displacements[6 * 3] = 1e-17; // ux of node 3, of which ux and uz are held; the largest has some 10
  const rows = describePick(sources, { kind: "node", number: 3 }).flatMap((group) => group.rows);
  const { value, exact } = rows.find((row) => row.name === "ux") ?? assert.fail();
  assert.deepEqual([value, exact], ["0 (held)", "1e-17"]);
  assert.equal(rows.find((row) => row.name === "uz")?.value, "6");
});
