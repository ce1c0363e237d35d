// Turning, moving and nearing by mouse, pen, touch and keys. Left button: turns about what is under
// the pointer; right or middle button, or with shift: moves; wheel: nears what is under the
// pointer. One finger turns; two move, and near by their distance.

import { panView, turnView, zoomView } from "./view";
import type { View } from "./view";
import type { Vector } from "./vector";

interface ControlTarget {
  view(): View;
  setView(view: View): void; // also ends a flight
  seenAt(x: number, y: number): Vector | null; // the place under a pixel, of what is seen there
  planeAt(x: number, y: number): Vector; // in the plane of the target
}

// Radians for a CSS pixel: half a turn for a canvas of 500 pixels.
const TurnSpeed = Math.PI / 500;
const WheelSpeed = 0.0014; // of the logarithm of the height, by pixel
const KeyTurn = Math.PI / 24;
const KeyPan = 40; // CSS pixels
// A hand is not quite still in a click: the model follows from this distance on, CSS pixels.
const StillDistance = 4;

interface Drag {
  pointers: Map<number, [number, number]>;
  pivot: Vector;
  isPan: boolean;
  begin: [number, number];
  isMoving: boolean;
}

const stillDrag = {
  pivot: [0, 0, 0] as Vector,
  isPan: false,
  begin: [0, 0] as [number, number],
  isMoving: false,
};

export function addControls(canvas: HTMLCanvasElement, target: ControlTarget): void {
  const drag: Drag = { pointers: new Map(), ...stillDrag };
  canvas.style.touchAction = "none";
  canvas.addEventListener("contextmenu", (event) => event.preventDefault());
  canvas.addEventListener("pointerdown", (event) => beginDrag(canvas, target, drag, event));
  canvas.addEventListener("pointermove", (event) => moveDrag(canvas, target, drag, event));
  for (const name of ["pointerup", "pointercancel"] as const) {
    canvas.addEventListener(name, (event) => drag.pointers.delete(event.pointerId));
  }
  canvas.addEventListener("wheel", (event) => onWheel(canvas, target, event), { passive: false });
  canvas.addEventListener("keydown", (event) => onKey(canvas, target, event));
}

function at(canvas: HTMLCanvasElement, event: MouseEvent): [number, number] {
  const box = canvas.getBoundingClientRect();
  return [event.clientX - box.left, event.clientY - box.top];
}

function beginDrag(
  canvas: HTMLCanvasElement,
  target: ControlTarget,
  drag: Drag,
  event: PointerEvent,
): void {
  const place = at(canvas, event);
  canvas.setPointerCapture(event.pointerId);
  drag.pointers.set(event.pointerId, place);
  if (drag.pointers.size > 1) return;
  drag.isPan = event.button !== 0 || event.shiftKey;
  drag.begin = place;
  drag.isMoving = false;
  drag.pivot = target.seenAt(...place) ?? target.view().target;
}

function moveDrag(
  canvas: HTMLCanvasElement,
  target: ControlTarget,
  drag: Drag,
  event: PointerEvent,
): void {
  const before = drag.pointers.get(event.pointerId);
  if (!before) return;
  const place = at(canvas, event);
  const moved = Math.hypot(place[0] - drag.begin[0], place[1] - drag.begin[1]);
  drag.isMoving ||= moved > StillDistance || drag.pointers.size > 1;
  if (!drag.isMoving) return;
  const [x, y] = [place[0] - before[0], place[1] - before[1]];
  if (drag.pointers.size > 1) pinch(canvas, target, drag, event.pointerId, place);
  else if (drag.isPan) target.setView(panView(target.view(), x, y, canvas.clientHeight));
  else target.setView(turnView(target.view(), drag.pivot, -x * TurnSpeed, y * TurnSpeed));
  drag.pointers.set(event.pointerId, place);
}

// Two fingers: the middle moves, the distance nears.
function pinch(
  canvas: HTMLCanvasElement,
  target: ControlTarget,
  drag: Drag,
  moved: number,
  place: [number, number],
): void {
  const before = drag.pointers.get(moved);
  const other = [...drag.pointers].find(([pointer]) => pointer !== moved)?.[1];
  if (!before || !other) return;
  const apart = (a: [number, number]): number => Math.hypot(a[0] - other[0], a[1] - other[1]);
  const [x, y] = [(place[0] - before[0]) / 2, (place[1] - before[1]) / 2];
  const panned = panView(target.view(), x, y, canvas.clientHeight);
  target.setView(panned);
  const middle = target.planeAt((place[0] + other[0]) / 2, (place[1] + other[1]) / 2);
  target.setView(zoomView(panned, middle, apart(before) / Math.max(1, apart(place))));
}

function onWheel(canvas: HTMLCanvasElement, target: ControlTarget, event: WheelEvent): void {
  event.preventDefault();
  // Lines and pages as pixels, and no step of more than a notch or two.
  const unit = [1, 16, 100][event.deltaMode] ?? 1;
  const step = Math.max(-240, Math.min(240, event.deltaY * unit));
  const pixel = at(canvas, event);
  const place = target.seenAt(...pixel) ?? target.planeAt(...pixel);
  target.setView(zoomView(target.view(), place, Math.exp(step * WheelSpeed)));
}

function onKey(canvas: HTMLCanvasElement, target: ControlTarget, event: KeyboardEvent): void {
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  const next = viewAfterKey(canvas, target, event);
  if (!next) return;
  event.preventDefault();
  target.setView(next);
}

function viewAfterKey(
  canvas: HTMLCanvasElement,
  target: ControlTarget,
  event: KeyboardEvent,
): View | null {
  const view = target.view();
  const screen = canvas.clientHeight;
  const steps: Record<string, [number, number]> = {
    ArrowLeft: [-1, 0],
    ArrowRight: [1, 0],
    ArrowUp: [0, -1],
    ArrowDown: [0, 1],
  };
  const step = steps[event.key];
  if (!step) return null;
  return event.shiftKey
    ? panView(view, -step[0] * KeyPan, -step[1] * KeyPan, screen)
    : turnView(view, view.target, step[0] * KeyTurn, -step[1] * KeyTurn);
}
