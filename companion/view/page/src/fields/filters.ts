// What the filters hide: elements by rows of thickness, material, section and part, and by groups of
// the deck.
//
// An element may be in several groups, which other filters do not know: it is hidden when all groups
// that it is in are. So a group that is shown is shown whole.

import type { Kind, PageModel, ShellTable } from "../data/page_model";
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
  const findShells = (table: ShellTable, kind: Kind) => {
    const ungrouped = findUngrouped(model, kind, table.count, hidden.groups);
    return mark(
      table.count,
      (e) =>
        thicknesses.has(table.thickness[e]) ||
        materials.has(table.material[e]) ||
        parts.has(table.part[e]) ||
        ungrouped?.[e] === 1,
    );
  };
  const { beams } = model;
  const ungroupedBeams = findUngrouped(model, "beam", beams.count, hidden.groups);
  return {
    shells: findShells(model.shells, "shell"),
    triangles: findShells(model.triangles, "triangle"),
    beams: mark(
      beams.count,
      (beam) =>
        sections.has(beams.section[beam]) ||
        materials.has(beams.material[beam]) ||
        parts.has(beams.part[beam]) ||
        ungroupedBeams?.[beam] === 1,
    ),
  };
}

// 1: in no group that is shown; row -1 of the hidden groups stands for elements of no group. Null:
// no group is hidden.
function findUngrouped(
  model: PageModel,
  kind: Kind,
  count: number,
  hidden: readonly number[],
): Uint8Array | null {
  if (model.origin === null || hidden.length === 0) return null;
  const rows = new Set(hidden);
  const isGrouped = new Uint8Array(count);
  const ungrouped = new Uint8Array(count).fill(1);
  model.origin.groups.forEach((group, row) => {
    for (const element of group.members[kind]) {
      isGrouped[element] = 1;
      if (!rows.has(row)) ungrouped[element] = 0;
    }
  });
  if (!rows.has(-1)) {
    for (let element = 0; element < count; ++element) {
      if (isGrouped[element] === 0) ungrouped[element] = 0;
    }
  }
  return ungrouped;
}

function mark(count: number, isHidden: (element: number) => boolean): Uint8Array {
  const marks = new Uint8Array(count);
  for (let element = 0; element < count; ++element) {
    if (isHidden(element)) marks[element] = 1;
  }
  return marks;
}
