// The frame of the picture: model coordinates less their centre, divided by the model's size. So
// Float32 on the graphics card is exact enough for models of any size, far from the origin as well.

import type { PageModel } from "../data/page_model";

export type Place = [number, number, number];

export interface Frame {
  centre: Place; // of the box around all nodes, model units
  size: number; // diagonal of that box; 1 where all nodes are at one place
  low: Place; // corners of the box
  high: Place;
}

// Nodes whose coordinates are no numbers are left out.
export function findFrame(coordinates: Float64Array): Frame {
  const low: Place = [Infinity, Infinity, Infinity];
  const high: Place = [-Infinity, -Infinity, -Infinity];
  for (let at = 0; at + 2 < coordinates.length; at += 3) {
    const sum = coordinates[at] + coordinates[at + 1] + coordinates[at + 2];
    if (!Number.isFinite(sum)) continue;
    for (let axis = 0; axis < 3; ++axis) {
      low[axis] = Math.min(low[axis], coordinates[at + axis]);
      high[axis] = Math.max(high[axis], coordinates[at + axis]);
    }
  }
  if (low[0] > high[0]) return { centre: [0, 0, 0], size: 1, low: [0, 0, 0], high: [0, 0, 0] };
  const centre: Place = [0, 1, 2].map((axis) => low[axis] + (high[axis] - low[axis]) / 2) as Place;
  const size = Math.hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
  return { centre, size: size > 0 ? size : 1, low, high };
}

export function toPicture(frame: Frame, place: Place): Place {
  const { centre, size } = frame;
  return [
    (place[0] - centre[0]) / size,
    (place[1] - centre[1]) / size,
    (place[2] - centre[2]) / size,
  ];
}

export function toModel(frame: Frame, place: Place): Place {
  const { centre, size } = frame;
  return [
    place[0] * size + centre[0],
    place[1] * size + centre[1],
    place[2] * size + centre[2],
  ];
}

// The nodes in the frame of the picture, [nodes x 3]; NaN where a coordinate is no number.
export function placeNodes(frame: Frame, model: PageModel): Float32Array {
  const places = new Float32Array(3 * model.nodeCount);
  const { centre, size } = frame;
  for (let at = 0; at < places.length; at += 3) {
    places[at] = (model.coordinates[at] - centre[0]) / size;
    places[at + 1] = (model.coordinates[at + 1] - centre[1]) / size;
    places[at + 2] = (model.coordinates[at + 2] - centre[2]) / size;
  }
  return places;
}
