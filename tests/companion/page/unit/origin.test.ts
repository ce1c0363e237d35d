// What an imported model is called in its deck: on the card, and groups of the deck as filters.
import assert from "node:assert/strict";
import { test } from "node:test";

import type { Kind, Origin, PageModel } from "../../../../companion/view/page/src/data/page_model";
import { describePick, titlePick } from "../../../../companion/view/page/src/fields/describe_pick";
import { findHidden } from "../../../../companion/view/page/src/fields/filters";
import { hideNothing, makeSmallModel } from "./small_model";

function makeOrigin(): Origin {
  const none = Int32Array.of();
  return {
    source: "deck <1>.bdf",
    format: "Nastran bulk data",
    numbers: {
      node: Float64Array.of(101, 102, 103, 104, 105, 106, 107, 108, 109),
      shell: Float64Array.of(4711, 2 ** 50, 3),
      triangle: Float64Array.of(9),
      beam: Float64Array.of(10, 11),
    },
    types: ["CQUAD4", "CBAR"],
    typeRows: {
      shell: Int32Array.of(0, 0, 0),
      triangle: Int32Array.of(-1),
      beam: Int32Array.of(1, 1),
    },
    thicknesses: ["PSHELL 10"],
    materials: ["", "MAT1 7"],
    groups: [
      {
        name: "deck",
        source: "*ELSET",
        members: { node: Int32Array.of(3), shell: Int32Array.of(0, 1), triangle: none, beam: none },
      },
      {
        name: "<all>",
        source: "*ELSET",
        members: {
          node: none,
          shell: Int32Array.of(1, 2),
          triangle: none,
          beam: Int32Array.of(0),
        },
      },
    ],
  };
}

function makeImported(): PageModel {
  return { ...makeSmallModel(), origin: makeOrigin() };
}

function rowsOf(kind: Kind, number: number, model = makeImported()): Map<string, string> {
  const sources = { model, loads: null, results: null, corners: null, shellField: null };
  const [first] = describePick(sources, { kind, number });
  return new Map(first.rows.map(({ name, value }) => [name, value]));
}

test("the card has the deck's number, type and groups", () => {
  const shell = rowsOf("shell", 1);
  assert.equal(shell.get("in deck <1>.bdf"), "CQUAD4 1125899906842624");
  assert.equal(shell.get("groups"), "deck, <all>");
  assert.equal(shell.get("thickness"), "10 (row 0, PSHELL 10)");
  assert.equal(shell.get("material"), "E 210000, ν 0.3 (row 0)"); // without a name
  const beam = rowsOf("beam", 1);
  assert.equal(beam.get("in deck <1>.bdf"), "CBAR 11");
  assert.equal(beam.get("groups"), undefined);
  assert.equal(beam.get("material"), "E 70000, ν 0.33 (row 1, MAT1 7)");
  assert.equal(rowsOf("triangle", 0).get("in deck <1>.bdf"), "element 9"); // of no known type
  const node = rowsOf("node", 3);
  assert.equal(node.get("in deck <1>.bdf"), "node 104");
  assert.equal(node.get("groups"), "deck");
});

// It stands where it is seen without scrolling.
test("the title of the card names it, too", () => {
  const title = (kind: Kind, number: number, model = makeImported()): string =>
    titlePick(model, { kind, number });
  assert.equal(title("shell", 2), "Shell 2 · CQUAD4 3");
  assert.equal(title("triangle", 0), "Triangle 0 · element 9");
  assert.equal(title("beam", 1), "Beam 1 · CBAR 11");
  assert.equal(title("node", 3), "Node 3 · node 104 of the deck");
  assert.equal(title("shell", 99), "Shell 99"); // there is none
  assert.equal(title("beam", 1, makeSmallModel()), "Beam 1");
});

test("the nodes of an element have their numbers in the deck, too", () => {
  assert.equal(rowsOf("shell", 0).get("nodes"), "0, 1, 4, 3 (in the deck 101, 102, 105, 104)");
  assert.equal(rowsOf("shell", 0, makeSmallModel()).get("nodes"), "0, 1, 4, 3");
  const [first, second] = makeSmallModel().beams.nodes;
  const plain = `${first}, ${second}`;
  assert.equal(rowsOf("beam", 0, makeSmallModel()).get("nodes"), plain);
  const inDeck = `(in the deck ${101 + first}, ${101 + second})`;
  assert.equal(rowsOf("beam", 0).get("nodes"), `${plain} ${inDeck}`);
});

test("the card of another model has nothing of it", () => {
  const names = [...rowsOf("shell", 1, makeSmallModel()).keys()];
  assert.deepEqual(names, ["in the file", "nodes", "thickness", "material", "part"]);
});

test("a section that is moved off its line says how far", () => {
  const model = makeSmallModel();
  assert.doesNotMatch(rowsOf("beam", 0, model).get("section") ?? "", /offset/);
  model.sections[0].offset = -2.5;
  assert.match(rowsOf("beam", 0, model).get("section") ?? "", /Hw 4, Tw 2, offset -2\.5$/);
});

test("a section has the name of the deck, too", () => {
  const model = makeImported();
  model.sections[0].origin = "PBARL 100";
  assert.match(rowsOf("beam", 0, model).get("section") ?? "", /FB <4 x 2>, PBARL 100, Hw 4, Tw 2$/);
});

// Shell 0 is in group 0, shell 1 in both, shell 2 and beam 0 in group 1; the others are in none.
test("an element is hidden where all its groups are", () => {
  const hide = (...groups: number[]): number[] => {
    const none = { thicknesses: [], materials: [], sections: [], parts: [] };
    const { shells, triangles, beams } = findHidden(makeImported(), { ...none, groups });
    return [...shells, ...triangles, ...beams];
  };
  assert.deepEqual(hide(), [0, 0, 0, 0, 0, 0]);
  assert.deepEqual(hide(0), [1, 0, 0, 0, 0, 0]);
  assert.deepEqual(hide(1), [0, 0, 1, 0, 1, 0]);
  assert.deepEqual(hide(0, 1), [1, 1, 1, 0, 1, 0]);
  assert.deepEqual(hide(-1), [0, 0, 0, 1, 0, 1]); // those of no group
  assert.deepEqual(hide(-1, 1), [0, 0, 1, 1, 1, 1]); // only group 0
});

test("other filters hide what groups show, and groups of other models nothing", () => {
  const none = { thicknesses: [], materials: [], sections: [], parts: [], groups: [1] };
  const hidden = findHidden(makeImported(), { ...none, thicknesses: [0] });
  assert.deepEqual([...hidden.shells, ...hidden.triangles], [1, 1, 1, 1]);
  assert.deepEqual(findHidden(makeSmallModel(), none), hideNothing());
});
