// What the page shows at the moment. Everything that a person can set is here, and nothing else
// holds it: controls write it, the scene and the texts follow it, the address carries it.

import type { Kind } from "./data/page_model";

export type FaceChoice = "upper" | "lower" | "larger" | "middle" | "visible";
export type Camera = {
  // All lengths in model units, global axes.
  target: [number, number, number];
  direction: [number, number, number]; // from the target to the eye, unit length
  up: [number, number, number];
  height: number; // of the visible field at the target
};

export interface ViewState {
  case: number; // row of PageModel.cases; -1: the envelope of all of them
  // What colours the shells and beams: ids of fields/quantities.ts; "plain": one colour.
  shellQuantity: string;
  beamQuantity: string;
  face: FaceChoice;
  isAveraged: boolean; // false: elements by themselves

  scale: number | null; // of displacements; null: the automatic one
  isAnimated: boolean;

  shows: {
    shells: boolean;
    beams: boolean;
    edges: boolean; // of elements
    outline: boolean; // of the undeformed structure
    supports: boolean;
    loads: boolean;
    reactions: boolean;
    freeEdges: boolean;
    normals: boolean; // front and back in two colours
    findings: boolean;
    diagrams: boolean; // of the beam quantity, if it is a section force
    shading: boolean;
    axes: boolean;
  };

  // Rows that are hidden.
  hidden: {
    thicknesses: number[];
    materials: number[];
    sections: number[];
    parts: number[];
    groups: number[]; // of the deck
  };

  // The clipping plane: keeps what lies on its negative side. axis "none": no plane.
  clip: { axis: "none" | "x" | "y" | "z"; share: number; isFlipped: boolean }; // share 0 .. 1

  map: string; // name of a colour map; "auto": by the quantity
  bands: number; // 0: continuous
  range: [number, number] | null; // of the legend; null: that of what is shown
  hasSameLimits: boolean; // where range is null: that of all load cases

  camera: Camera | null; // null: all of the model in the standard view
  isOrthographic: boolean;
  picked: { kind: Kind; number: number } | null;
  theme: "auto" | "light" | "dark";
  isPanelOpen: boolean;
}

// What a page shows at first; a model alone, without results, is coloured by its thicknesses.
export function defaultState(shellQuantity: string, beamQuantity: string): ViewState {
  return {
    case: 0,
    shellQuantity,
    beamQuantity,
    face: "larger",
    isAveraged: true,
    scale: null,
    isAnimated: false,
    shows: {
      shells: true,
      beams: true,
      edges: true,
      outline: true,
      supports: true,
      loads: false,
      reactions: false,
      freeEdges: false,
      normals: false,
      findings: false,
      diagrams: false,
      shading: true,
      axes: true,
    },
    hidden: { thicknesses: [], materials: [], sections: [], parts: [], groups: [] },
    clip: { axis: "none", share: 0.5, isFlipped: false },
    map: "auto",
    bands: 10,
    range: null,
    hasSameLimits: false,
    camera: null,
    isOrthographic: false,
    picked: null,
    theme: "auto",
    isPanelOpen: true,
  };
}
