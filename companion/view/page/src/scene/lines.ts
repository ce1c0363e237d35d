// Straight lines of some pixels' width, all in one draw call: instanced rectangles that face the
// screen. Each line may move with the deformation and have a colour of its own, or values at its
// ends that the colour map colours.

import * as three from "three";
import { createMaterial, drawAlways, numberText } from "./shaders";
import type { SharedUniforms } from "./shaders";

export interface LineList {
  count: number;
  starts: Float32Array; // [count x 3], in the frame of the picture, undeformed
  ends: Float32Array;
  startMoves: Float32Array | null; // [count x 3], displacements; null: none
  endMoves: Float32Array | null;
  values: Float32Array | null; // [count x 2]; null: the one colour of the lines
  // [count] lines vanish where this length, in the frame of the picture, is seen: sections of beams
  extents: Float32Array | null;
  numbers?: Float32Array; // [count] what is picked at a line
}

export interface Lines {
  mesh: three.Mesh<three.InstancedBufferGeometry, three.RawShaderMaterial>;
  pickMesh: three.Mesh<three.InstancedBufferGeometry, three.RawShaderMaterial>;
}

export interface LineStyle {
  width: number; // CSS pixels
  opacity: number;
  isDeformed: boolean;
  border: number; // CSS pixels of the width at each side, in the colour of element edges
  lift: number; // towards the eye, CSS pixels: drawn before the surface it lies in
  isClipped: boolean;
}

const vertexText = `
in vec2 shape; // 0, 1: start, end; -1, 1: side
in vec3 start;
in vec3 end;
in vec3 startMove;
in vec3 endMove;
in vec2 values;
in float extent;
in float number;
uniform float lineWidth;
uniform float lift;
uniform float isDeformed;
out vec3 rest;
out float value;
out float share;
out float across; // CSS pixels from the middle
flat out int element;

void main() {
  float factor = isDeformed * motion.x;
  vec4 from = viewMatrix * vec4(start + factor * startMove, 1.0);
  vec4 to = viewMatrix * vec4(end + factor * endMove, 1.0);
  vec4 a = projectionMatrix * from;
  vec4 b = projectionMatrix * to;
  // What lies behind the eye is cut off.
  const float nearest = 1e-5;
  if (a.w < nearest && b.w > nearest) a = mix(a, b, (nearest - a.w) / (b.w - a.w));
  if (b.w < nearest && a.w > nearest) b = mix(b, a, (nearest - b.w) / (a.w - b.w));
  vec2 along = (b.xy / b.w - a.xy / a.w) * viewport;
  float size = length(along);
  along = size > 1e-6 ? along / size : vec2(1.0, 0.0);
  vec4 place = shape.x < 0.5 ? a : b;
  float thick = lineWidth * pixel;
  // Half a width longer at both ends, so that lines that meet at a corner leave no notch.
  vec2 aside = vec2(-along.y, along.x) * shape.y + along * (shape.x < 0.5 ? -0.5 : 0.5);
  place.xy += aside * thick / viewport * place.w;
  // Pixels -> length at this depth -> depth.
  float perPixel = 2.0 * place.w / (projectionMatrix[1][1] * viewport.y);
  vec4 eye = mix(from, to, shape.x);
  float z = eye.z + lift * pixel * perPixel;
  place.z = (projectionMatrix[2][2] * z + projectionMatrix[3][2]) /
            (projectionMatrix[2][3] * z + projectionMatrix[3][3]) * place.w;
  float seen = extent / perPixel / pixel;
  share = extent > 0.0 ? 1.0 - smoothstep(1.0, 2.5, seen) : 1.0;
  gl_Position = share > 0.0 ? place : vec4(2.0, 2.0, 2.0, 1.0);
  across = shape.y * lineWidth * 0.5;
  element = int(number + 0.5);
  rest = mix(start, end, shape.x);
  value = shape.x < 0.5 ? values.x : values.y;
  if (abs(values.x) > 1e38 || abs(values.y) > 1e38) value = 3e38;
}
`;

const fragmentText = `
in vec3 rest;
in float value;
in float share;
in float across;
uniform float lineWidth;
uniform float border;
uniform vec3 lineColor;
uniform float opacity;
uniform float isField;
uniform float isClipped;
out vec4 color;
void main() {
  if (isClipped > 0.5) clipAt(rest);
  vec3 ink = isField > 0.5 || value > 1e38 ? colorOf(value) : lineColor;
  float inner = lineWidth * 0.5 - border;
  float rim = border > 0.0 ? smoothstep(inner - 0.3, inner + 0.3, abs(across)) : 0.0;
  ink = mix(ink, edgeColor, 0.55 * rim);
  color = vec4(ink, opacity * share);
}
`;

const pickText = `
${numberText}
in vec3 rest;
in float share;
flat in int element;
uniform int firstNumber;
out vec4 color;
void main() {
  clipAt(rest);
  if (share < 0.5) discard;
  color = colorOfNumber(firstNumber + element);
}
`;

// firstNumber: of what is picked; without meaning where the lines have no numbers.
export function createLines(shared: SharedUniforms, style: LineStyle, firstNumber = 0): Lines {
  const own = {
    lineWidth: { value: style.width },
    border: { value: style.border },
    lift: { value: style.lift },
    isDeformed: { value: style.isDeformed ? 1 : 0 },
    isClipped: { value: style.isClipped ? 1 : 0 },
    lineColor: { value: new three.Vector3() },
    opacity: { value: style.opacity },
    isField: { value: 0 },
  };
  const material = createMaterial(shared, own, vertexText, fragmentText);
  material.transparent = true;
  material.depthWrite = false;
  const numbers = { ...own, firstNumber: { value: firstNumber } };
  const pickMaterial = createMaterial(shared, numbers, vertexText, pickText);
  const geometry = new three.InstancedBufferGeometry();
  const mesh = new three.Mesh(geometry, material);
  const pickMesh = new three.Mesh(geometry, pickMaterial);
  for (const each of [mesh, pickMesh]) {
    each.visible = false;
  }
  return { mesh, pickMesh };
}

// Replaces all lines.
export function setLines(lines: Lines, list: LineList): void {
  lines.mesh.geometry.dispose();
  const geometry = new three.InstancedBufferGeometry();
  geometry.setAttribute(
    "shape",
    new three.BufferAttribute(new Float32Array([0, -1, 0, 1, 1, -1, 1, 1]), 2),
  );
  geometry.setIndex([0, 2, 1, 1, 2, 3]);
  const still = (): Float32Array => new Float32Array(3 * list.count);
  const add = (name: string, array: Float32Array, width: number): void => {
    geometry.setAttribute(name, new three.InstancedBufferAttribute(array, width));
  };
  add("start", list.starts, 3);
  add("end", list.ends, 3);
  add("startMove", list.startMoves ?? still(), 3);
  add("endMove", list.endMoves ?? still(), 3);
  add("values", list.values ?? new Float32Array(2 * list.count), 2);
  add("extent", list.extents ?? new Float32Array(list.count), 1);
  add("number", list.numbers ?? new Float32Array(list.count), 1);
  geometry.instanceCount = list.count;
  lines.mesh.geometry = lines.pickMesh.geometry = geometry;
  for (const each of [lines.mesh, lines.pickMesh]) drawAlways(each);
  lines.mesh.visible = lines.pickMesh.visible = list.count > 0;
}
