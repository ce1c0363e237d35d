// The list of all quantities that can colour shells and beams. "plain", one colour, is none.
//
// Units are placeholders: no file tells the units of a model. Signs, axes and limits stand in
// docs/results.md.

import type { CaseResults, PageModel } from "../data/page_model";
import type { Quantity } from "./quantity";

const stress = "force/length²";

type Rest = Partial<Omit<Quantity, "id" | "label" | "group" | "symbol" | "unit">>;

// Most quantities are results without sign and without faces: `rest` tells what differs.
function make(
  id: string,
  label: string,
  group: string,
  symbol: string,
  unit: string,
  rest: Rest = {},
): Quantity {
  const usual: Required<Rest> = {
    isSigned: false,
    isCategory: false,
    hasFaces: false,
    hasAverages: false,
    needs: "results",
  };
  return { id, label, group, symbol, unit, ...usual, ...rest };
}

function makeStress(id: string, label: string, group: string, symbol: string): Quantity {
  return make(id, label, group, symbol, stress, {
    isSigned: true,
    hasFaces: true,
    hasAverages: true,
  });
}

function makeResultant(id: string, label: string, group: string, unit: string): Quantity {
  return make(id, label, group, id, unit, { isSigned: true, needs: "corners" });
}

function makeMotion(id: string, label: string, unit: string): Quantity {
  return make(id, label, "Displacement", id, unit, { isSigned: true });
}

function makeCategory(id: string, label: string): Quantity {
  return make(id, label, "Model", "", "", { isCategory: true, needs: "model" });
}

const displacements: Quantity[] = [
  make("u", "displacement", "Displacement", "|u|", "length"),
  makeMotion("ux", "displacement along X", "length"),
  makeMotion("uy", "displacement along Y", "length"),
  makeMotion("uz", "displacement along Z", "length"),
];

export const shellQuantities: readonly Quantity[] = [
  make("mises", "von Mises stress", "Stress", "σv", stress, { hasFaces: true, hasAverages: true }),
  makeStress("s1", "larger principal stress", "Stress", "σ1"),
  makeStress("s2", "smaller principal stress", "Stress", "σ2"),
  make("membrane", "membrane stress, von Mises", "Stress", "σv,m", stress, { hasAverages: true }),
  makeStress("SX", "stress along global X", "Stress, global axes", "SX"),
  makeStress("SY", "stress along global Y", "Stress, global axes", "SY"),
  makeStress("SZ", "stress along global Z", "Stress, global axes", "SZ"),
  makeStress("TXY", "shear stress, global XY", "Stress, global axes", "TXY"),
  makeStress("TXZ", "shear stress, global XZ", "Stress, global axes", "TXZ"),
  makeStress("TYZ", "shear stress, global YZ", "Stress, global axes", "TYZ"),
  makeStress("sx", "stress along element x", "Stress, element axes", "σx"),
  makeStress("sy", "stress along element y", "Stress, element axes", "σy"),
  makeStress("txy", "shear stress, element xy", "Stress, element axes", "τxy"),
  ...displacements,
  makeMotion("rx", "rotation about X", "rad"),
  makeMotion("ry", "rotation about Y", "rad"),
  makeMotion("rz", "rotation about Z", "rad"),
  makeResultant("nx", "membrane force along x", "Forces, element axes", "force/length"),
  makeResultant("ny", "membrane force along y", "Forces, element axes", "force/length"),
  makeResultant("nxy", "membrane shear force", "Forces, element axes", "force/length"),
  makeResultant("mx", "moment of σx", "Forces, element axes", "force·length/length"),
  makeResultant("my", "moment of σy", "Forces, element axes", "force·length/length"),
  makeResultant("mxy", "twisting moment", "Forces, element axes", "force·length/length"),
  makeResultant("qx", "shear force, at the centre", "Forces, element axes", "force/length"),
  makeResultant("qy", "shear force, at the centre", "Forces, element axes", "force/length"),
  makeCategory("thickness", "thickness"),
  makeCategory("material", "material"),
  makeCategory("part", "part"),
  makeCategory("finding", "finding"),
  makeCategory("side", "front and back"),
];

