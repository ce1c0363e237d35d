// The values of a quantity at the corners of shells (fields/quantities.ts lists them).

import { countCorners, listCornerNodes } from "../data/corners";
import type { CaseResults, CornerStresses, DetailModels, PageModel } from "../data/page_model";
import type { FaceChoice } from "../state";
import { shellCategory } from "./categories";
import { displacementIds, displacementValue } from "./displacement_values";
import { findBeamQuantity, findShellQuantity, rankOf } from "./quantities";
import { faceNames } from "./quantity";
import type { Quantity, ShellField } from "./quantity";
import { computeResultant } from "./shell_resultants";
import {
  averagedMises,
  averagedStress,
  globalStressIds,
  ownStress,
  takeLarger,
} from "./shell_stress";
import type { Face } from "./shell_stress";
import { computedDigits, fileDigits } from "./ticks";

// What fields are made of; null: not in the page, or not yet read.
export interface FieldSources {
  model: PageModel;
  results: CaseResults | null;
  corners: CornerStresses | null;
  details: DetailModels | null;
}

export interface FaceOptions {
  face: FaceChoice;
  isAveraged: boolean;
}

// Null for "plain", for unknown ids, and where what the quantity needs is missing. Stresses by
// element need the corners.
export function computeShellField(
  id: string,
  sources: FieldSources,
  options: FaceOptions,
): ShellField | null {
  const quantity = findShellQuantity(id);
  if (quantity === null) return null;
  if (quantity.hasAverages) return computeStressField(quantity, sources, options);
  if (id === "side") return computeSideField(quantity, sources.model);
  const values = computeValues(quantity, sources);
  if (values === null) return null;
  const digits = isOfFile(quantity.id, false, "upper") ? fileDigits : computedDigits;
  return { quantity, upper: values, lower: values, faces: null, digits };
}

// The colours of the detail models: von Mises stress by corner of their shells.
export function computeDetailField(
  details: DetailModels,
  options: Pick<FaceOptions, "face">,
): ShellField | null {
  const quantity = findBeamQuantity("detail");
  if (quantity === null) return null;
  return combineFaces(quantity, options.face, true, (face) =>
    averagedMises(details.stresses, face),
  );
}

// Whether the values are numbers of the solver, rounded once to six digits; all others are made of
// such numbers here.
function isOfFile(id: string, isAveraged: boolean, face: FaceChoice): boolean {
  if (displacementIds.includes(id) || id === "qx" || id === "qy") return true;
  if (face === "middle" || id === "membrane") return false;
  return isAveraged
    ? id === "mises" || id === "detail" || globalStressIds.includes(id)
    : ["sx", "sy", "txy"].includes(id);
}

function computeStressField(
  quantity: Quantity,
  sources: FieldSources,
  options: FaceOptions,
): ShellField | null {
  const { model, results, corners } = sources;
  const id = quantity.id === "membrane" ? "mises" : quantity.id;
  const face = quantity.id === "membrane" ? "middle" : options.face;
  if (options.isAveraged) {
    if (results === null) return null;
    return combineFaces(quantity, face, true, (one) =>
      averagedStress(id, results.shells, one, model),
    );
  }
  if (corners === null) return null;
  return combineFaces(quantity, face, false, (one) => ownStress(id, corners, one, model));
}

// stressOf: the values on one face.
function combineFaces(
  quantity: Quantity,
  face: FaceChoice,
  isAveraged: boolean,
  stressOf: (face: Face) => Float32Array,
): ShellField {
  const digits = isOfFile(quantity.id, isAveraged, face) ? fileDigits : computedDigits;
  if (face === "visible") {
    return { quantity, upper: stressOf("upper"), lower: stressOf("lower"), faces: null, digits };
  }
  if (face === "larger") {
    const larger = takeLarger(stressOf("upper"), stressOf("lower"), rankOf(quantity));
    const { values, faces } = larger;
    return { quantity, upper: values, lower: values, faces, digits };
  }
  const values = stressOf(face);
  const faces = new Uint8Array(values.length).fill(faceNames.indexOf(face));
  return { quantity, upper: values, lower: values, faces, digits };
}

// Front and back have a colour each.
function computeSideField(quantity: Quantity, model: PageModel): ShellField {
  const upper = new Float32Array(countCorners(model));
  return { quantity, upper, lower: upper.slice().fill(1), faces: null, digits: fileDigits };
}

// The values of quantities without faces.
function computeValues(quantity: Quantity, sources: FieldSources): Float32Array | null {
  const { model, results, corners } = sources;
  if (quantity.isCategory) return spreadOverCorners(model, shellCategory(quantity.id, model));
  if (quantity.needs === "corners") {
    return corners === null ? null : computeResultant(quantity.id, corners, model);
  }
  if (results === null) return null;
  const value = displacementValue(quantity.id, results.displacements);
  const nodes = listCornerNodes(model);
  const values = new Float32Array(nodes.length);
  for (let corner = 0; corner < nodes.length; ++corner) values[corner] = value(nodes[corner]);
  return values;
}

// values: of the elements, four-node shells first.
function spreadOverCorners(model: PageModel, values: Int32Array): Float32Array {
  const spread = new Float32Array(countCorners(model));
  let at = 0;
  for (let element = 0; element < values.length; ++element) {
    const end = at + (element < model.shells.count ? 4 : 3);
    spread.fill(values[element], at, end);
    at = end;
  }
  return spread;
}
