// From where an element is seen: the present direction if nothing hides it there, else the first of
// some others from where it is seen well enough.

import type { OrthographicCamera, PerspectiveCamera, WebGLRenderer } from "three";
import type { Kind } from "../data/page_model";
import { moveInSection } from "./beam_line";
import { drawnMotion } from "./beams";
import { nodesOfThing, numbersAround, thingOf } from "./pick";
import type { Stage } from "./stage";
import { add, isFinite3, normalise, times } from "./vector";
import type { Vector } from "./vector";
import { projectPlace, turnTo } from "./view";
import type { View } from "./view";

interface Element {
  kind: Kind;
  number: number;
}

// How the picture is drawn.
export interface Look {
  renderer: WebGLRenderer;
  width: number; // of the canvas, CSS pixels
  height: number;
  cameraOf: (view: View) => OrthographicCamera | PerspectiveCamera;
  drawnAt: (node: number) => Vector;
}

// So many pixels around a sample are enough to see an element there.
const EnoughPixels = 6;

const BeamSizes = 8; // of a beam, its length or its section, that are seen around it

// The height of the field around an element: of beams by their size, else that of the view.
export function heightAround({ beams }: Stage, { kind, number }: Element, view: View): number {
  const line = kind === "beam" ? beams.lines[number] : null;
  if (!line) return view.height;
  return Math.min(1, BeamSizes * Math.max(line.length / beams.size, beams.extents[number]));
}

// view: the one that is flown to. The element comes to its middle.
export function findSeeingView(stage: Stage, look: Look, element: Element, view: View): View {
  const [middle, ...others] = listSamples(stage, look, element);
  if (!isFinite3(middle)) return view;
  const centred = { ...view, target: middle };
  const scoreOf = (one: View, samples: Vector[]): number[] =>
    countPixels(stage, look, element, one, samples);
  const present = scoreOf(centred, [middle, ...others]);
  const seen = present.filter((count) => count >= EnoughPixels);
  if (2 * seen.length > present.length) return centred;
  let [best, most] = [centred, present[0]];
  for (const direction of listDirections(view.direction)) {
    const other = turnTo(centred, direction);
    const [score] = scoreOf(other, [middle]);
    if (score > most) [best, most] = [other, score];
    if (score >= EnoughPixels) break; // earlier ones are nearer to the present
  }
  return best;
}

// The other side first, then the quarters around, above and below.
function listDirections([x, y, z]: Vector): Vector[] {
  const level = Math.hypot(x, y) > 1e-6 ? [x, y] : [0.7, -0.7];
  const steep = 0.6 * Math.hypot(level[0], level[1]); // of quarters: some 30 degrees
  const quarters = [0, 1, 2, 3].map((turns): [number, number] => {
    const [a, b] = level;
    return [[a, b], [-b, a], [-a, -b], [b, -a]][turns] as [number, number];
  });
  const side = z < 0 ? -1 : 1;
  return [
    [x, y, -z] as Vector,
    ...quarters.map(([a, b]): Vector => [a, b, side * steep]),
    ...quarters.map(([a, b]): Vector => [a, b, -side * steep]),
  ].map(normalise);
}

const Stations = [0.5, 0.2, 0.8]; // along a beam, the middle first

// Places on the element, as it is drawn, its middle first.
function listSamples(stage: Stage, look: Look, { kind, number }: Element): Vector[] {
  const line = kind === "beam" ? stage.beams.lines[number] : null;
  if (!line) {
    const nodes = nodesOfThing(stage.model, { kind, number });
    const start: Vector = [0, 0, 0];
    return [nodes.reduce((sum, node) => add(sum, look.drawnAt(node), 1 / nodes.length), start)];
  }
  const displacements = stage.drawing?.results?.displacements ?? null;
  const [first, second] = drawnMotion(stage.beams, number, displacements);
  const section = stage.model.sections[stage.model.beams.section[number]];
  const [y, z] = section && isFinite3(line.y) ? section.centroid : [0, 0];
  const { size } = stage.frame;
  return Stations.map((s) => {
    const onLine = add(times(line.start, 1 - s), line.end, s);
    if (!isFinite3(line.y)) return onLine;
    const place = add(add(onLine, line.y, y / size), line.z, z / size);
    const move = moveInSection(line, first, second, s, y, z);
    return add(place, move, stage.shared.motion.value.x);
  });
}

// How many of the pixels around each sample show the element.
function countPixels(
  stage: Stage,
  look: Look,
  element: Element,
  view: View,
  samples: Vector[],
): number[] {
  const camera = look.cameraOf(view);
  const { width, height, renderer } = look;
  const details = stage.details?.models.beams ?? null;
  return samples.map((place) => {
    const [x, y] = projectPlace(camera, place, width, height);
    const pixel = { x, y, width, height };
    const found = numbersAround(stage.pick, renderer, camera, stage.shared, pixel);
    return found.filter(({ number }) => {
      const thing = thingOf(stage.numbers, stage.model, number, details);
      return thing?.kind === element.kind && thing.number === element.number;
    }).length;
  });
}
