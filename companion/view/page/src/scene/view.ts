// Where the eye stands, in the frame of the picture, and how it turns, moves and nears. The place
// of a pixel and the pixel of a place.

import * as three from "three";
import type { Camera } from "../state";
import { toModel, toPicture } from "./frame";
import type { Frame } from "./frame";
import { add, cross, dot, isFinite3, normalise, subtract, times, turn } from "./vector";
import type { Vector } from "./vector";

export interface View {
  target: Vector;
  direction: Vector; // from the target to the eye, unit length
  up: Vector; // unit length, across the direction
  height: number; // of the visible field at the target
}

// Half the angle of the field of view in perspective: 15 degrees up and down, so that lengths near
// and far are still compared by eye.
const HalfAngle = Math.PI / 12;

// Fields smaller or larger than that (parts of the model's diagonal) show nothing.
const LeastHeight = 1e-5;
const LargestHeight = 20;

// From the front, right and above, as the page's standard view.
const standardDirection: Vector = normalise([1, -1, 0.8]);

export function createView(): View {
  const direction = standardDirection;
  return { target: [0, 0, 0], direction, up: upOf(direction), height: 1 };
}

// z up; seen from above or below, y.
function upOf(direction: Vector): Vector {
  const guess: Vector = Math.abs(direction[2]) > 0.9999 ? [0, 1, 0] : [0, 0, 1];
  return normalise(add(guess, direction, -dot(guess, direction)));
}

// The same target from another direction.
export function turnTo(view: View, direction: Vector): View {
  return { ...view, direction, up: upOf(direction) };
}

export function toCamera(frame: Frame, view: View): Camera {
  return {
    target: toModel(frame, view.target),
    direction: [...view.direction],
    up: [...view.up],
    height: view.height * frame.size,
  };
}

// What has no direction or height is taken from `present`.
export function toView(frame: Frame, camera: Camera, present: View): View {
  const target = toPicture(frame, camera.target);
  const direction = normalise(camera.direction);
  const isUsable = isFinite3(target) && isFinite3(direction) && camera.height > 0;
  if (!isUsable || !Number.isFinite(camera.height)) return present;
  const up = normalise(add(camera.up, direction, -dot(camera.up, direction)));
  const height = boundHeight(camera.height / frame.size);
  return { target, direction, up: isFinite3(up) ? up : upOf(direction), height };
}

function boundHeight(height: number): number {
  return Math.min(LargestHeight, Math.max(LeastHeight, height));
}

// A turntable: about the vertical line through the pivot, then about the horizontal line across the
// view. The eye stops above and below the pivot. Angles in radians.
export function turnView(view: View, pivot: Vector, around: number, over: number): View {
  const vertical: Vector = [0, 0, 1];
  const right = cross(view.up, view.direction);
  const height = Math.asin(Math.max(-1, Math.min(1, view.direction[2])));
  // Upside down (up points below), the angle runs the other way.
  const sign = view.up[2] < -1e-6 ? -1 : 1;
  const bounded = Math.max(-Math.PI / 2, Math.min(Math.PI / 2, height + sign * over));
  const angle = sign * (bounded - height);
  const both = (a: Vector): Vector => turn(turn(a, right, -angle), vertical, around);
  const direction = normalise(both(view.direction));
  const up = both(view.up);
  return {
    target: add(pivot, both(subtract(view.target, pivot))),
    direction,
    up: normalise(add(up, direction, -dot(up, direction))),
    height: view.height,
  };
}

// x, y: CSS pixels, to the right and down; screen: height of the canvas.
export function panView(view: View, x: number, y: number, screen: number): View {
  const right = cross(view.up, view.direction);
  const perPixel = view.height / screen;
  const target = add(add(view.target, right, -x * perPixel), view.up, y * perPixel);
  return { ...view, target };
}

// Nearer by `factor` < 1, so that `place` stays where it is on the screen.
export function zoomView(view: View, place: Vector, factor: number): View {
  const height = boundHeight(view.height * factor);
  const part = height / view.height;
  return { ...view, height, target: add(place, subtract(view.target, place), part) };
}

// Between two views; share 0 .. 1. Heights in equal ratios, so that a flight seems even.
export function mixViews(from: View, to: View, share: number): View {
  const mix = (a: Vector, b: Vector): Vector => add(times(a, 1 - share), b, share);
  const [direction, up] = mixAxes(from, to, share);
  return {
    target: mix(from.target, to.target),
    direction,
    up,
    height: from.height * (to.height / from.height) ** share,
  };
}

// The turn from one pair of axes to the other, in part.
function mixAxes(from: View, to: View, share: number): [Vector, Vector] {
  const quaternionOf = (view: View): three.Quaternion => {
    const right = cross(view.up, view.direction);
    const axes = new three.Matrix4().makeBasis(
      new three.Vector3(...right),
      new three.Vector3(...view.up),
      new three.Vector3(...view.direction),
    );
    return new three.Quaternion().setFromRotationMatrix(axes);
  };
  const turned = quaternionOf(from).slerp(quaternionOf(to), share);
  const axis = (x: number, y: number, z: number): Vector =>
    new three.Vector3(x, y, z).applyQuaternion(turned).toArray() as Vector;
  return [axis(0, 0, 1), axis(0, 1, 0)];
}

