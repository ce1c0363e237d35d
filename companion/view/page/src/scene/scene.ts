// What the user interface asks of the picture, and what the picture tells it.

import type { CaseLoads, CaseResults, DetailModels, Kind } from "../data/page_model";
import type { BeamField, ShellField } from "../fields/quantity";
import type { Camera, ViewState } from "../state";

export interface Picked {
  kind: Kind;
  number: number;
  place: [number, number, number]; // global, undeformed: of the node, or the point that was hit
}

// Everything that is drawn at a moment. Colours and range are settled by the caller, so that legend
// and picture cannot differ.
export interface Drawing {
  state: ViewState;
  scale: number; // of displacements, the automatic one settled
  results: CaseResults | null;
  loads: CaseLoads;
  details: DetailModels | null; // drawn in place of the beams where it is not null
  detailField: ShellField | null; // by corner of the detail shells
  shellField: ShellField | null; // null: one colour
  beamField: BeamField | null;
  range: [number, number]; // of the colour map
  colors: Uint8Array; // [256 x 3], the colour map, bands already in it
  isDark: boolean;
  isHidden: { shells: Uint8Array; triangles: Uint8Array; beams: Uint8Array }; // 1: filtered out
}

// How far sheets that lie on the canvas reach from its edges, CSS pixels.
export interface Insets {
  left: number;
  right: number;
  top: number;
  bottom: number;
}

export interface Scene {
  // Shows the drawing; cheap where only a part of it differs from the last one.
  show(drawing: Drawing): void;
  // What is seen at a place of the canvas, CSS pixels from its upper left corner; null: nothing.
  // Nodes within 8 pixels win over beams, beams over shells.
  pick(x: number, y: number): Picked | null;
  // Where a place is on the canvas, CSS pixels; deformed: as it is drawn.
  project(place: [number, number, number]): [number, number];
  projectNode(node: number): [number, number]; // as it is drawn, deformed
  camera(): Camera;
  setCamera(camera: Camera, isFlight: boolean): void; // isFlight: in some steps
  // All that is shown, from where the camera looks, or from another direction.
  fit(from?: Pick<Camera, "direction" | "up">): void;
  // size: of what should be seen around the place. element: it comes to the middle, as it is drawn,
  // and the view turns if something hides it; around a beam some of its lengths are seen.
  fly(
    place: [number, number, number],
    size: number,
    element?: { kind: Kind; number: number },
  ): void;
  picture(width: number, height: number): Promise<Blob>; // PNG
  onCameraMoved(call: () => void): void;
  drawCalls(): { shells: number; beams: number }; // of the last frame
  resize(): void;
  // What fit and fly leave free; a view that shows all is fitted anew.
  setInsets(insets: Insets): void;
}
