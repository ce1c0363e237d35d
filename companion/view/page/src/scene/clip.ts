// The clipping plane across a global axis.

import type { ViewState } from "../state";
import type { Frame } from "./frame";

// [a, b, c, d] in the frame of the picture: shown is where a x + b y + c z <= d, for undeformed
// places, so that the cut runs through the same elements at every scale. All zero: no plane.
export function clipPlane(frame: Frame, clip: ViewState["clip"]): [number, number, number, number] {
  if (clip.axis === "none") return [0, 0, 0, 0];
  const axis = ["x", "y", "z"].indexOf(clip.axis);
  const low = (frame.low[axis] - frame.centre[axis]) / frame.size;
  const high = (frame.high[axis] - frame.centre[axis]) / frame.size;
  const sign = clip.isFlipped ? -1 : 1;
  // A share of 0 or 1 keeps what lies in the plane itself.
  const slack = 1e-6;
  const plane: [number, number, number, number] = [0, 0, 0, 0];
  plane[axis] = sign;
  plane[3] = sign * (low + clip.share * (high - low)) + slack;
  return plane;
}
