// A surface of shells: one buffer by corner, one draw call. Corners are those of four-node shells
// (4 each), then of triangles (3 each), as in fields/quantity.ts.
//
// Values at corners are in a texture, from which each pixel takes all corners of its element: so
// they are bilinear on a quadrilateral, without a crease along its diagonal. An element that has no
// number at a corner, or no displacement, has the colour for that as a whole; without a
// displacement it stays at its place.

import * as three from "three";
import type { Palette } from "./palette";
import { createMaterial, drawAlways, NotNumber, orNotNumber, pickText } from "./shaders";
import { setColor, sinkMaterial } from "./shaders";
import type { SharedUniforms } from "./shaders";

export interface SurfaceSource {
  quads: number;
  triangles: number;
  nodes: Int32Array; // by corner
  places: Float32Array; // [nodes x 3], in the frame of the picture
}

export interface Surface {
  source: SurfaceSource;
  corners: number;
  geometry: three.BufferGeometry;
  mesh: three.Mesh<three.BufferGeometry, three.RawShaderMaterial>;
  pickMesh: three.Mesh<three.BufferGeometry, three.RawShaderMaterial>;
  values: three.DataTexture;
  isLost: Uint8Array; // [elements] no displacement
  hasPlace: Uint8Array; // [elements]
}

// How the surface is coloured.
export const plainMode = 0;
export const fieldMode = 1;
export const normalMode = 2;

const vertexText = `
in vec3 position;
in vec3 displacement;
uniform int quadCorners;
out vec3 eye;
out vec3 rest;
out vec4 inside;
flat out ivec2 corner; // the element's first corner, how many it has
flat out int element;

void main() {
  bool isQuad = gl_VertexID < quadCorners;
  int side = isQuad ? gl_VertexID % 4 : (gl_VertexID - quadCorners) % 3;
  corner = ivec2(gl_VertexID - side, isQuad ? 4 : 3);
  element = isQuad ? gl_VertexID / 4 : (quadCorners / 4 + (gl_VertexID - quadCorners) / 3);
  if (isQuad) {
    vec2 uv = vec2(side == 1 || side == 2 ? 1.0 : 0.0, side >= 2 ? 1.0 : 0.0);
    inside = vec4(uv, 1.0 - uv);
  } else {
    inside = vec4(side == 0 ? 1.0 : 0.0, side == 1 ? 1.0 : 0.0, side == 2 ? 1.0 : 0.0, 1.0);
  }
  rest = position;
  vec4 place = viewMatrix * vec4(position + motion.x * displacement, 1.0);
  eye = place.xyz;
  gl_Position = projectionMatrix * place;
}
`;

const fragmentText = `
in vec3 eye;
in vec3 rest;
in vec4 inside;
flat in ivec2 corner;
flat in int element;
uniform sampler2D values;
uniform int mode;
uniform vec3 plainColor;
uniform vec3 frontColor;
uniform vec3 backColor;
uniform float edgeStrength;
out vec4 color;

float valueAt(int at) {
  int width = textureSize(values, 0).x;
  vec2 both = texelFetch(values, ivec2(at % width, at / width), 0).xy;
  return gl_FrontFacing ? both.x : both.y;
}

float valueInside() {
  vec3 all = vec3(valueAt(corner.x), valueAt(corner.x + 1), valueAt(corner.x + 2));
  float last = corner.y == 4 ? valueAt(corner.x + 3) : all.z;
  if (any(greaterThan(abs(vec4(all, last)), vec4(1e38)))) return 3e38;
  // Differences, so that equal corners give exactly their value: it may be a limit of bands.
  vec2 at = clamp(inside.xy, 0.0, 1.0);
  if (corner.y == 3) return all.z + at.x * (all.x - all.z) + at.y * (all.y - all.z);
  float low = all.x + at.x * (all.y - all.x);
  float high = last + at.x * (all.z - last);
  return low + at.y * (high - low);
}

void main() {
  clipAt(rest);
  float value = valueInside();
  vec3 base = plainColor;
  if (mode == 2) base = gl_FrontFacing ? frontColor : backColor;
  else if (mode == 1 || value > 1e38) base = colorOf(value);
  base = shade(base, eye, mode == 1 ? fieldDepth : plainDepth);
  if (hasEdges > 0.5) base = mix(base, lineOn(base), edgeStrength * edgeShare(inside));
  base = mix(base, cutColor, cutShare(rest));
  color = vec4(base, 1.0);
}
`;

// textureWidth: the largest one that the graphics card takes. firstNumber: of the first element
// among picked things.
export function createSurface(
  source: SurfaceSource,
  shared: SharedUniforms,
  textureWidth: number,
  firstNumber: number,
): Surface {
  const corners = source.nodes.length;
  const geometry = new three.BufferGeometry();
  const moves = new Float32Array(3 * corners);
  geometry.setAttribute("position", new three.BufferAttribute(placeCorners(source), 3));
  geometry.setAttribute("displacement", new three.BufferAttribute(moves, 3));
  geometry.setIndex(new three.BufferAttribute(new Uint32Array(indexSize(source)), 1));
  const values = createValues(corners, textureWidth);
  const quadCorners = { value: 4 * source.quads };
  const numbers = { quadCorners, firstNumber: { value: firstNumber } };
  const pickMaterial = createMaterial(shared, numbers, vertexText, pickText);
  const mesh = new three.Mesh(geometry, createFaces(shared, quadCorners, values));
  const pickMesh = new three.Mesh(geometry, pickMaterial);
  for (const each of [mesh, pickMesh]) {
    drawAlways(each);
    sinkMaterial(each.material, 1);
  }
  const elements = source.quads + source.triangles;
  const isLost = new Uint8Array(elements);
  const hasPlace = new Uint8Array(elements);
  const surface = { source, corners, geometry, mesh, pickMesh, values, isLost, hasPlace };
  findPlaces(surface);
  return surface;
}

