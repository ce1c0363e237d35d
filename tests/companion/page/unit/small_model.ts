// A small model for tests: a plate of two four-node shells and a triangle in the plane z = 0, a
// wall that stands on its far edge, and two beams below.
//
//   6---7          y
//   | 2 |          ^      z: towards the reader; the wall (shell 2) stands on 3-4
//   3---4---5      |
//   | 0 | 1 | \    +--> x
//   0---1---2--8          each shell is 2 wide and 1 high; beams 0: 0-1, 1: 1-2, z upwards

import type {
  CaseLoads,
  CaseResults,
  CornerStresses,
  DetailModels,
  PageModel,
} from "../../../../companion/view/page/src/data/page_model";
import type { FieldSources } from "../../../../companion/view/page/src/fields/shell_field";
import type { Hidden } from "../../../../companion/view/page/src/fields/filters";

export function makeSmallModel(): PageModel {
  return {
    title: "small",
    program: "kvx 0",
    file: "fem_solving.txt",
    notices: [],
    parts: 2,
    thicknesses: [10, 6],
    materials: [
      { E: 210000, nu: 0.3, density: 7.85e-9 },
      { E: 70000, nu: 0.33, density: 2.7e-9 },
    ],
    // A flat bar, 2 wide and 4 high, that stands on the line between the nodes.
    sections: [
      {
        type: "flat bar",
        index: 0,
        mirrored: false,
        offset: 0,
        name: "FB <4 x 2>",
        sizes: "Hw 4, Tw 2",
        rings: [[-1, 0, 1, 0, 1, 4, -1, 4]],
        centroid: [0, 2],
        area: 10,
        Iy: 20,
        Iz: 5,
      },
    ],
    findings: [
      {
        code: "K104",
        severity: "warning",
        line: 12,
        message: "The thickness is <odd>.",
        remedy: "Correct it.",
        place: null,
        nodes: [1],
        elements: [{ kind: "shell", number: 1 }, { kind: "beam", number: 1 }],
      },
      {
        code: "K101",
        severity: "hint",
        line: 0,
        message: "A hint.",
        remedy: "",
        place: [0, 0, 0],
        nodes: [],
        elements: [{ kind: "shell", number: 1 }, { kind: "triangle", number: 0 }],
      },
    ],
    cases: [
      {
        name: "",
        isSolved: true,
        note: "",
        blocks: { loads: "loads-0", results: "results-0", corners: "corners-0" },
      },
    ],
    firstLines: { node: 10, shell: 30, triangle: 40, beam: 0 },
    lines: { node: null, shell: null, triangle: Int32Array.of(77), beam: null },
    nodeCount: 9,
    coordinates: Float64Array.from([
      0, 0, 0, 2, 0, 0, 4, 0, 0, 0, 1, 0, 2, 1, 0, 4, 1, 0, 0, 1, 1, 2, 1, 1, 6, 0, 0,
    ]),
    shells: {
      corners: 4,
      count: 3,
      nodes: Int32Array.of(0, 1, 4, 3, 1, 2, 5, 4, 3, 4, 7, 6),
      thickness: Int32Array.of(0, 0, 1),
      material: Int32Array.of(0, 0, 1),
      part: Int32Array.of(0, 0, 0),
    },
    triangles: {
      corners: 3,
      count: 1,
      nodes: Int32Array.of(2, 8, 5),
      thickness: Int32Array.of(0),
      material: Int32Array.of(0),
      part: Int32Array.of(1),
    },
    beams: {
      count: 2,
      nodes: Int32Array.of(0, 1, 1, 2),
      section: Int32Array.of(0, -1),
      material: Int32Array.of(0, 1),
      part: Int32Array.of(0, 1),
      z: Float64Array.of(0, 0, 1, NaN, NaN, NaN),
    },
    supportNodes: Int32Array.of(0, 3),
    supportFlags: Int32Array.of(63, 5),
    origin: null,
  };
}

// Rows of averages by corner: neighbours in the plate share them.
const averageRows = [0, 1, 2, 3, 1, 5, 6, 2, 8, 9, 10, 11, 5, 12, 6];

