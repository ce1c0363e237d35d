// Counts the draw calls of a frame as three issues them.

import type { Mesh } from "three";
import type { Stage } from "./stage";

export interface DrawCounter {
  shells: number; // faces with the edges of elements, and the outline of the deformed shape
  beams: number; // sections, or detail models; not the lines of thin sections
}

export function createCounter(): DrawCounter {
  return { shells: 0, beams: 0 };
}

// Of what the scene has now: to be called again when detail models have come.
export function countCalls(counter: DrawCounter, stage: Stage): void {
  const count = (mesh: Mesh, of: "shells" | "beams"): void => {
    mesh.onAfterRender = () => {
      ++counter[of];
    };
  };
  count(stage.shells.mesh, "shells");
  count(stage.outline.deformed.mesh, "shells");
  for (const section of stage.beams.sections) count(section.mesh, "beams");
  if (stage.details) count(stage.details.surface.mesh, "beams");
}
