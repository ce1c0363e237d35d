// Quantities that are rows of a table or one of a few kinds: which row each element has, and what
// the rows are called.

import type { Finding, Kind, PageModel } from "../data/page_model";
import { formatPlain } from "./ticks";

export interface CategoryRow {
  row: number; // value in the field
  label: string; // may hold text of the model
}

const severities: Finding["severity"][] = ["hint", "warning", "error"];

// [shells + triangles], four-node shells first. Thickness rows for "thickness" and so on; for
// "finding" 0, or 1, 2, 3 for the highest severity: hint, warning, error.
export function shellCategory(id: string, model: PageModel): Int32Array {
  if (id === "finding") {
    return joinTables(findSeverities(model, "shell"), findSeverities(model, "triangle"));
  }
  const column = id as "thickness" | "material" | "part";
  return joinTables(model.shells[column], model.triangles[column]);
}

export function beamCategory(id: string, model: PageModel): Int32Array {
  if (id === "finding") return findSeverities(model, "beam");
  return model.beams[id as "section" | "material" | "part"];
}

function joinTables(shells: Int32Array, triangles: Int32Array): Int32Array {
  const joined = new Int32Array(shells.length + triangles.length);
  joined.set(shells);
  joined.set(triangles, shells.length);
  return joined;
}

function findSeverities(model: PageModel, kind: Exclude<Kind, "node">): Int32Array {
  const tables = { shell: model.shells, triangle: model.triangles, beam: model.beams };
  const found = new Int32Array(tables[kind].count);
  for (const finding of model.findings) {
    const severity = severities.indexOf(finding.severity) + 1;
    for (const element of finding.elements) {
      // Numbers beyond the table, which findings may name, are ignored by the array.
      if (element.kind === kind && !(found[element.number] >= severity)) {
        found[element.number] = severity;
      }
    }
  }
  return found;
}

// All rows that a category can have, in order.
export function listCategories(id: string, model: PageModel): CategoryRow[] {
  switch (id) {
    case "thickness":
      return model.thicknesses.map((value, row) => ({ row, label: formatPlain(value) }));
    case "material":
      return model.materials.map(({ E }, row) => ({ row, label: `${row}: E ${formatPlain(E)}` }));
    case "section":
      return model.sections.map((_, row) => ({ row, label: describeSection(model, row) }));
    case "part":
      return Array.from({ length: model.parts }, (_, row) => ({ row, label: `part ${row}` }));
    case "finding":
      return ["none", ...severities].map((label, row) => ({ row, label }));
    default:
      return ["front, upper face", "back, lower face"].map((label, row) => ({ row, label }));
  }
}

// "T 0, Hw 120, Tw 8, Bf 80, Tf 10, offset 5"
export function describeSection(model: PageModel, row: number): string {
  const section = model.sections[row];
  if (section === undefined) return "none";
  const offset = section.offset !== 0 ? `offset ${formatPlain(section.offset)}` : "";
  const marks = [section.mirrored ? "mirrored" : "", offset];
  const names = [section.name, section.origin ?? ""];
  const parts = [`${section.type} ${section.index}`, ...names, section.sizes, ...marks];
  return parts.filter((part) => part !== "").join(", ");
}
