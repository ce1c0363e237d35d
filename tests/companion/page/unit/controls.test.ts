// What stands behind the controls: the slider of the deformation, quantities that share a legend,
// work that is done again only where needed, places and views.
import assert from "node:assert/strict";
import { test } from "node:test";

import type { PageModel } from "../../../../companion/view/page/src/data/page_model";
import type { PlacedValue } from "../../../../companion/view/page/src/fields/quantity";
import { beamQuantities } from "../../../../companion/view/page/src/fields/quantities";
import { shellQuantities } from "../../../../companion/view/page/src/fields/quantities";
import { defaultState } from "../../../../companion/view/page/src/state";
import type { ViewState } from "../../../../companion/view/page/src/state";
import { scaleOfSlider } from "../../../../companion/view/page/src/ui/deformation_group";
import { sliderOfScale } from "../../../../companion/view/page/src/ui/deformation_group";
import { diagonalOf, findExtent } from "../../../../companion/view/page/src/ui/extent";
import { governingCase } from "../../../../companion/view/page/src/ui/governing";
import type { Envelopes } from "../../../../companion/view/page/src/ui/governing";
import { canShareScale } from "../../../../companion/view/page/src/ui/pair_quantities";
import { pairBeam, pairShell, settleQuantities } from "../../../../companion/view/page/src/ui/pair_quantities";
import { placeOf } from "../../../../companion/view/page/src/ui/place_of";
import { remember } from "../../../../companion/view/page/src/ui/remember";
import type { Shown } from "../../../../companion/view/page/src/ui/shown";
import { viewOf } from "../../../../companion/view/page/src/ui/views";

test("the slider goes from 0 to ten times the automatic scale and back", () => {
  assert.equal(scaleOfSlider(0, 50), 0);
  assert.equal(scaleOfSlider(1000, 50), 500);
  assert.equal(scaleOfSlider(500, 40), 100); // 40 10 (1/2)^2
  for (const step of [0, 17, 316, 500, 1000]) {
    assert.equal(sliderOfScale(scaleOfSlider(step, 0.003), 0.003), step);
  }
  assert.equal(sliderOfScale(1e6, 50), 1000); // a typed scale beyond the slider
  assert.equal(sliderOfScale(5, 0), 0); // nothing moves
});

function shownWith(shell: string, beam: string): Shown {
  return {
    shellQuantities: [...shellQuantities],
    beamQuantities: [...beamQuantities],
    shellQuantity: shellQuantities.find((row) => row.id === shell) ?? null,
    beamQuantity: beamQuantities.find((row) => row.id === beam) ?? null,
  } as unknown as Shown;
}

test("the quantity of beams follows that of shells where both share a legend", () => {
  const chosen = (id: string, shell: string, beam: string) =>
    pairBeam(id, shownWith(shell, beam)).beamQuantity;
  assert.equal(chosen("u", "mises", "detailMiddle"), "u");
  assert.equal(chosen("mises", "u", "u"), "beamSize");
  assert.equal(chosen("membrane", "mises", "detailMiddle"), "detailMiddle"); // fits, so it stays
  assert.equal(chosen("mises", "s1", "beamStress"), "beamSize"); // the other has a sign
  assert.equal(chosen("s1", "mises", "detailMiddle"), "beamStress");
  assert.equal(chosen("SX", "u", "u"), "plain");
  assert.equal(chosen("nx", "mises", "detailMiddle"), "plain");
  assert.equal(chosen("thickness", "mises", "detailMiddle"), "plain");
  assert.equal(chosen("material", "mises", "detailMiddle"), "material");
  assert.equal(chosen("plain", "mises", "beamN"), "beamN");
});

test("the quantity of shells follows that of beams", () => {
  const chosen = (id: string, shell: string, beam: string) =>
    pairShell(id, shownWith(shell, beam)).shellQuantity;
  assert.equal(chosen("beamN", "mises", "detailMiddle"), "plain"); // force is no stress
  assert.equal(chosen("beamStress", "mises", "detailMiddle"), "plain"); // one has no sign
  assert.equal(chosen("beamStress", "SX", "plain"), "SX");
  assert.equal(chosen("detailMiddle", "u", "u"), "mises");
  assert.equal(chosen("beamSize", "u", "u"), "mises");
  assert.equal(chosen("section", "mises", "detailMiddle"), "plain");
  assert.equal(chosen("plain", "mises", "detailMiddle"), "mises");
});

