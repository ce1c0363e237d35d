// Signs of supports: a cube where all six dofs are held; else a diamond where all translations are,
// or for each held translation a cone whose tip is at the node; for each held rotation a ring about
// the axis. Rows of equal supports have signs as far as there is room (glyphs.ts).

import type { PageModel } from "../data/page_model";
import { AlwaysRoom, SizesApart } from "./glyphs";
import type { Glyph } from "./glyphs";
import type { Palette } from "./palette";
import { pickApart } from "./sparse";
import type { Vector } from "./vector";

export type PlaceOf = (node: number) => { place: Vector; move: Vector } | null; // null: not shown

const Axes: Vector[] = [
  [1, 0, 0],
  [0, 1, 0],
  [0, 0, 1],
];

const LargestSize = 0.01; // of the model's diagonal
const LeastSize = 0.006;
const ShareOfSpacing = 0.5;

// spacings: by node, the length of its shortest element in the frame of the picture: along a mesh,
// signs stay apart. All have one size.
export function listSupports(
  model: PageModel,
  spacings: Float32Array,
  placeOf: PlaceOf,
  palette: Palette,
): Glyph[] {
  const size = findSize(model, spacings);
  const byFlags = new Map<number, Held[]>();
  model.supportNodes.forEach((node, row) => {
    const flags = model.supportFlags[row] & 63;
    const at = placeOf(node);
    if (!at || flags === 0) return;
    const equal = byFlags.get(flags);
    if (equal) equal.push(at);
    else byFlags.set(flags, [at]);
  });
  return [...byFlags].flatMap(([flags, list]) =>
    listRooms(list, size).flatMap(([at, room]) =>
      listSigns(flags, palette).map((sign) => ({ ...at, ...sign, size, room })),
    ),
  );
}

type Held = NonNullable<ReturnType<PlaceOf>>;
type Sign = Pick<Glyph, "shape" | "direction" | "color">;

function listSigns(flags: number, palette: Palette): Sign[] {
  const { support: color, rotation } = palette;
  if (flags === 63) return [{ shape: "cube", direction: Axes[2], color }];
  const signs: Sign[] = [];
  const hasAll = (flags & 7) === 7;
  if (hasAll) signs.push({ shape: "diamond", direction: Axes[2], color });
  Axes.forEach((direction, axis) => {
    if (!hasAll && flags & (1 << axis)) signs.push({ shape: "cone", direction, color });
    if (flags & (8 << axis)) signs.push({ shape: "ring", direction, color: rotation });
  });
  return signs;
}

const Halvings = 12; // of the distance; beyond, nobody looks so closely

// Each place with the distance that it keeps from those which are drawn before it.
function listRooms(list: Held[], size: number): [Held, number][] {
  const rooms = new Map<Held, number>();
  let apart = SizesApart * size;
  let ordered = list;
  for (let step = 0; step <= Halvings && rooms.size < list.length; ++step) {
    const kept = pickApart(ordered, apart);
    for (const at of kept) if (!rooms.has(at)) rooms.set(at, step === 0 ? AlwaysRoom : apart);
    ordered = [...rooms.keys(), ...list.filter((at) => !rooms.has(at))];
    apart /= 2;
  }
  return [...rooms];
}

// By the median of the spacings.
function findSize(model: PageModel, spacings: Float32Array): number {
  const sorted = Array.from(model.supportNodes, (node) => spacings[node])
    .filter(Number.isFinite)
    .sort((a, b) => a - b);
  const median = sorted[sorted.length >> 1] ?? Infinity;
  return Math.min(LargestSize, Math.max(LeastSize, ShareOfSpacing * median));
}
