// What is under a pixel, and where.

import type { OrthographicCamera, PerspectiveCamera, WebGLRenderer } from "three";
import type { Kind, PageModel } from "../data/page_model";
import { BeamReach, NodeReach, nodesOfThing, numbersAround, thingOf } from "./pick";
import type { Thing } from "./pick";
import type { Stage } from "./stage";
import { hitBeam } from "./beam_hit";
import { hitDetail } from "./details";
import { toModel } from "./frame";
import { mixPlaces, weightsAt } from "./ray";
import type { Ray, SurfaceHit } from "./ray";
import { takeVector } from "./vector";
import type { Vector } from "./vector";
import { findRay, projectPlace } from "./view";

export interface Hit {
  kind: Kind;
  number: number;
  place: Vector; // global, undeformed
  seen: Vector; // in the frame of the picture, as it is drawn
}

interface Pixel {
  x: number;
  y: number;
  width: number; // of the canvas, CSS pixels
  height: number;
}

type Camera = OrthographicCamera | PerspectiveCamera;

// drawnAt: a node's place as it is drawn.
export function findHit(
  stage: Stage,
  renderer: WebGLRenderer,
  camera: Camera,
  pixel: Pixel,
  drawnAt: (node: number) => Vector,
): Hit | null {
  const detailBeams = stage.details?.models.beams ?? null;
  const things: Near[] = [];
  for (const found of numbersAround(stage.pick, renderer, camera, stage.shared, pixel)) {
    const thing = thingOf(stage.numbers, stage.model, found.number, detailBeams);
    const { right, down } = found;
    if (thing) things.push({ thing, right, down, distance: Math.hypot(right, down) });
  }
  const chosen = choose(things, ({ thing }) =>
    nodeReach(stage.model, camera, pixel, thing, drawnAt),
  );
  if (!chosen) return null;
  const there = { ...pixel, x: pixel.x + chosen.right, y: pixel.y + chosen.down };
  return locate(stage, camera, there, chosen.thing, drawnAt);
}

// What was found, and how far from the pixel, CSS pixels.
interface Near {
  thing: Thing;
  right: number;
  down: number;
  distance: number;
}

// Nodes win over beams, beams over shells. things: nearest first.
function choose(things: Near[], reachOf: (near: Near) => number): Near | null {
  const nearest = (kinds: Kind[], reach: number): Near | null =>
    things.find(({ distance, thing }) => kinds.includes(thing.kind) && distance <= reach) ?? null;
  const element = nearest(["beam"], BeamReach) ?? nearest(["shell", "triangle"], 1);
  return nearest(["node"], element ? reachOf(element) : NodeReach) ?? element;
}

// Where elements are small on the screen, nodes reach less far, so that elements can be picked.
const ShareOfEdge = 0.3;

function nodeReach(
  model: PageModel,
  camera: Camera,
  pixel: Pixel,
  thing: Thing,
  drawnAt: (node: number) => Vector,
): number {
  const seen = nodesOfThing(model, thing).map((node) =>
    projectPlace(camera, drawnAt(node), pixel.width, pixel.height),
  );
  let shortest = Infinity;
  seen.forEach(([x, y], corner) => {
    const [nextX, nextY] = seen[(corner + 1) % seen.length];
    shortest = Math.min(shortest, Math.hypot(nextX - x, nextY - y));
  });
  return Math.min(NodeReach, Math.max(1, ShareOfEdge * shortest));
}

function locate(
  stage: Stage,
  camera: Camera,
  pixel: Pixel,
  thing: Thing,
  drawnAt: (node: number) => Vector,
): Hit {
  const { model, frame } = stage;
  const ray = findRay(camera, pixel.x, pixel.y, pixel.width, pixel.height);
  const surface = thing.kind === "beam" ? hitSurface(stage, thing, ray) : null;
  if (surface) return { ...thing, place: toModel(frame, surface.place), seen: surface.seen };
  const nodes = nodesOfThing(model, thing);
  const drawn = nodes.map(drawnAt);
  const weights = nodes.length === 1 ? [1] : weightsAt(ray, drawn);
  const places = nodes.map((node) => takeVector(model.coordinates, node));
  return { ...thing, place: mixPlaces(places, weights), seen: mixPlaces(drawn, weights) };
}

// On the surface of a beam, or of its detail model; null where it is a line.
function hitSurface(stage: Stage, { number, detail }: Thing, ray: Ray): SurfaceHit | null {
  const { x } = stage.shared.motion.value;
  if (stage.details && detail !== undefined) return hitDetail(stage.details, detail, ray, x);
  const displacements = stage.drawing?.results?.displacements ?? null;
  return hitBeam(stage.beams, number, displacements, x, ray);
}