test("whatever is chosen, the two share a legend", () => {
  for (const shell of shellQuantities) {
    const { beamQuantity } = pairBeam(shell.id, shownWith("mises", "detailMiddle"));
    const beam = beamQuantities.find((row) => row.id === beamQuantity);
    assert.ok(beam === undefined || canShareScale(shell, beam), `${shell.id}, ${beamQuantity}`);
  }
});

test("an address that names one quantity settles the other", () => {
  const defaults = defaultState("mises", "detailMiddle");
  const settle = (patch: Partial<ViewState>): string[] => {
    const state = { ...defaults, ...patch };
    const settled = settleQuantities(state, defaults, shellQuantities, beamQuantities);
    return [settled.shellQuantity, settled.beamQuantity];
  };
  assert.deepEqual(settle({}), ["mises", "detailMiddle"]);
  assert.deepEqual(settle({ shellQuantity: "u" }), ["u", "u"]);
  assert.deepEqual(settle({ beamQuantity: "beamN" }), ["plain", "beamN"]);
  assert.deepEqual(settle({ shellQuantity: "SX", beamQuantity: "beamN" }), ["SX", "plain"]);
});

test("remembered work is done again for other arguments alone", () => {
  let calls = 0;
  const sum = remember((a: number, b: number) => {
    calls++;
    return a + b;
  });
  assert.deepEqual([sum(1, 2), sum(1, 2), calls], [3, 3, 1]);
  assert.deepEqual([sum(1, 3), sum(1, 2), calls], [4, 3, 3]);
});

test("the box around nodes leaves out what is no number", () => {
  const extent = findExtent([0, 5, NaN, 2, 1, 2, -1, NaN, 14]);
  assert.deepEqual(extent, { low: [-1, 1, 2], high: [2, 5, 14] });
  assert.equal(diagonalOf(extent), 13); // 3, 4, 12
  assert.deepEqual(findExtent([]), { low: [0, 0, 0], high: [0, 0, 0] });
});

test("places: of a node, and the middle of elements", () => {
  const model = {
    coordinates: Float64Array.from([0, 0, 0, 4, 0, 0, 4, 2, 0, 0, 2, 8, NaN, 0, 0]),
    shells: { corners: 4, nodes: Int32Array.from([0, 1, 2, 3]) },
    triangles: { corners: 3, nodes: Int32Array.from([0, 1, 4]) },
    beams: { nodes: Int32Array.from([1, 0, 0, 3]) },
  } as unknown as PageModel;
  assert.deepEqual(placeOf(model, "node", 1), [4, 0, 0]);
  assert.deepEqual(placeOf(model, "shell", 0), [2, 1, 2]);
  assert.deepEqual(placeOf(model, "beam", 1), [0, 1, 4]);
  assert.equal(placeOf(model, "triangle", 0), null);
  assert.equal(placeOf(model, "node", 9), null);
});

test("views look along the axes, z up; from above y is up", () => {
  assert.deepEqual(viewOf("front"), { direction: [0, -1, 0], up: [0, 0, 1] });
  assert.deepEqual(viewOf("right"), { direction: [1, 0, 0], up: [0, 0, 1] });
  assert.deepEqual(viewOf("top"), { direction: [0, 0, 1], up: [0, 1, 0] });
  const iso = viewOf("iso").direction;
  assert.ok(Math.abs(Math.hypot(...iso) - 1) < 1e-15 * 4); // three squares, rounded
});

test("the governing case of an envelope, by corner and face", () => {
  const model = {
    cases: [{ name: "open", isSolved: false }, { name: "a", isSolved: true },
      { name: "b", isSolved: true }],
    shells: { count: 1 },
  } as unknown as PageModel;
  // Corners of one shell with four nodes, then of one triangle; rows of the solved cases.
  const shell = {
    upperCases: Int32Array.from([0, 1, 0, 0, 0, 0, 1]),
    lowerCases: Int32Array.from([1, 0, 0, 0, -1, 0, 0]),
  };
  const envelopes = { shell, beam: { cases: Int32Array.from([1]) } } as unknown as Envelopes;
  const at = (kind: string, number: number, corner: number, face: string): string =>
    governingCase(model, envelopes, { kind, number, corner, face } as unknown as PlacedValue);
  assert.equal(at("shell", 0, 1, "upper"), "b");
  assert.equal(at("shell", 0, 0, "lower"), "b");
  assert.equal(at("triangle", 0, 2, "upper"), "b");
  assert.equal(at("triangle", 0, 0, "lower"), ""); // nothing governs
  assert.equal(at("beam", 0, -1, "middle"), "b");
  const none = { shell: null, beam: null };
  assert.equal(governingCase(model, none, { kind: "shell", number: 0 } as PlacedValue), "");
});
