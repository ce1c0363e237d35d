// Pages of examples, as kvx made them: every number that the card shows of every node, element and
// beam against the result files, the tables of kvx and the model file.
//
// KORVEX_PAGES is the folder that prepare-pages fills; without it there is nothing to compare with.
import assert from "node:assert/strict";
import { test } from "node:test";

import { findBeamLine } from "../../../../companion/view/page/src/data/frames";
import { openCases, readModel } from "../../../../companion/view/page/src/data/load_model";
import type {
  CaseResults,
  DetailModels,
  Kind,
} from "../../../../companion/view/page/src/data/page_model";
import { computeBeamField } from "../../../../companion/view/page/src/fields/beam_field";
import {
  evaluateCubic,
  findBeamExtremes,
} from "../../../../companion/view/page/src/fields/beam_ranges";
import { lineOf } from "../../../../companion/view/page/src/fields/describe_parts";
import { describePick } from "../../../../companion/view/page/src/fields/describe_pick";
import type { PickSources } from "../../../../companion/view/page/src/fields/describe_pick";
import { envelopeOf } from "../../../../companion/view/page/src/fields/envelope";
import type { ShellField } from "../../../../companion/view/page/src/fields/quantity";
import { listHighest } from "../../../../companion/view/page/src/fields/ranges";
import { computeShellField } from "../../../../companion/view/page/src/fields/shell_field";
import { formatFile } from "../../../../companion/view/page/src/fields/ticks";
import {
  hasTables,
  listPages,
  openPage,
  readDetailTexts,
  readDisplacementTexts,
  readLines,
  readStressTexts,
  readTable,
} from "./page_files";
import type { PageFolder } from "./page_files";

const pages = listPages(process.env.KORVEX_PAGES ?? "");
const averageFile = "Shell element average node stress.txt";
const ownFile = "Shell element node stress.txt";

async function openSources(
  { page, caseName }: PageFolder,
): Promise<PickSources & { results: CaseResults; details: DetailModels | null }> {
  const document = openPage(page);
  const model = await readModel(document);
  const row = model.cases.findIndex(({ name }) => caseName === "" || name === caseName);
  const cases = openCases(document, model);
  const results = await cases.results(row);
  assert.ok(results !== null);
  const [loads, corners] = [await cases.loads(row), await cases.corners(row)];
  const details = await cases.details(row);
  return { model, loads, results, corners, details, shellField: null };
}

// The values of a group of the card by the names of its rows.
function groupOf(sources: PickSources, kind: Kind, number: number, title: string) {
  const groups = describePick(sources, { kind, number });
  const rows = groups.find((group) => group.title === title)?.rows ?? [];
  // Where the card shows less, as of a held displacement, the exact value is what Copy gives.
  return rows.map(({ name, value, exact }): [string, string] => [name, exact ?? value]);
}

// The same of a group with values of both faces.
function facesOf(sources: PickSources, kind: Kind, number: number, title: string) {
  const [first, ...rows] = groupOf(sources, kind, number, title);
  assert.deepEqual(first, ["face", "upper, lower"]);
  return rows;
}

// Kind and number of each shell, in the order of the result files.
function listShells({ model }: PickSources): [Kind, number][] {
  const numbers = (kind: Kind, count: number) =>
    Array.from({ length: count }, (_, number): [Kind, number] => [kind, number]);
  return [...numbers("shell", model.shells.count), ...numbers("triangle", model.triangles.count)];
}

test("pages are there", { skip: pages.length > 0 ? false : "KORVEX_PAGES names no pages" }, () => {
  assert.ok(pages.some(({ name }) => name === "stiffened-panel"));
  assert.ok(pages.filter(({ caseName }) => caseName !== "").length >= 2);
});

