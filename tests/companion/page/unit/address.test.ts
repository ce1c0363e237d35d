// The address: what differs from the default, there and back; what does not belong is ignored.
import assert from "node:assert/strict";
import { test } from "node:test";

import { defaultState } from "../../../../companion/view/page/src/state";
import type { ViewState } from "../../../../companion/view/page/src/state";
import { readAddress, writeAddress } from "../../../../companion/view/page/src/ui/address";
import type { AddressLimits } from "../../../../companion/view/page/src/ui/address";

const defaults = defaultState("mises", "detailMiddle");

const limits: AddressLimits = {
  cases: 3,
  hasEnvelopes: true,
  hasOwnValues: true,
  shellQuantities: ["mises", "SX", "u"],
  beamQuantities: ["detailMiddle", "beamN"],
  maps: ["cividis", "viridis"],
  hidden: { thicknesses: 4, materials: 1, sections: 2, parts: 2, groups: 3 },
  counts: { node: 100, shell: 50, triangle: 0, beam: 7 },
};

function roundTrip(state: ViewState): ViewState {
  return readAddress(writeAddress(state, defaults), defaults, limits);
}

// Every member differs from the default; numbers have few enough digits to come back whole.
const changed: ViewState = {
  case: 2,
  shellQuantity: "SX",
  beamQuantity: "plain",
  face: "lower",
  isAveraged: false,
  scale: 12.5,
  isAnimated: true,
  shows: { ...defaults.shows, edges: !defaults.shows.edges, loads: !defaults.shows.loads },
  hidden: { thicknesses: [0, 3], materials: [-1], sections: [1], parts: [0], groups: [-1, 2] },
  clip: { axis: "y", share: 0.25, isFlipped: true },
  map: "viridis",
  bands: 0,
  range: [-120.5, 3e7],
  camera: { target: [1.5, -2, 3e5], direction: [0, -1, 0], up: [0, 0, 1], height: 1250.5 },
  hasSameLimits: true,
  isOrthographic: true,
  picked: { kind: "beam", number: 6 },
  theme: "dark",
  isPanelOpen: false,
};

test("the default has no address", () => {
  assert.equal(writeAddress(defaults, defaults), "");
  assert.deepEqual(readAddress("", defaults, limits), defaults);
  assert.deepEqual(readAddress("#", defaults, limits), defaults);
});

test("every member goes there and back", () => {
  for (const key of Object.keys(defaults) as (keyof ViewState)[]) {
    assert.notDeepEqual(changed[key], defaults[key], `${key} is to differ`);
    const one = { ...defaults, [key]: changed[key] };
    assert.deepEqual(roundTrip(one), one, key);
  }
  assert.deepEqual(roundTrip(changed), changed);
});

test("addresses read as a person would write them", () => {
  const state: ViewState = {
    ...defaults,
    case: -1,
    face: "lower",
    shows: { ...defaults.shows, edges: false, loads: true },
    clip: { axis: "x", share: 0.5, isFlipped: true },
    picked: { kind: "node", number: 12 },
  };
  const text = "#case=highest&face=lower&show=-edges,loads&clip=-x:0.5&pick=node:12";
  assert.equal(writeAddress(state, defaults), text);
  assert.deepEqual(readAddress(text, defaults, limits), state);
});

test("the lowest envelope, too; none where there are not two solved cases", () => {
  assert.equal(roundTrip({ ...defaults, case: -2 }).case, -2);
  const single = { ...limits, hasEnvelopes: false };
  assert.equal(readAddress("#case=lowest", defaults, single).case, 0);
});

test("values of elements by themselves, where the page has them", () => {
  assert.equal(readAddress("#values=element", defaults, limits).isAveraged, false);
  const without = { ...limits, hasOwnValues: false };
  assert.equal(readAddress("#values=element", defaults, without).isAveraged, true);
});

test("what the model does not have is ignored, and the rest is taken", () => {
  const wrong = [
    "case=3", "case=-7", "shells=sz", "beams=mises", "face=left", "values=some", "scale=-1",
    "scale=abc", "scale=", "scale=1e31", "scale=Infinity", "show=walls,-roof", "hide-part=2,x,-3",
    "clip=w:0.5", "clip=x:1.5", "clip=x:", "clip=x", "map=rainbow", "bands=33", "bands=2.5",
    "range=3:3", "range=5:1", "range=1", "range=1:2:3", "projection=oblique", "camera=1,2,3",
    "camera=0,0,0,0,0,0,0,0,1,10", // no direction
    "camera=0,0,0,0,0,1,0,0,1,10", // looks along up
    "camera=0,0,0,1,0,0,0,0,1,-10", // height below zero
    "pick=node:100", "pick=triangle:0", "pick=wall:1", "pick=node", "theme=blue", "controls=ajar",
    "__proto__=1", "constructor=1", "toString=1", "=3", "nonsense", "%E0%A4%A=1", "face=%E0%A4%A",
  ];
  for (const entry of wrong) {
    assert.deepEqual(readAddress(`#${entry}`, defaults, limits), defaults, entry);
    const face = readAddress(`#${entry}&face=upper`, defaults, limits).face;
    assert.equal(face, "upper", entry);
  }
});

test("reading leaves the default as it is", () => {
  const before = structuredClone(defaults);
  readAddress("#show=-shells&hide-part=1&clip=z:0.1", defaults, limits);
  assert.deepEqual(defaults, before);
});

test("a direction of any length becomes a unit vector", () => {
  const state = readAddress("#camera=0,0,0,0,-3,4,0,0,1,10", defaults, limits);
  assert.deepEqual(state.camera?.direction, [0, -0.6, 0.8]); // 3, 4, 5
});
