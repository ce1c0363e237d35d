// The shaders of beams as their sections: an extrusion for each beam, which follows the deformation
// of beam_line.ts. shape: y, z (model units, from the line between the nodes) and s = x / length.

export const vertexText = `
in vec3 shape;
in vec4 distances;
in vec3 start;
in vec3 end;
in vec3 axisZ;
in vec3 move1;
in vec3 turn1;
in vec3 move2;
in vec3 turn2;
in vec4 curveA;
in vec4 curveB;
in vec4 curveC;
in float beam;
uniform float size; // of the model
out vec3 eye;
out vec3 rest;
out vec3 inSection; // y, z, s
out vec4 inside;
flat out vec4 a;
flat out vec4 b;
flat out vec4 c;
flat out int element;

void main() {
  vec3 along = end - start;
  float len = length(along);
  mat3 axes;
  axes[0] = along / len;
  axes[2] = axisZ;
  axes[1] = cross(axes[2], axes[0]);
  mat3 toLocal = transpose(axes);
  vec3 u1 = toLocal * move1 * motion.x;
  vec3 u2 = toLocal * move2 * motion.x;
  vec3 r1 = toLocal * turn1 * motion.y;
  vec3 r2 = toLocal * turn2 * motion.y;
  float s = shape.z;
  float t = 1.0 - s;
  vec4 h = vec4(t * t * (1.0 + 2.0 * s), s * t * t, s * s * (3.0 - 2.0 * s), -s * s * t);
  vec4 slope = vec4(-6.0 * s * t, t * (1.0 - 3.0 * s), 6.0 * s * t, s * (3.0 * s - 2.0));
  vec4 v = vec4(u1.y, len * r1.z, u2.y, len * r2.z);
  vec4 w = vec4(u1.z, -len * r1.y, u2.z, -len * r2.y);
  vec3 moved = vec3(t * u1.x + s * u2.x, dot(h, v), dot(h, w));
  vec3 turned = vec3(t * r1.x + s * r2.x, -dot(slope, w) / len, dot(slope, v) / len);
  vec3 arm = vec3(0.0, shape.xy / size);
  rest = start + along * s + axes * arm;
  vec4 place = viewMatrix * vec4(rest + axes * (moved + cross(turned, arm)), 1.0);
  eye = place.xyz;
  inSection = shape;
  inside = distances;
  a = curveA;
  b = curveB;
  c = curveC;
  element = int(beam + 0.5);
  gl_Position = projectionMatrix * place;
}
`;

export const fragmentText = `
in vec3 eye;
in vec3 rest;
in vec3 inSection;
in vec4 inside;
flat in vec4 a;
flat in vec4 b;
flat in vec4 c;
uniform vec2 centre; // of gravity
uniform float isField;
uniform float isSize;
uniform vec3 plainColor;
uniform float edgeStrength;
out vec4 color;

float at(vec4 curve, float s) {
  return curve.x + s * (curve.y + s * (curve.z + s * curve.w));
}

void main() {
  clipAt(rest);
  float s = clamp(inSection.z, 0.0, 1.0);
  vec2 arm = inSection.xy - centre;
  vec3 base = plainColor;
  if (a.x > 1e38) base = notNumber;
  else if (isField > 0.5) {
    float value = at(a, s) + at(b, s) * arm.y + at(c, s) * arm.x;
    base = colorOf(isSize > 0.5 ? abs(value) : value);
  }
  base = shade(base, eye, isField > 0.5 ? fieldDepth : plainDepth);
  if (hasEdges > 0.5) base = mix(base, lineOn(base), edgeStrength * edgeShare(inside));
  // The inner side is seen only where the beam is cut.
  if (!gl_FrontFacing && dot(clip.xyz, clip.xyz) > 0.0) base = mix(base, cutColor, 0.75);
  base = mix(base, cutColor, cutShare(rest));
  color = vec4(base, 1.0);
}
`;
