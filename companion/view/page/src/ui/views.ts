// Standard views. Global axes, z up.

import type { ViewName } from "./actions";
import type { Camera } from "../state";

type Vector = [number, number, number];

// From the target to the eye. Seen from above and below, y points up on the screen.
const Directions: Record<ViewName, Vector> = {
  iso: [1, -1, 0.8],
  top: [0, 0, 1],
  bottom: [0, 0, -1],
  front: [0, -1, 0],
  back: [0, 1, 0],
  left: [-1, 0, 0],
  right: [1, 0, 0],
};

export function viewOf(name: ViewName): Pick<Camera, "direction" | "up"> {
  const isVertical = name === "top" || name === "bottom";
  return {
    direction: normalize(Directions[name]),
    up: isVertical ? [0, 1, 0] : [0, 0, 1],
  };
}

// Nearer with a factor below 1.
export function nearCamera(camera: Camera, factor: number): Camera {
  return { ...camera, height: camera.height * factor };
}

function normalize(a: Vector): Vector {
  const length = Math.hypot(...a);
  return length > 0 ? [a[0] / length, a[1] / length, a[2] / length] : [0, 0, 1];
}
