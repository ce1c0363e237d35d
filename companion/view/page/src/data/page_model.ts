// What the page knows of a model: the records that data/load_model.ts fills from the page's data.
//
// Numbers of nodes, elements, rows and lines are those of the model file: nodes and elements from
// 0, lines from 1. Lengths, forces and stresses are in the units of the model, which no file tells.
// Arrays are element-major: element e of a table with n nodes has entries n e .. n e + n - 1.
// A row of -1 means: none, or one that does not exist.

export type Kind = "node" | "shell" | "triangle" | "beam"; // shell: four nodes, triangle: three

export interface Material {
  E: number;
  nu: number;
  density: number;
}

// The cross-section of a group of beams, as it is drawn: y and z of the beam's local axes, from the
// line between its nodes, with mirroring and offset applied.
export interface Section {
  type: "T" | "L" | "flat bar" | "tube";
  index: number; // row of its table in the model file
  mirrored: boolean;
  offset: number; // BeamSecOz
  name: string; // as the model file has it; any text
  origin?: string; // its name in the deck; any text
  sizes: string; // "Hw 120, Tw 8, Bf 80, Tf 10"
  rings: number[][]; // closed rings y0, z0, y1, z1, ... the first one outside, then holes
  centroid: [number, number]; // y, z
  area: number;
  Iy: number;
  Iz: number;
}

export interface Finding {
  code: string; // "K104"
  severity: "error" | "warning" | "hint";
  line: number; // 0: none
  message: string;
  remedy: string;
  origin?: string; // what it is about in the deck: a sentence; any text
  place: [number, number, number] | null; // global
  nodes: number[];
  elements: { kind: Kind; number: number }[];
}

// A load case. Without results only its loads are there; corners and details may be left out.
export interface CaseInfo {
  name: string; // empty: the only one
  isSolved: boolean;
  note: string; // why there are no results, or that they are to be read with care; may be empty
  blocks: { loads: string; results?: string; corners?: string; details?: string }; // ids
}

// A named part of the deck: a property with its elements, a set, a physical group.
export interface OriginGroup {
  name: string; // any text
  source: string; // how the deck calls it; any text
  members: Record<Kind, Int32Array>; // rows, ascending
}

// What nodes and elements are called in the deck that the model was imported from.
export interface Origin {
  source: string; // the deck's file name; any text
  format: string; // "Nastran bulk data"
  numbers: Record<Kind, Float64Array>; // by row
  types: string[]; // "CQUAD4"
  typeRows: Record<Exclude<Kind, "node">, Int32Array>; // rows of types; -1: not known
  thicknesses: string[]; // names by row; may be empty
  materials: string[];
  groups: OriginGroup[];
}

export interface PageModel {
  title: string; // the model's folder
  program: string; // "kvx 0.1.0"
  file: string; // name of the model file
  notices: string[]; // what a reader has to know first
  parts: number; // how many; parts of elements are 0 .. parts - 1
  thicknesses: number[]; // by row
  materials: Material[]; // by row
  sections: Section[];
  findings: Finding[];
  cases: CaseInfo[];
  firstLines: Record<Kind, number>; // line of row 0 of each table; 0: not known
  // Where rows do not follow one another line by line: the line of each row; else null.
  lines: Record<Kind, Int32Array | null>;

  nodeCount: number;
  coordinates: Float64Array; // [nodes x 3], global
  shells: ShellTable; // four-node elements
  triangles: ShellTable;
  beams: BeamTable;
  supportNodes: Int32Array;
  supportFlags: Int32Array; // bit d: dof d (ux, uy, uz, rx, ry, rz) is held
  origin: Origin | null; // null: the model was not imported
}

export interface ShellTable {
  corners: 4 | 3;
  count: number;
  nodes: Int32Array; // [count x corners]
  thickness: Int32Array; // rows
  material: Int32Array; // rows
  part: Int32Array;
}

export interface BeamTable {
  count: number;
  nodes: Int32Array; // [count x 2]
  section: Int32Array; // of PageModel.sections; -1: without a table
  material: Int32Array;
  part: Int32Array;
  z: Float64Array; // [count x 3], local z, global components; NaN where it has no direction
}

// The loads of a case.
export interface CaseLoads {
  forceNodes: Int32Array;
  forces: Float32Array; // [n x 6], Fx .. Mz, global, without those that prescribe displacements
  prescribedNodes: Int32Array;
  prescribedDofs: Int32Array; // 0 .. 5
  prescribedValues: Float32Array;
  shellLoads: Int32Array; // elements
  shellPressures: Float32Array; // [n x 3], along the element's normal
  triangleLoads: Int32Array;
  trianglePressures: Float32Array; // [n x 3]
  beamLoads: Int32Array; // beams
  lineLoads: Float32Array; // [n x 2] at the first and second node, along local z
}

// The results of a case. All numbers have the six digits of the result files: toPrecision(6) gives
// these digits back.
export interface CaseResults {
  displacements: Float32Array; // [nodes x 6], ux .. rz, global
  reactionNodes: Int32Array;
  reactions: Float32Array; // [n x 6], global, as they act on the structure
  shells: AveragedStresses;
  forces: Float32Array; // [beams x 6 x 4]: N, Vy, Vz, T, My, Mz as c0 + c1 s + c2 s^2 + c3 s^3
  // [beams], largest von Mises stress of the detail model at mid-length; null without detail models
  detailStresses: Float32Array | null;
}

// Averaged corner stresses. Corners that have the same values share a row.
export interface AveragedStresses {
  rows: Int32Array; // by corner: [4 shells + 3 triangles]; of a detail model [4 shells]
  upper: Float32Array; // [rows x 6]: SX, SY, SZ, TXY, TXZ, TYZ, global
  lower: Float32Array;
  upperMises: Float32Array; // [rows]
  lowerMises: Float32Array;
}

// The stresses of elements by themselves, in the element's plane and frame (data/frames.ts). As in
// the result files a triangle has those of its first corner at all three.
export interface CornerStresses {
  upper: Float32Array; // [(4 shells + 3 triangles) x 3]: sx, sy, txy
  lower: Float32Array;
  shear: Float32Array; // [shells x 2]: qx, qy at the centre, force/length
}

// The detail models of all beams: flat shells with four nodes.
export interface DetailModels {
  coordinates: Float64Array; // [nodes x 3], global, undeformed
  displacements: Float32Array; // [nodes x 3]
  shells: Int32Array; // [count x 4]
  beams: Int32Array; // [count], the beam of each shell
  stresses: AveragedStresses;
}
