// What the filters hide: elements by rows of thickness, material, section and part.

import type { PageModel, ShellTable } from "../data/page_model";
import type { ViewState } from "../state";

// 1: hidden. By element of each table.
export interface Hidden {
  shells: Uint8Array;
  triangles: Uint8Array;
  beams: Uint8Array;
}

// Row -1 stands for elements without a row, such as beams without a section.
export function findHidden(model: PageModel, hidden: ViewState["hidden"]): Hidden {
  const thicknesses = new Set(hidden.thicknesses);
  const materials = new Set(hidden.materials);
  const sections = new Set(hidden.sections);
  const parts = new Set(hidden.parts);
  const findShells = (table: ShellTable) =>
    mark(
      table.count,
      (e) =>
        thicknesses.has(table.thickness[e]) ||
        materials.has(table.material[e]) ||
        parts.has(table.part[e]),
    );
  const { beams } = model;
  return {
    shells: findShells(model.shells),
    triangles: findShells(model.triangles),
    beams: mark(
      beams.count,
      (beam) =>
        sections.has(beams.section[beam]) ||
        materials.has(beams.material[beam]) ||
        parts.has(beams.part[beam]),
    ),
  };
}

function mark(count: number, isHidden: (element: number) => boolean): Uint8Array {
  const marks = new Uint8Array(count);
  for (let element = 0; element < count; ++element) {
    if (isHidden(element)) marks[element] = 1;
  }
  return marks;
}
