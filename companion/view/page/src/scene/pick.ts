// What is under the pointer: everything is drawn once more, into a small target around the pixel,
// with numbers in place of colours.
//
// Numbers: 0 nothing, then from 1: four-node shells, triangles, beams, nodes, shells of detail
// models (which stand for their beams).

import * as three from "three";
import type { Kind, PageModel } from "../data/page_model";
import { createMaterial, drawAlways, pickText } from "./shaders";
import type { SharedUniforms } from "./shaders";

export interface Numbers {
  shells: number; // first number of each
  beams: number;
  nodes: number;
  details: number;
}

export function numberThings(model: PageModel): Numbers {
  const beams = 1 + model.shells.count + model.triangles.count;
  const nodes = beams + model.beams.count;
  return { shells: 1, beams, nodes, details: nodes + model.nodeCount };
}

export interface Thing {
  kind: Kind;
  number: number;
  detail?: number; // the shell of the beam's detail model
}

// detailBeams: the beam of each shell of the detail models.
export function thingOf(
  numbers: Numbers,
  model: PageModel,
  number: number,
  detailBeams: Int32Array | null,
): Thing | null {
  if (number <= 0) return null;
  if (number >= numbers.details) {
    const detail = number - numbers.details;
    const beam = detailBeams?.[detail];
    return beam === undefined ? null : { kind: "beam", number: beam, detail };
  }
  if (number >= numbers.nodes) return { kind: "node", number: number - numbers.nodes };
  if (number >= numbers.beams) return { kind: "beam", number: number - numbers.beams };
  const row = number - numbers.shells;
  const { count } = model.shells;
  return row < count ? { kind: "shell", number: row } : { kind: "triangle", number: row - count };
}

// The nodes of an element, or the node itself; none of what does not exist.
export function nodesOfThing(model: PageModel, thing: Thing): number[] {
  if (thing.kind === "node") return [thing.number];
  const [table, width] = {
    shell: [model.shells.nodes, 4] as const,
    triangle: [model.triangles.nodes, 3] as const,
    beam: [model.beams.nodes, 2] as const,
  }[thing.kind];
  return [...table.subarray(width * thing.number, width * thing.number + width)];
}

// Nodes as points of one pixel, in front of what they are the corners of.
export interface NodePoints {
  mesh: three.Points<three.BufferGeometry, three.RawShaderMaterial>;
}

const vertexText = `
in vec3 position;
in vec3 displacement;
in float lift;
uniform int firstNumber;
out vec3 rest;
flat out int element;
void main() {
  vec4 eye = viewMatrix * vec4(position + motion.x * displacement, 1.0);
  vec4 place = projectionMatrix * eye;
  // Six pixels towards the eye: before its own elements unless these are seen nearly on edge.
  float z = eye.z + lift + 12.0 * place.w / (projectionMatrix[1][1] * viewport.y);
  place.z = (projectionMatrix[2][2] * z + projectionMatrix[3][2]) /
            (projectionMatrix[2][3] * z + projectionMatrix[3][3]) * place.w;
  gl_PointSize = 1.0;
  gl_Position = place;
  rest = position;
  element = gl_VertexID;
}
`;

// lifts: [nodes] how far a node is moved towards the eye, in the frame of the picture: out of the
// sections of its beams.
export function createNodePoints(
  places: Float32Array,
  lifts: Float32Array,
  shared: SharedUniforms,
  firstNumber: number,
): NodePoints {
  const geometry = new three.BufferGeometry();
  const moves = new Float32Array(places.length);
  geometry.setAttribute("position", new three.BufferAttribute(places, 3));
  geometry.setAttribute("displacement", new three.BufferAttribute(moves, 3));
  geometry.setAttribute("lift", new three.BufferAttribute(lifts, 1));
  const own = { firstNumber: { value: firstNumber } };
  const mesh = new three.Points(geometry, createMaterial(shared, own, vertexText, pickText));
  drawAlways(mesh);
  return { mesh };
}

// displacements: [nodes x 6] or null.
export function moveNodePoints(points: NodePoints, displacements: Float32Array | null): void {
  const attribute = points.mesh.geometry.getAttribute("displacement");
  const moves = attribute.array as Float32Array;
  for (let at = 0; at < moves.length; ++at) {
    const value = displacements ? displacements[6 * Math.floor(at / 3) + (at % 3)] : 0;
    moves[at] = Number.isFinite(value) ? value : 0;
  }
  attribute.needsUpdate = true;
}

export function showNodePoints(points: NodePoints, nodes: Uint32Array): void {
  points.mesh.geometry.setIndex(new three.BufferAttribute(nodes, 1));
}

// How far from the pointer a node or a beam is still picked, CSS pixels.
export const NodeReach = 8;
export const BeamReach = 4;
const Side = 2 * NodeReach + 1;

export interface PickTarget {
  target: three.WebGLRenderTarget;
  scene: three.Scene;
  bytes: Uint8Array;
}

export function createPickTarget(): PickTarget {
  const target = new three.WebGLRenderTarget(Side, Side, {
    minFilter: three.NearestFilter,
    magFilter: three.NearestFilter,
  });
  return { target, scene: new three.Scene(), bytes: new Uint8Array(4 * Side * Side) };
}

// A number that was found beside the pixel.
export interface Found {
  number: number;
  right: number; // CSS pixels from the one that was asked for
  down: number;
}

// Numbers around a pixel, nearest first.
export function numbersAround(
  pick: PickTarget,
  renderer: three.WebGLRenderer,
  camera: three.OrthographicCamera | three.PerspectiveCamera,
  shared: SharedUniforms,
  pixel: { x: number; y: number; width: number; height: number },
): Found[] {
  const left = pixel.x - Side / 2;
  const top = pixel.y - Side / 2;
  camera.setViewOffset(pixel.width, pixel.height, left, top, Side, Side);
  camera.updateProjectionMatrix();
  const before = shared.viewport.value.clone();
  const ratio = shared.pixel.value;
  shared.viewport.value.set(Side, Side);
  shared.pixel.value = 1;
  renderer.setRenderTarget(pick.target);
  renderer.setClearColor(0x000000, 0);
  renderer.clear();
  renderer.render(pick.scene, camera);
  renderer.readRenderTargetPixels(pick.target, 0, 0, Side, Side, pick.bytes);
  renderer.setRenderTarget(null);
  shared.viewport.value.copy(before);
  shared.pixel.value = ratio;
  camera.clearViewOffset();
  camera.updateProjectionMatrix();
  return sortNumbers(pick.bytes);
}

function sortNumbers(bytes: Uint8Array): Found[] {
  const found: Found[] = [];
  for (let at = 0; at < Side * Side; ++at) {
    const [low, second, third, high] = bytes.subarray(4 * at, 4 * at + 4);
    const number = low + 256 * (second + 256 * (third + 256 * high));
    if (number === 0) continue;
    // The lowest row comes first.
    const right = (at % Side) - NodeReach;
    const down = NodeReach - Math.floor(at / Side);
    found.push({ number, right, down });
  }
  const distance = ({ right, down }: Found): number => right * right + down * down;
  return found.sort((a, b) => distance(a) - distance(b));
}
