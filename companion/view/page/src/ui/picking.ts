// Clicks in the picture: one picks what is there, two go there. A drag is no click.

import type { Actions } from "./actions";
import type { Scene } from "../scene/scene";

const MostMove = 4; // CSS pixels between pressing and letting go

export function listenToPicking(canvas: HTMLCanvasElement, scene: Scene, actions: Actions): void {
  let pressed: [number, number] | null = null;
  canvas.addEventListener("pointerdown", (event) => {
    pressed = event.button === 0 && event.isPrimary ? [event.clientX, event.clientY] : null;
  });
  canvas.addEventListener("click", (event) => {
    if (pressed === null) return;
    const moved = Math.hypot(event.clientX - pressed[0], event.clientY - pressed[1]);
    if (moved > MostMove || event.detail > 1) return;
    const found = scene.pick(event.offsetX, event.offsetY);
    const picked = found === null ? null : { kind: found.kind, number: found.number };
    actions.change({ picked });
  });
  canvas.addEventListener("dblclick", (event) => {
    const found = scene.pick(event.offsetX, event.offsetY);
    if (found !== null) actions.goTo(found.kind, found.number, found.place);
  });
}