// The part of a line's colour in that of a face along the edges of elements.
const EdgeStrength = 0.3;

function createFaces(
  shared: SharedUniforms,
  quadCorners: three.IUniform,
  values: three.DataTexture,
): three.RawShaderMaterial {
  const own = {
    quadCorners,
    values: { value: values },
    mode: { value: plainMode },
    plainColor: { value: new three.Vector3() },
    frontColor: { value: new three.Vector3() },
    backColor: { value: new three.Vector3() },
    edgeStrength: { value: EdgeStrength },
  };
  return createMaterial(shared, own, vertexText, fragmentText);
}

function indexSize(source: SurfaceSource): number {
  return 6 * source.quads + 3 * source.triangles;
}

function placeCorners(source: SurfaceSource): Float32Array {
  const { nodes, places } = source;
  const corners = new Float32Array(3 * nodes.length);
  for (let corner = 0; corner < nodes.length; ++corner) {
    const from = 3 * nodes[corner];
    corners[3 * corner] = places[from];
    corners[3 * corner + 1] = places[from + 1];
    corners[3 * corner + 2] = places[from + 2];
  }
  return corners;
}

function createValues(corners: number, textureWidth: number): three.DataTexture {
  const width = Math.min(textureWidth, Math.max(1, corners));
  const height = Math.max(1, Math.ceil(corners / width));
  const data = new Float32Array(2 * width * height);
  return new three.DataTexture(data, width, height, three.RGFormat, three.FloatType);
}

// The first corner of an element, and how many it has.
function cornersOf(source: SurfaceSource, element: number): [number, number] {
  return element < source.quads
    ? [4 * element, 4]
    : [4 * source.quads + 3 * (element - source.quads), 3];
}

// Elements that can be drawn: all their nodes exist and have coordinates.
function findPlaces(surface: Surface): void {
  const places = surface.geometry.getAttribute("position").array;
  for (let element = 0; element < surface.hasPlace.length; ++element) {
    const [first, count] = cornersOf(surface.source, element);
    let sum = 0;
    for (let at = 3 * first; at < 3 * (first + count); ++at) sum += places[at];
    surface.hasPlace[element] = Number.isFinite(sum) ? 1 : 0;
  }
}

// isHidden: [elements], 1: left out.
export function showElements(surface: Surface, isHidden: (element: number) => boolean): void {
  const index = surface.geometry.getIndex();
  if (!index) return;
  const array = index.array as Uint32Array;
  let size = 0;
  for (let element = 0; element < surface.hasPlace.length; ++element) {
    if (!surface.hasPlace[element] || isHidden(element)) continue;
    const [first, count] = cornersOf(surface.source, element);
    for (let corner = 2; corner < count; ++corner) {
      array[size++] = first;
      array[size++] = first + corner - 1;
      array[size++] = first + corner;
    }
  }
  index.needsUpdate = true;
  surface.geometry.setDrawRange(0, size);
}

// displacements: of nodes, `width` numbers each, of which the first three count; null: none.
export function moveSurface(
  surface: Surface,
  displacements: Float32Array | null,
  width: number,
): void {
  const attribute = surface.geometry.getAttribute("displacement");
  const moves = attribute.array as Float32Array;
  surface.isLost.fill(0);
  if (!displacements) moves.fill(0);
  else for (let element = 0; element < surface.isLost.length; ++element) {
    moveElement(surface, displacements, width, moves, element);
  }
  attribute.needsUpdate = true;
}

function moveElement(
  surface: Surface,
  displacements: Float32Array,
  width: number,
  moves: Float32Array,
  element: number,
): void {
  const [first, count] = cornersOf(surface.source, element);
  let sum = 0;
  for (let corner = first; corner < first + count; ++corner) {
    const from = width * surface.source.nodes[corner];
    for (let axis = 0; axis < 3; ++axis) {
      moves[3 * corner + axis] = displacements[from + axis];
      sum += displacements[from + axis];
    }
  }
  if (Number.isFinite(sum)) return;
  surface.isLost[element] = 1;
  moves.fill(0, 3 * first, 3 * (first + count));
}

// upper, lower: by corner; null: one colour. To be called after moveSurface.
export function colorSurface(
  surface: Surface,
  upper: Float32Array | null,
  lower: Float32Array | null,
): void {
  const data = surface.values.image.data as unknown as Float32Array;
  if (!upper || !lower) data.fill(0);
  else for (let corner = 0; corner < surface.corners; ++corner) {
    data[2 * corner] = orNotNumber(upper[corner]);
    data[2 * corner + 1] = orNotNumber(lower[corner]);
  }
  for (let element = 0; element < surface.isLost.length; ++element) {
    if (!surface.isLost[element]) continue;
    const [first, count] = cornersOf(surface.source, element);
    data.fill(NotNumber, 2 * first, 2 * (first + count));
  }
  surface.values.needsUpdate = true;
}

export function paintSurface(surface: Surface, palette: Palette, mode: number): void {
  const { uniforms } = surface.mesh.material;
  uniforms.mode.value = mode;
  setColor(uniforms.plainColor, palette.shell);
  setColor(uniforms.frontColor, palette.front);
  setColor(uniforms.backColor, palette.back);
}

export function freeSurface(surface: Surface): void {
  surface.geometry.dispose();
  surface.values.dispose();
  surface.mesh.material.dispose();
  surface.pickMesh.material.dispose();
}