// A ball that everything drawn is in.
export interface Ball {
  centre: Vector;
  radius: number;
}

// The camera of three for the view. aspect: width / height.
export function aimCamera(
  view: View,
  isOrthographic: boolean,
  aspect: number,
  ball: Ball,
): three.OrthographicCamera | three.PerspectiveCamera {
  const half = view.height / 2;
  const ahead = dot(subtract(view.target, ball.centre), view.direction);
  const radius = Math.max(ball.radius, 1e-6) * 1.05;
  if (isOrthographic) {
    // The eye stands outside the ball; only differences of depth count.
    const distance = Math.max(0, radius - ahead) + radius;
    const depth = distance + ahead + radius;
    const side = half * aspect;
    const camera = new three.OrthographicCamera(-side, side, half, -half, 0, depth);
    return placeCamera(camera, view, distance);
  }
  const distance = half / Math.tan(HalfAngle);
  const far = Math.max(distance + ahead + radius, distance * 0.01);
  const near = Math.max(distance + ahead - radius, distance * 0.01, far * 1e-5);
  const degrees = (2 * HalfAngle * 180) / Math.PI;
  const camera = new three.PerspectiveCamera(degrees, aspect, near, Math.max(far, near * 1.01));
  return placeCamera(camera, view, distance);
}

export function placeCamera<C extends three.Camera>(camera: C, view: View, distance: number): C {
  camera.position.set(...add(view.target, view.direction, distance));
  camera.up.set(...view.up);
  camera.lookAt(...view.target);
  camera.updateMatrixWorld();
  return camera;
}

// CSS pixels from the upper left corner of a canvas; behind the eye as well.
export function projectPlace(
  camera: three.Camera,
  place: Vector,
  width: number,
  height: number,
): [number, number] {
  const seen = new three.Vector3(...place).project(camera);
  return [((seen.x + 1) / 2) * width, ((1 - seen.y) / 2) * height];
}

// The ray of a pixel: a place on it and its unit direction away from the eye.
export function findRay(
  camera: three.Camera,
  x: number,
  y: number,
  width: number,
  height: number,
): { from: Vector; along: Vector } {
  const at = (depth: number): Vector =>
    new three.Vector3((2 * x) / width - 1, 1 - (2 * y) / height, depth)
      .unproject(camera)
      .toArray() as Vector;
  const from = at(-1);
  return { from, along: normalise(subtract(at(1), from)) };
}

// Where the ray meets the plane across the view through the target.
export function findInPlane(view: View, ray: { from: Vector; along: Vector }): Vector {
  const depth = dot(subtract(view.target, ray.from), view.direction);
  const speed = dot(ray.along, view.direction);
  return add(ray.from, ray.along, speed === 0 ? 0 : depth / speed);
}

// The part of the canvas that is to be filled, about its middle.
export interface FreePart {
  aspect: number; // width / height of the part
  share: number; // its height / height of the canvas
}

// The view of places from where the eye is: they fill the free part but for a margin. Places are
// taken as a function, so that a million of them need no array of arrays.
//
// In perspective the field narrows towards the eye: a place at x, y from the target and z nearer
// than it is seen where |y| <= h / 2 - z t, |x| / aspect <= h / 2 - z t, with the height h of the
// part and its slope t. Both are linear, so the largest x / aspect + z t, -x / aspect + z t,
// y + z t, -y + z t tell height and middle.
export function fitView(
  view: View,
  eachPlace: (call: (place: Vector) => void) => void,
  isOrthographic: boolean,
  { aspect, share }: FreePart,
): View {
  const right = cross(view.up, view.direction);
  const slope = isOrthographic ? 0 : share * Math.tan(HalfAngle);
  const largest = [-Infinity, -Infinity, -Infinity, -Infinity];
  const depths = [Infinity, -Infinity];
  eachPlace((place) => {
    const z = dot(view.direction, place);
    const x = dot(right, place) / aspect;
    const y = dot(view.up, place);
    const reaches = [x, -x, y, -y];
    for (let side = 0; side < 4; ++side) {
      largest[side] = Math.max(largest[side], reaches[side] + z * slope);
    }
    depths[0] = Math.min(depths[0], z);
    depths[1] = Math.max(depths[1], z);
  });
  if (!(depths[0] <= depths[1])) return view;
  const depth = (depths[0] + depths[1]) / 2;
  const across = times(right, ((largest[0] - largest[1]) / 2) * aspect);
  const target = add(add(across, view.up, (largest[2] - largest[3]) / 2), view.direction, depth);
  const sums = [largest[0] + largest[1], largest[2] + largest[3]];
  const height = Math.max(...sums) - 2 * depth * slope;
  return { ...view, target, height: boundHeight((height * FitMargin || 1) / share) };
}

// Room around what is shown: for supports, loads and the sections of beams.
const FitMargin = 1.12;
