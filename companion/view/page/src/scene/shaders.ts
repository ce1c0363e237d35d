// What the shaders share: uniforms that are set once for all materials, and pieces of GLSL.
//
// Places are in the frame of the picture (frame.ts); displacements and rotations are those of the
// model and are multiplied by `motion`. Colours are written as they are, sRGB, so that a pixel has
// exactly the colour of the table.

import * as three from "three";
import type { Rgb } from "./palette";

export interface SharedUniforms {
  [name: string]: three.IUniform;
  motion: { value: three.Vector2 }; // displacement -> picture, rotation -> drawn rotation
  clip: { value: three.Vector4 }; // shown: dot(xyz, undeformed place) <= w
  viewport: { value: three.Vector2 }; // of what is drawn to, device pixels
  pixel: { value: number }; // device pixels in a CSS pixel
  colors: { value: three.DataTexture }; // 256 x 1
  range: { value: three.Vector2 };
  isShaded: { value: number }; // 1, 0
  fieldDepth: { value: number }; // of the shading of faces with a colour of the map
  hasEdges: { value: number };
  edgeColor: { value: three.Vector3 };
  cutColor: { value: three.Vector3 };
  notNumber: { value: three.Vector3 };
}

// How much darker than its colour a face can get. Colours of numbers are read by their lightness
// on the legend, so that shading must stay within a band of ten: those of cividis are some 8 % of
// full light apart. Other colours differ by hue.
export const plainDepth = 0.3;
export const numberDepth = 0.06;

export function createUniforms(): SharedUniforms {
  const colors = new three.DataTexture(new Uint8Array(256 * 4), 256, 1);
  return {
    motion: { value: new three.Vector2() },
    clip: { value: new three.Vector4() },
    viewport: { value: new three.Vector2(1, 1) },
    pixel: { value: 1 },
    colors: { value: colors },
    range: { value: new three.Vector2(0, 1) },
    isShaded: { value: 1 },
    fieldDepth: { value: plainDepth },
    hasEdges: { value: 1 },
    edgeColor: { value: new three.Vector3() },
    cutColor: { value: new three.Vector3() },
    notNumber: { value: new three.Vector3() },
  };
}

export function setColor(uniform: { value: three.Vector3 }, color: Rgb): void {
  uniform.value.set(color[0] / 255, color[1] / 255, color[2] / 255);
}

// A value that stands for "no number" in buffers: shader compilers may take NaN for impossible.
export const NotNumber = 3e38;

export function orNotNumber(value: number): number {
  return Number.isFinite(value) ? value : NotNumber;
}

// Camera matrices that three sets; clip space of a place.
const cameraText = `
precision highp float;
precision highp int;
uniform mat4 projectionMatrix;
uniform mat4 viewMatrix;
uniform vec2 motion;
uniform vec2 viewport;
uniform float pixel;
`;

// For fragment shaders.
export const fragmentText = `
precision highp float;
precision highp int;
precision highp sampler2D;
uniform mat4 projectionMatrix;
uniform vec4 clip;
uniform vec2 range;
uniform sampler2D colors;
uniform float isShaded;
uniform float fieldDepth;
uniform float hasEdges;
uniform float pixel;
uniform vec3 edgeColor;
uniform vec3 cutColor;
uniform vec3 notNumber;

void clipAt(vec3 rest) {
  if (dot(clip.xyz, rest) > clip.w) discard;
}

vec3 colorOf(float value) {
  if (!(abs(value) < 1e38)) return notNumber;
  float share = 0.5;
  if (range.y > range.x) share = (value - range.x) / (range.y - range.x);
  else if (value != range.x) share = value < range.x ? 0.0 : 1.0;
  int entry = clamp(int(floor(share * 256.0)), 0, 255);
  return texelFetch(colors, ivec2(entry, 0), 0).rgb;
}

// Mild light from beside the eye, so that faces at a corner differ in every view.
const float plainDepth = ${plainDepth.toFixed(3)};
vec3 shade(vec3 color, vec3 eye, float depth) {
  if (isShaded < 0.5) return color;
  vec3 normal = normalize(cross(dFdx(eye), dFdy(eye)));
  float light = abs(dot(normal, normalize(vec3(-0.35, 0.55, 1.0))));
  return light <= 1.0 ? color * (1.0 - depth * (1.0 - light)) : color;
}

// The colour of lines on a face: dark, on dark faces white.
vec3 lineOn(vec3 face) {
  return dot(face, vec3(0.30, 0.59, 0.11)) < 0.3 ? mix(face, vec3(1.0), 0.65) : edgeColor;
}

// distances: 0 at an edge, 1 at the opposite one. Lines of one pixel, which vanish where their
// neighbours are nearer than some six pixels: there they would only tint the face.
float edgeShare(vec4 distances) {
  vec4 slopes = max(fwidth(distances), vec4(1e-9)) * pixel;
  vec4 pixels = distances / slopes;
  vec4 lines = 1.0 - smoothstep(vec4(0.35), vec4(1.1), pixels);
  vec4 room = smoothstep(vec4(5.0), vec4(14.0), 1.0 / slopes);
  vec4 shares = lines * room;
  return max(max(shares.x, shares.y), max(shares.z, shares.w));
}

// The line along which the clipping plane cuts.
float cutShare(vec3 rest) {
  float depth = clip.w - dot(clip.xyz, rest);
  float slope = max(fwidth(depth), 1e-9) * pixel;
  return dot(clip.xyz, clip.xyz) > 0.0 ? 1.0 - smoothstep(0.9, 1.7, depth / slope) : 0.0;
}
`;

// Numbers of picked things as colours.
export const numberText = `
vec4 colorOfNumber(int number) {
  return vec4((ivec4(number) >> ivec4(0, 8, 16, 24)) & 255) / 255.0;
}
`;

// The fragment shader of whatever is drawn with the number of its element, for picking.
export const pickText = `
${numberText}
in vec3 rest;
flat in int element;
uniform int firstNumber;
out vec4 color;
void main() {
  clipAt(rest);
  color = colorOfNumber(firstNumber + element);
}
`;

// Moves faces away from the eye, by steps that keep what lies in them before them: 1 for shells,
// which are behind lines, 3 for beams, which are behind shells (2 leave dots where a flange lies in
// a plate of small elements).
export function sinkMaterial(material: three.Material, steps: number): void {
  material.polygonOffset = true;
  material.polygonOffsetFactor = steps;
  material.polygonOffsetUnits = steps * steps;
}

// All is drawn in every frame: shaders move it to where three does not know of. A ball of no size
// keeps three from looking for one, in which places that are no numbers are an error.
export function drawAlways(object: three.Mesh | three.Points): void {
  object.frustumCulled = false;
  object.geometry.boundingSphere = new three.Sphere();
}

// A material whose own uniforms stand beside the shared ones.
export function createMaterial(
  shared: SharedUniforms,
  own: Record<string, three.IUniform>,
  vertex: string,
  fragment: string,
): three.RawShaderMaterial {
  return new three.RawShaderMaterial({
    glslVersion: three.GLSL3,
    uniforms: { ...shared, ...own },
    vertexShader: cameraText + vertex,
    fragmentShader: fragmentText + fragment,
    side: three.DoubleSide,
  });
}
