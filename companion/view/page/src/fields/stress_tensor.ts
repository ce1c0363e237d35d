// Stresses at a point: equivalent and principal values, global axes and an element's plane.
//
// Six components: SX, SY, SZ, TXY, TXZ, TYZ in global axes. Three: sx, sy, txy in the plane of an
// element's e1 and e2. frames: [elements x 9], e1, e2, e3 one behind another, global components.

// Of six components (the solver's formula).
export function equivalentStress(
  x: number,
  y: number,
  z: number,
  xy: number,
  xz: number,
  yz: number,
): number {
  const [a, b, c] = [x - y, y - z, z - x];
  return Math.sqrt(0.5 * (a * a + b * b + c * c + 6 * (xy * xy + xz * xz + yz * yz)));
}

// Of a plane stress.
export function planeEquivalentStress(x: number, y: number, xy: number): number {
  return Math.sqrt(x * x - x * y + y * y + 3 * xy * xy);
}

// The larger principal stress is max(x, y) + d, the smaller one min(x, y) - d. With h = (x - y) / 2
// and r = sqrt(h^2 + xy^2), d = r - |h| = xy^2 / (r + |h|), which loses no digits.
function principalShift(x: number, y: number, xy: number): number {
  const h = x / 2 - y / 2;
  const sum = Math.hypot(h, xy) + Math.abs(h);
  return sum === 0 ? 0 : xy * (xy / sum);
}

export function largerPrincipal(x: number, y: number, xy: number): number {
  return Math.max(x, y) + principalShift(x, y, xy);
}

export function smallerPrincipal(x: number, y: number, xy: number): number {
  return Math.min(x, y) - principalShift(x, y, xy);
}

// Component e_i . s e_j of the stress s in six components from s[at].
// a, b: where e_i and e_j begin in frames.
export function resolveStress(
  s: ArrayLike<number>,
  at: number,
  frames: Float64Array,
  a: number,
  b: number,
): number {
  const [a0, a1, a2] = [frames[a], frames[a + 1], frames[a + 2]];
  const [b0, b1, b2] = [frames[b], frames[b + 1], frames[b + 2]];
  return (
    a0 * b0 * s[at] +
    a1 * b1 * s[at + 1] +
    a2 * b2 * s[at + 2] +
    (a0 * b1 + a1 * b0) * s[at + 3] +
    (a0 * b2 + a2 * b0) * s[at + 4] +
    (a1 * b2 + a2 * b1) * s[at + 5]
  );
}

// Global component (i, j), each 0 to 2, of a plane stress in the frame at `e1`.
export function globalComponent(
  plane: ArrayLike<number>, // sx, sy, txy from plane[at]
  at: number,
  frames: Float64Array,
  e1: number,
  i: number,
  j: number,
): number {
  const [u, v] = [frames[e1 + i], frames[e1 + 3 + i]];
  const [p, q] = [frames[e1 + j], frames[e1 + 3 + j]];
  return u * p * plane[at] + v * q * plane[at + 1] + (u * q + v * p) * plane[at + 2];
}

// Numbers of six digits are off by 5e-6 of themselves, and a little more in single precision.
const roundingOfDigits = 6e-6;

// a + b, both rounded to six digits. What may be rounding alone is zero, so that a plate in bending
// shows no membrane forces.
export function addRounded(a: number, b: number): number {
  const sum = a + b;
  return Math.abs(sum) <= roundingOfDigits * (Math.abs(a) + Math.abs(b)) ? 0 : sum;
}
