// Round dots of some pixels at places, which move with the deformation: the picked node, nodes
// without elements, findings. One draw call.

import * as three from "three";
import { createMaterial, drawAlways } from "./shaders";
import type { SharedUniforms } from "./shaders";

export interface DotList {
  places: Float32Array; // [n x 3], in the frame of the picture
  moves: Float32Array; // [n x 3], displacements
  colors: Float32Array; // [n x 3], 0 .. 1
}

export interface Dots {
  mesh: three.Points<three.BufferGeometry, three.RawShaderMaterial>;
}

const vertexText = `
in vec3 position;
in vec3 displacement;
in vec3 dotColor;
uniform float dotSize;
out vec3 rest;
out vec3 ink;
void main() {
  vec4 place = projectionMatrix * viewMatrix * vec4(position + motion.x * displacement, 1.0);
  gl_PointSize = dotSize * pixel;
  gl_Position = place;
  rest = position;
  ink = dotColor;
}
`;

const fragmentText = `
in vec3 rest;
in vec3 ink;
uniform float dotSize;
uniform float opacity;
uniform vec3 rim;
out vec4 color;
void main() {
  clipAt(rest);
  float radius = length(gl_PointCoord - 0.5) * dotSize;
  float outer = dotSize * 0.5;
  if (radius > outer) discard;
  float shown = 1.0 - smoothstep(outer - 1.0, outer, radius);
  float isRim = smoothstep(outer - 2.5, outer - 1.5, radius);
  color = vec4(mix(ink, rim, isRim), shown * opacity);
}
`;

// size: CSS pixels with the rim.
export function createDots(shared: SharedUniforms, size: number, isOnTop: boolean): Dots {
  const own = {
    dotSize: { value: size },
    opacity: { value: 1 },
    rim: { value: new three.Vector3(1, 1, 1) },
  };
  const material = createMaterial(shared, own, vertexText, fragmentText);
  material.transparent = true;
  material.depthTest = !isOnTop;
  material.depthWrite = false;
  const mesh = new three.Points(new three.BufferGeometry(), material);
  drawAlways(mesh);
  mesh.visible = false;
  return { mesh };
}

export function setDots(dots: Dots, list: DotList): void {
  dots.mesh.geometry.dispose();
  const geometry = new three.BufferGeometry();
  geometry.setAttribute("position", new three.BufferAttribute(list.places, 3));
  geometry.setAttribute("displacement", new three.BufferAttribute(list.moves, 3));
  geometry.setAttribute("dotColor", new three.BufferAttribute(list.colors, 3));
  dots.mesh.geometry = geometry;
  drawAlways(dots.mesh);
  dots.mesh.visible = list.places.length > 0;
}
