// What is shown, as the scene takes it.

import type { Shown } from "./shown";
import type { Drawing } from "../scene/scene";

export function drawingOf(shown: Shown, isDark: boolean): Drawing {
  return {
    state: shown.state,
    scale: shown.scale,
    results: shown.results,
    loads: shown.loads ?? NoLoads,
    details: shown.details,
    detailField: shown.detailField,
    shellField: shown.shellField,
    beamField: shown.beamField,
    range: shown.colors?.range ?? [0, 1],
    colors: shown.colors?.colors ?? NoColors,
    isDark,
    isHidden: shown.hidden,
  };
}

const NoColors = new Uint8Array(3 * 256);

const NoLoads: Drawing["loads"] = {
  forceNodes: new Int32Array(0),
  forces: new Float32Array(0),
  prescribedNodes: new Int32Array(0),
  prescribedDofs: new Int32Array(0),
  prescribedValues: new Float32Array(0),
  shellLoads: new Int32Array(0),
  shellPressures: new Float32Array(0),
  triangleLoads: new Int32Array(0),
  trianglePressures: new Float32Array(0),
  beamLoads: new Int32Array(0),
  lineLoads: new Float32Array(0),
};
