// The values of a quantity along beams (fields/quantities.ts lists them), as cubics over
// s = x / length.

import type { CaseResults, PageModel } from "../data/page_model";
import { beamCategory } from "./categories";
import { displacementValue } from "./displacement_values";
import { findBeamQuantity, forceIndex } from "./quantities";
import type { BeamField } from "./quantity";
import type { FieldSources } from "./shell_field";
import { computedDigits, fileDigits } from "./ticks";

const My = 4;
const Mz = 5;

// Null for "plain", for unknown ids, for "detail" (computeDetailField), and where what the quantity
// needs is missing.
export function computeBeamField(
  id: string,
  sources: Pick<FieldSources, "model" | "results">,
): BeamField | null {
  const quantity = findBeamQuantity(id);
  const { model, results } = sources;
  if (quantity === null || quantity.needs === "details") return null;
  const size = 4 * model.beams.count;
  const field: BeamField = {
    quantity,
    isSize: id === "beamSize",
    isAtMiddle: id === "detailMiddle",
    a: new Float32Array(size),
    b: new Float32Array(size),
    c: new Float32Array(size),
    digits: id === "detailMiddle" ? fileDigits : computedDigits,
  };
  if (quantity.isCategory) {
    beamCategory(id, model).forEach((row, beam) => (field.a[4 * beam] = row));
    return field;
  }
  if (results === null) return null;
  if (id === "detailMiddle") {
    if (results.detailStresses === null) return null;
    results.detailStresses.forEach((value, beam) => (field.a[4 * beam] = value));
  } else if (id === "beamStress" || id === "beamSize") {
    fillStress(field, model, results);
  } else if (forceIndex(id) >= 0) {
    fillForce(field, results, forceIndex(id));
  } else {
    fillDisplacement(field, id, model, results);
  }
  return field;
}

function fillForce(field: BeamField, results: CaseResults, force: number): void {
  for (let i = 0; i < field.a.length; ++i) {
    field.a[i] = results.forces[forceAt(i, force)];
  }
}

// Where coefficient i % 4 of a force of beam i / 4 stands.
function forceAt(i: number, force: number): number {
  return 24 * (i >> 2) + 4 * force + (i & 3);
}

// N/A + My z/Iy - Mz y/Iz, with y and z from the centroid. NaN without a section table.
function fillStress(field: BeamField, model: PageModel, results: CaseResults): void {
  for (let i = 0; i < field.a.length; ++i) {
    const section = model.sections[model.beams.section[i >> 2]];
    field.a[i] = results.forces[forceAt(i, 0)] / (section?.area ?? NaN);
    field.b[i] = results.forces[forceAt(i, My)] / (section?.Iy ?? NaN);
    field.c[i] = -results.forces[forceAt(i, Mz)] / (section?.Iz ?? NaN);
  }
}

// A straight line between the values of both ends.
function fillDisplacement(
  field: BeamField,
  id: string,
  model: PageModel,
  results: CaseResults,
): void {
  const value = displacementValue(id, results.displacements);
  for (let beam = 0; beam < model.beams.count; ++beam) {
    const first = value(model.beams.nodes[2 * beam]);
    field.a[4 * beam] = first;
    field.a[4 * beam + 1] = value(model.beams.nodes[2 * beam + 1]) - first;
  }
}
