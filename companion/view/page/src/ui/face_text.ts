// The words for a choice of face, and for an envelope.

import type { FaceChoice } from "../state";

const Texts: Record<FaceChoice, string> = {
  upper: "upper face",
  lower: "lower face",
  larger: "larger of both faces",
  middle: "middle face",
  visible: "the face that is seen",
};

export function describeFace(face: FaceChoice): string {
  return Texts[face];
}

// row: of the state, -1 or -2.
export function describeEnvelope(row: number): string {
  return row === -1 ? "highest of all cases" : "lowest of all cases";
}
