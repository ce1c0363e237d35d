// Small solid signs at places: instanced, two draw calls for each shape, because what lies behind
// the structure is drawn again, faintly, on top of it.

import * as three from "three";
import { makeShape } from "./glyph_shapes";
import type { Shape } from "./glyph_shapes";
import type { Rgb } from "./palette";
import { createMaterial, drawAlways } from "./shaders";
import type { SharedUniforms } from "./shaders";
import type { Vector } from "./vector";

export interface Glyph {
  shape: Shape;
  place: Vector; // in the frame of the picture, undeformed
  move: Vector; // displacement
  direction: Vector; // where the shape points, unit length
  size: number; // part of the model's diagonal
  color: Rgb;
  room?: number; // distance of its neighbours that are as important; none: always drawn
}

export interface Glyphs {
  shared: SharedUniforms;
  group: three.Group;
}

// Signs of a row that would be nearer to one another than so many of their sizes are left out;
// nearer to the eye there is room for them.
export const SizesApart = 3;
export const AlwaysRoom = 1e9; // for a sign that is always drawn

const vertexText = `
in vec3 position;
in vec3 place;
in vec3 move;
in vec3 direction;
in float size;
in float room;
in vec3 glyphColor;
uniform float mostPixels; // of size 1
const float sizesApart = ${SizesApart.toFixed(1)};
out vec3 eye;
out vec3 rest;
out vec3 ink;

void main() {
  vec3 moved = place + motion.x * move;
  vec4 middle = viewMatrix * vec4(moved, 1.0);
  float w = (projectionMatrix * middle).w;
  float perPixel = 2.0 * w / (projectionMatrix[1][1] * viewport.y) * pixel;
  // Near the eye, signs grow no further.
  float drawn = size * min(1.0, mostPixels * perPixel);
  vec3 aside = abs(direction.z) < 0.9 ? vec3(0.0, 0.0, 1.0) : vec3(1.0, 0.0, 0.0);
  vec3 x = normalize(cross(aside, direction));
  vec3 y = cross(direction, x);
  vec3 corner = position.x * x + position.y * y + position.z * direction;
  vec4 seen = viewMatrix * vec4(moved + drawn * corner, 1.0);
  eye = seen.xyz;
  rest = place;
  ink = glyphColor;
  gl_Position = projectionMatrix * seen;
  if (room < sizesApart * drawn) gl_Position = vec4(0.0, 0.0, 2.0, 1.0); // beyond what is seen
}
`;

const fragmentText = `
in vec3 eye;
in vec3 rest;
in vec3 ink;
uniform float opacity;
out vec4 color;
void main() {
  clipAt(rest);
  color = vec4(shade(ink, eye, plainDepth), opacity);
}
`;

// A sign as large as the model's diagonal would be at most this many CSS pixels large.
const MostPixels = 1150;
const HiddenOpacity = 0.28;

export function createGlyphs(shared: SharedUniforms): Glyphs {
  return { shared, group: new three.Group() };
}

// Replaces all signs.
export function setGlyphs(glyphs: Glyphs, list: Glyph[]): void {
  for (const child of [...glyphs.group.children]) {
    glyphs.group.remove(child);
    const mesh = child as three.Mesh<three.BufferGeometry, three.Material>;
    mesh.geometry.dispose();
    mesh.material.dispose();
  }
  for (const shape of new Set(list.map((glyph) => glyph.shape))) {
    const geometry = fillShape(
      shape,
      list.filter((glyph) => glyph.shape === shape),
    );
    glyphs.group.add(makeMesh(glyphs.shared, geometry, true));
    glyphs.group.add(makeMesh(glyphs.shared, geometry, false));
  }
}

function makeMesh(
  shared: SharedUniforms,
  geometry: three.InstancedBufferGeometry,
  isHidden: boolean,
): three.Mesh {
  const own = {
    mostPixels: { value: MostPixels },
    opacity: { value: isHidden ? HiddenOpacity : 1 },
  };
  const material = createMaterial(shared, own, vertexText, fragmentText);
  material.transparent = isHidden;
  material.depthWrite = !isHidden;
  if (isHidden) material.depthFunc = three.GreaterDepth;
  const mesh = new three.Mesh(geometry, material);
  drawAlways(mesh);
  mesh.renderOrder = isHidden ? 6 : 5;
  return mesh;
}

function fillShape(shape: Shape, list: Glyph[]): three.InstancedBufferGeometry {
  const geometry = new three.InstancedBufferGeometry();
  geometry.setAttribute("position", makeShape(shape).getAttribute("position"));
  const add = (name: string, width: number, values: number[]): void => {
    const array = new Float32Array(values);
    geometry.setAttribute(name, new three.InstancedBufferAttribute(array, width));
  };
  add("place", 3, list.flatMap((glyph) => glyph.place));
  add("move", 3, list.flatMap((glyph) => glyph.move));
  add("direction", 3, list.flatMap((glyph) => glyph.direction));
  add("size", 1, list.map((glyph) => glyph.size));
  add("room", 1, list.map((glyph) => glyph.room ?? AlwaysRoom));
  add("glyphColor", 3, list.flatMap((glyph) => glyph.color.map((value) => value / 255)));
  geometry.instanceCount = list.length;
  return geometry;
}