test("the envelope of a page's cases has the highest number of their files", {
  skip: pages.length > 0 ? false : "KORVEX_PAGES names no pages",
}, async () => {
  const cases = pages.filter(({ caseName }) => caseName !== "");
  const options = { face: "upper" as const, isAveraged: true };
  const fields: ShellField[] = [];
  for (const one of cases) {
    const field = computeShellField("mises", await openSources(one), options);
    assert.ok(field !== null);
    fields.push(field);
  }
  const files = cases.map(({ results }) => readStressTexts(`${results}/${averageFile}`).flat());
  const values = files.map((corners) => corners.map(({ upper }) => Number(upper[6])));
  const { field, upperCases } = envelopeOf(fields, "highest");
  field.upper.forEach((value, corner) => {
    const all = values.map((array) => array[corner]);
    assert.equal(Number(formatFile(value)), Math.max(...all));
    assert.equal(all.indexOf(Math.max(...all)), upperCases[corner]);
  });
  assert.ok(new Set(upperCases).size > 1); // more than one case governs somewhere
});

for (const one of pages) {
  const { name, results: folder } = one;

  test(`${name}: displacements of all nodes`, async () => {
    const sources = await openSources(one);
    const expected = readDisplacementTexts(folder);
    assert.equal(expected.length, sources.model.nodeCount);
    expected.forEach((texts, node) => {
      const rows = groupOf(sources, "node", node, "Displacement").slice(0, 6);
      assert.deepEqual(rows.map(([, value]) => value), texts, `node ${node}`);
    });
  });

  test(`${name}: averaged stresses of all corners`, async () => {
    const sources = await openSources(one);
    const expected = readStressTexts(`${folder}/${averageFile}`);
    const shells = listShells(sources);
    assert.equal(expected.length, shells.length);
    shells.forEach(([kind, number], row) => {
      const rows = facesOf(sources, kind, number, "von Mises stress, averaged");
      const texts = expected[row].map(({ node, upper, lower }) => [
        `node ${node}`,
        `${upper[6]}, ${lower[6]}`,
      ]);
      assert.deepEqual(rows, texts, `${kind} ${number}`);
    });
    for (const [component, id] of ["SX", "SY", "SZ", "TXY", "TXZ", "TYZ"].entries()) {
      for (const face of ["upper", "lower"] as const) {
        const options = { face, isAveraged: true };
        const field = computeShellField(id, sources, options);
        const texts = expected.flat().map((corner) => corner[face][component]);
        assert.deepEqual([...(field?.upper ?? [])].map(formatFile), texts, `${id} ${face}`);
      }
    }
  });

  test(`${name}: von Mises stresses of elements by themselves`, async () => {
    const sources = await openSources(one);
    const expected = readStressTexts(`${folder}/${ownFile}`);
    listShells(sources).forEach(([kind, number], row) => {
      const rows = facesOf(sources, kind, number, "von Mises stress, by element");
      // The file has the first corner of a triangle at all three, the card once.
      const corners = kind === "triangle" ? expected[row].slice(0, 1) : expected[row];
      assert.equal(rows.length, corners.length);
      corners.forEach(({ upper, lower }, k) => {
        const texts = /^(\S+), (\S+)$/.exec(rows[k][1]);
        for (const [face, text] of [[upper, texts?.[1]], [lower, texts?.[2]]] as const) {
          // Both are rounded, to five and to six digits, from six digits: 5e-5 + 2 * 5e-6 of it.
          if (text === face[6]) continue; // no number, for one
          const difference = Math.abs(Number(text) - Number(face[6]));
          assert.ok(difference <= 6e-5 * Number(face[6]), `${kind} ${number}: ${text}, ${face[6]}`);
        }
      });
    });
  });

  test(`${name}: lines, coordinates and nodes are those of the model file`, async () => {
    const sources = await openSources(one);
    const { model } = sources;
    const lines = readLines(`${folder}/${model.file}`);
    const counts = {
      node: model.nodeCount,
      shell: model.shells.count,
      triangle: model.triangles.count,
      beam: model.beams.count,
    };
    for (const kind of ["node", "shell", "triangle", "beam"] as const) {
      for (let number = 0; number < counts[kind]; ++number) {
        const line = lineOf(model, kind, number);
        const group = new Map(groupOf(sources, kind, number, ""));
        const place = `row ${number}, line ${line} of ${model.file}`;
        assert.equal(group.get("in the file"), place);
        const [row, rest] = lines[line - 1].split(":");
        assert.equal(Number(row), number, place);
        const numbers = rest.split(/[[<]/)[0].split(",").map(Number);
        const shown =
          kind === "node"
            ? ["X", "Y", "Z"].map((axis) => Number(group.get(axis)))
            : group.get("nodes")?.split(", ").map(Number);
        assert.deepEqual(shown, numbers, place);
      }
    }
  });

  test(`${name}: the detail models of all beams`, async () => {
    const { details, model } = await openSources(one);
    // Those of the tower are too many for a page.
    const hasDetails = model.beams.count > 0 && !name.startsWith("lattice-tower");
    assert.equal(details !== null, hasDetails);
    if (details === null) return;
    const beams = readDetailTexts(folder);
    assert.equal(beams.length, model.beams.count);
    const texts = (values: ArrayLike<number>, row: number) =>
      [0, 1, 2].map((d) => formatFile(values[3 * row + d]));
    let shell = 0;
    for (const [beam, shells] of beams.entries()) {
      for (const corners of shells) {
        assert.equal(details.beams[shell], beam);
        corners.forEach(({ place, motion, upper, lower }, k) => {
          const node = details.shells[4 * shell + k];
          assert.deepEqual(texts(details.coordinates, node), place, `beam ${beam}`);
          assert.deepEqual(texts(details.displacements, node), motion, `beam ${beam}`);
          const { rows, upperMises, lowerMises } = details.stresses;
          const row = rows[4 * shell + k];
          const mises = [upperMises[row], lowerMises[row]].map(formatFile);
          assert.deepEqual(mises, [upper[6], lower[6]], `beam ${beam}`);
        });
        ++shell;
      }
    }
    assert.equal(shell, details.beams.length);
  });

  if (!hasTables(folder)) continue;

  test(`${name}: forces and moments of all shells`, async () => {
    const sources = await openSources(one);
    const rows = ["shell", "triangle"].flatMap((kind) => readTable(`${folder}/${kind}.csv`));
    let corner = -1; // of the row; -1: the centre
    for (const row of rows) {
      const kind = row.get("kind") === "shell" ? "shell" : "triangle";
      corner = row.get("node") === "" ? -1 : corner + 1;
      const number = Number(row.get("element"));
      if (kind === "triangle" && corner > 0) continue; // shown at the first corner only
      const where = kind === "shell" ? "by node" : "at the first node";
      const title = `Forces and moments ${where}, element axes`;
      const group = groupOf(sources, kind, number, title);
      assert.equal(group.length, kind === "shell" ? 8 : 6);
      for (const [id, text] of group) {
        const place = `${kind} ${number}, corner ${corner}, ${id}`;
        if (id.endsWith("centre")) {
          const exact = Number(row.get(id.slice(0, 2)));
          if (corner < 0) assert.equal(text, formatFile(exact), place);
        } else if (corner >= 0) {
          const factor = Number(row.get("thickness")) ** (id.startsWith("m") ? 2 : 1);
          // The stresses have six digits, the card five of the larger part: a tenth of a thousandth
          // of it is half a unit of these, and the rounding of the stresses a tenth of that.
          const part = id.slice(1);
          const size = ["upper", "lower"]
            .map((face) => Math.abs(Number(row.get(`${face}_${part}`))))
            .reduce((a, b) => a + b, 0);
          const scale = factor * size * (id.startsWith("m") ? 1 / 12 : 1 / 2);
          const difference = Math.abs(Number(text.split(", ")[corner]) - Number(row.get(id)));
          assert.ok(difference <= 6e-5 * scale, `${place}: ${text} against ${row.get(id)}`);
        }
      }
    }
    const { shells, triangles } = sources.model;
    assert.equal(rows.length, 5 * shells.count + 4 * triangles.count);
  });

  test(`${name}: section forces and stresses of all beams`, async () => {
    const sources = await openSources(one);
    const { model, results } = sources;
    const stress = computeBeamField("beamStress", sources);
    assert.ok(stress !== null);
    const loaded = new Set(sources.loads?.beamLoads);
    const highest = new Map<number, number>(); // by beam: of the stations
    const rows = readTable(`${folder}/forces.csv`).filter((row) => row.get("kind") === "beam");
    for (const row of rows) {
      const beam = Number(row.get("element"));
      const { length } = findBeamLine(model.coordinates, model.beams, beam);
      const s = Number(row.get("distance")) / length;
      const group = new Map(groupOf(sources, "beam", beam, "Section forces"));
      for (const [force, id] of ["N", "Vy", "Vz", "T", "My", "Mz"].entries()) {
        const exact = Number(row.get(id));
        const cubic = results.forces.subarray(24 * beam + 4 * force, 24 * beam + 4 * force + 4);
        // Four coefficients of six digits.
        const size = cubic.reduce((sum, value) => sum + Math.abs(value), 0);
        const difference = Math.abs(evaluateCubic(cubic, s) - exact);
        assert.ok(difference <= 6e-6 * size, `beam ${beam}, ${id} at ${s}`);
        const shown = group.get(id)?.split(/ to |; /)[0];
        if (s === 0) assert.equal(shown, formatFile(exact), `beam ${beam}, ${id}`);
      }
      highest.set(beam, Math.max(highest.get(beam) ?? -Infinity, Number(row.get("sigma_max"))));
    }
    assert.equal(highest.size, model.beams.count);
    for (const [beam, value] of highest) {
      const extremes = findBeamExtremes(stress, model, beam);
      const size = Math.max(Math.abs(extremes.lowest.value), Math.abs(extremes.highest.value));
      const difference = extremes.highest.value - value;
      // Without line load moments are straight, and the highest stress is at an end, a station.
      // With one it may be between two stations, and never below theirs.
      assert.ok(difference >= -2e-5 * size, `beam ${beam}`);
      if (!loaded.has(beam)) assert.ok(difference <= 2e-5 * size, `beam ${beam}`);
    }
  });

  test(`${name}: reactions`, async () => {
    const sources = await openSources(one);
    const names = ["Fx", "Fy", "Fz", "Mx", "My", "Mz"];
    const table = readTable(`${folder}/reactions.csv`);
    const rows = table.filter((row) => row.get("kind") === "support");
    for (const row of rows) {
      const expected = names
        .map((id): [string, string] => [id, formatFile(Number(row.get(id)))])
        .filter(([, text]) => Number(text) !== 0);
      const node = Number(row.get("node"));
      assert.deepEqual(groupOf(sources, "node", node, "Reaction"), expected, `node ${node}`);
    }
    assert.equal(rows.length, sources.results.reactionNodes.length);
  });

  test(`${name}: the highest stresses are those of kvx top`, async () => {
    const sources = await openSources(one);
    const options = { face: "larger" as const, isAveraged: true };
    const field = computeShellField("mises", sources, options);
    const expected = readTable(`${folder}/top.csv`).filter((row) => row.get("kind") !== "beam");
    if (field === null || expected.length === 0) return;
    const { shells, triangles, beams } = sources.model;
    const hidden = {
      shells: new Uint8Array(shells.count),
      triangles: new Uint8Array(triangles.count),
      beams: new Uint8Array(beams.count),
    };
    const found = listHighest(field, sources.model, hidden, expected.length);
    assert.deepEqual(
      found.map(({ value }) => formatFile(value)),
      expected.map((row) => formatFile(Number(row.get("value")))),
    );
    // Of values that are equal in six digits the page may list others, at the end of the list.
    const listed = new Map(
      found.map((one) => [`${one.kind} ${one.number}`, formatFile(one.value)]),
    );
    const last = formatFile(found[found.length - 1].value);
    for (const row of expected) {
      const value = formatFile(Number(row.get("value")));
      const element = `${row.get("kind")} ${row.get("element")}`;
      if (value !== last) assert.equal(listed.get(element), value, element);
    }
  });
}
