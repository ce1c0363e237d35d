// A quantity that can colour shells or beams.

export interface Quantity {
  id: string; // short, stands in the address: "mises", "sx", "n1"
  label: string; // "von Mises stress"
  group: string; // heading in the list: "Stress", "Displacement", "Model"
  symbol: string; // "σv", for legends and cards; may be empty
  unit: string; // placeholder by kind: "force/length²", "length", ""
  isSigned: boolean; // a diverging colour map suits it
  isCategory: boolean; // values are rows, each with a colour of its own
  hasFaces: boolean; // differs between the faces of a shell
  hasAverages: boolean; // of a shell: averaged over neighbours, or of elements by themselves
  needs: "model" | "results" | "corners" | "details"; // what must be there
}

// The values of a shell quantity at the corners: four-node shells, then triangles.
// visible face: `upper` is seen from the front, `lower` from the back; else both are one array.
export interface ShellField {
  quantity: Quantity;
  upper: Float32Array; // [4 shells + 3 triangles]; NaN: no number
  lower: Float32Array;
  // By corner, where both arrays are one: the face that the value is of; faceNames. null: of none.
  faces: Uint8Array | null;
  digits: number; // of the values that are sure: six of result files, five of what is computed
}

// What the numbers in ShellField.faces stand for.
export const faceNames = ["upper", "lower", "middle"] as const;

// The values of a beam quantity: at s = x / length and y, z from the centroid they are
//   a(s) + b(s) z + c(s) y, each a cubic c0 + c1 s + c2 s^2 + c3 s^3,
// or the size of that.
export interface BeamField {
  quantity: Quantity;
  isSize: boolean; // the value is without its sign
  isAtMiddle: boolean; // the value is that of mid-length, and told nowhere else
  a: Float32Array; // [beams x 4]
  b: Float32Array; // [beams x 4]
  c: Float32Array; // [beams x 4]
  digits: number; // as above
}

// Where a field is lowest and highest among what is shown; null where nothing has a number.
export interface FieldRange {
  lowest: PlacedValue;
  highest: PlacedValue;
  notNumbers: number; // corners, or beams, without a number
}

export interface PlacedValue {
  value: number;
  kind: "shell" | "triangle" | "beam";
  number: number; // of the element
  corner: number; // -1: of a beam
  node: number; // of the corner; of a beam the nearer end
  face: "upper" | "lower" | "middle";
  place: [number, number, number]; // global, undeformed
}