function makeForce(id: string, label: string, symbol: string, unit: string): Quantity {
  return make(id, label, "Section force", symbol, unit, { isSigned: true });
}

// Ids differ from those of shells where the quantity does.
export const beamQuantities: readonly Quantity[] = [
  make("beamSize", "size of axial and bending stress", "Stress", "|σ|", stress),
  make("detailMiddle", "von Mises stress, detail model at mid-length", "Stress", "σv", stress),
  make("detail", "von Mises stress, detail model", "Stress", "σv", stress, { needs: "details" }),
  make("beamStress", "axial and bending stress", "Stress", "σ", stress, {
    isSigned: true,
  }),
  makeForce("beamN", "axial force", "N", "force"),
  makeForce("beamVy", "shear force along y", "Vy", "force"),
  makeForce("beamVz", "shear force along z", "Vz", "force"),
  makeForce("beamT", "torque", "T", "force·length"),
  makeForce("beamMy", "bending moment about y", "My", "force·length"),
  makeForce("beamMz", "bending moment about z", "Mz", "force·length"),
  ...displacements,
  makeCategory("section", "section"),
  makeCategory("material", "material"),
  makeCategory("part", "part"),
  makeCategory("finding", "finding"),
];

// The section force in CaseResults.forces that a quantity shows; -1: none.
export function forceIndex(id: string): number {
  return ["beamN", "beamVy", "beamVz", "beamT", "beamMy", "beamMz"].indexOf(id);
}

export function findShellQuantity(id: string): Quantity | null {
  return shellQuantities.find((quantity) => quantity.id === id) ?? null;
}

export function findBeamQuantity(id: string): Quantity | null {
  return beamQuantities.find((quantity) => quantity.id === id) ?? null;
}

// What this page can show of its shells, in any of its cases.
export function listShellQuantities(model: PageModel): Quantity[] {
  if (model.shells.count + model.triangles.count === 0) return [];
  const has = listContents(model);
  return shellQuantities.filter((quantity) => {
    if (quantity.id === "finding") return hasElementFindings(model, ["shell", "triangle"]);
    if (quantity.id === "qx" || quantity.id === "qy") {
      return has.corners && model.shells.count > 0;
    }
    return has[quantity.needs];
  });
}

// results: of the case that is shown; null: none is.
export function listBeamQuantities(model: PageModel, results: CaseResults | null): Quantity[] {
  if (model.beams.count === 0) return [];
  const has = listContents(model);
  return beamQuantities.filter((quantity) => {
    if (quantity.id === "finding") return hasElementFindings(model, ["beam"]);
    if (quantity.id === "detailMiddle") return results !== null && results.detailStresses !== null;
    return has[quantity.needs];
  });
}

// Whether the page has the stresses of elements by themselves, of any case.
export function hasOwnValues(model: PageModel): boolean {
  return listContents(model).corners;
}

function listContents(model: PageModel): Record<Quantity["needs"], boolean> {
  const has = (name: "results" | "corners" | "details") =>
    model.cases.some((row) => row.blocks[name] !== undefined);
  return { model: true, results: has("results"), corners: has("corners"), details: has("details") };
}

function hasElementFindings(model: PageModel, kinds: string[]): boolean {
  return model.findings.some((finding) =>
    finding.elements.some((element) => kinds.includes(element.kind)),
  );
}

// Which of two values counts as higher: of signed ones the larger by size; of the principal
// stresses the higher tension and the higher compression, as `kvx top` ranks them.
export function rankOf(quantity: Quantity): (value: number) => number {
  const ranks = {
    highest: (value: number) => value,
    lowest: (value: number) => -value,
    size: Math.abs,
  };
  return ranks[rankingOf(quantity)];
}

export function rankingOf(quantity: Quantity): "highest" | "lowest" | "size" {
  if (quantity.id === "s2") return "lowest";
  return quantity.isSigned && quantity.id !== "s1" ? "size" : "highest";
}