// Node i moves by (i, 2 i, 2 i), so by 3 i, and turns by i / 1000 about x. In row r of averages the
// upper face has SX = 10 r, the lower one SX = -20 r. The von Mises stresses are not those of these
// tensors: half a unit more, to tell what is read from what is computed.
export function makeSmallResults(): CaseResults {
  const rows = Array.from({ length: 13 }, (_, row) => row);
  return {
    displacements: Float32Array.from(
      rows.slice(0, 9).flatMap((i) => [i, 2 * i, 2 * i, i / 1000, 0, 0]),
    ),
    reactionNodes: Int32Array.of(0, 3),
    reactions: Float32Array.of(1.5, 0, -2.5, 0, 4, 0, 0, 0, 7, 0, 0, 0),
    shells: {
      rows: Int32Array.from(averageRows),
      upper: Float32Array.from(rows.flatMap((row) => [10 * row, 0, 0, 0, 0, 0])),
      lower: Float32Array.from(rows.flatMap((row) => [-20 * row, 0, 0, 0, 0, 0])),
      upperMises: Float32Array.from(rows, (row) => 10 * row + 0.5),
      lowerMises: Float32Array.from(rows, (row) => 20 * row + 0.5),
    },
    // Beam 0: N = 100, Vy = s^2 - s, My = 40 s, Mz = 10; beam 1: N = -50.
    forces: Float32Array.from([
      100, 0, 0, 0, 0, -1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 40, 0, 0, 10, 0, 0, 0,
      -50, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    ]),
    detailStresses: Float32Array.of(15.25, NaN),
  };
}

// At corner c: upper face (c, 2 c, 0), lower face (-c, c, 3); shear (e, -e) in shell e.
export function makeSmallCorners(): CornerStresses {
  const corners = Array.from({ length: 15 }, (_, corner) => corner);
  return {
    upper: Float32Array.from(corners.flatMap((c) => [c, 2 * c, 0])),
    lower: Float32Array.from(corners.flatMap((c) => [-c, c, 3])),
    shear: Float32Array.of(0, 0, 1, -1, 2, -2),
  };
}

export function makeSmallLoads(): CaseLoads {
  return {
    forceNodes: Int32Array.of(4),
    forces: Float32Array.of(0, 0, -1000, 0, 0, 0),
    prescribedNodes: Int32Array.of(3),
    prescribedDofs: Int32Array.of(2),
    prescribedValues: Float32Array.of(0.25),
    shellLoads: Int32Array.of(0, 0),
    shellPressures: Float32Array.of(0.5, 0.5, 0.5, 1, 2, 3),
    triangleLoads: Int32Array.of(),
    trianglePressures: Float32Array.of(),
    beamLoads: Int32Array.of(1),
    lineLoads: Float32Array.of(-3, -4),
  };
}

// A detail model of beam 0 and one of beam 1, one shell each.
export function makeSmallDetails(): DetailModels {
  return {
    coordinates: Float64Array.from([
      0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 3.5, 0, 0, 4, 0, 0, 4, 1, 0, 3.5, 1, 0,
    ]),
    displacements: new Float32Array(24),
    shells: Int32Array.of(0, 1, 2, 3, 4, 5, 6, 7),
    beams: Int32Array.of(0, 1),
    stresses: {
      rows: Int32Array.of(0, 1, 2, 3, 4, 5, 6, 7),
      upper: new Float32Array(48),
      lower: new Float32Array(48),
      upperMises: Float32Array.of(1, 2, 3, 4, 50, 60, 70, NaN),
      lowerMises: Float32Array.of(8, 7, 6, 5, 4, 3, 2, 1),
    },
  };
}

export function makeSmallSources(): FieldSources {
  return {
    model: makeSmallModel(),
    results: makeSmallResults(),
    corners: makeSmallCorners(),
    details: makeSmallDetails(),
  };
}

export function hideNothing(): Hidden {
  return { shells: new Uint8Array(3), triangles: new Uint8Array(1), beams: new Uint8Array(2) };
}
