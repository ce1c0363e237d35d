// What the card says of a shell element.

import { firstCorner } from "../data/corners";
import type { CaseLoads, PageModel } from "../data/page_model";
import {
  describeFindings,
  indicesOf,
  nameCase,
  nameRow,
  rowOfFile,
  rowOfMaterial,
  rowOfNodes,
  rowsOfOrigin,
  withFaces,
} from "./describe_parts";
import type { PickGroup, PickRow, PickSources } from "./describe_pick";
import { resultantIds, resultantsOf } from "./shell_resultants";
import { planeEquivalentStress } from "./stress_tensor";
import { fileDigits, formatComputed, formatFile, formatPlain, formatSure } from "./ticks";

type ShellKind = "shell" | "triangle";

export function describeShell(
  sources: PickSources,
  kind: ShellKind,
  number: number,
): PickGroup[] {
  const { model, loads, results, corners } = sources;
  const table = kind === "shell" ? model.shells : model.triangles;
  const nodes = [...table.nodes.subarray(table.corners * number, table.corners * (number + 1))];
  const first = firstCorner(model, kind, number);
  const averaged = (corner: number) => {
    const shells = results?.shells;
    const row = shells?.rows[corner] ?? -1;
    return describeFaces(formatFile, shells?.upperMises[row], shells?.lowerMises[row]);
  };
  const own = (corner: number) =>
    describeFaces(
      formatComputed,
      ownMises(corners?.upper, corner),
      ownMises(corners?.lower, corner),
    );
  const stressSize = (corner: number) => {
    const row = results?.shells.rows[corner] ?? -1;
    const sizes = [results?.shells.upperMises[row], results?.shells.lowerMises[row]];
    return Math.max(...sizes.map((size) => size ?? NaN));
  };
  const byNode = (text: (corner: number) => string): PickRow[] =>
    nodes.map((node, k) => ({ name: `node ${node}`, value: text(first + k) }));
  const ownRows = byNode(own).slice(0, countOwnCorners(kind));
  return [
    { title: "", rows: describeShape(model, kind, number, nodes) },
    describeShown(sources, byNode, stressSize),
    { title: "Pressure", rows: describePressure(loads, kind, number) },
    { title: "von Mises stress, averaged", rows: withFaces(results && byNode(averaged)) },
    { title: "von Mises stress, by element", rows: withFaces(corners && ownRows) },
    describeResultants(sources, kind, number),
    describeFindings(model, kind, number),
  ];
}

function describeShape(
  model: PageModel,
  kind: ShellKind,
  number: number,
  nodes: number[],
): PickRow[] {
  const table = kind === "shell" ? model.shells : model.triangles;
  const row = table.thickness[number];
  const thickness = model.thicknesses[row];
  const text = thickness === undefined ? "does not exist" : formatPlain(thickness);
  return [
    rowOfFile(model, kind, number),
    ...rowsOfOrigin(model, kind, number),
    rowOfNodes(model, nodes),
    { name: "thickness", value: `${text} ${nameRow(row, model.origin?.thicknesses)}` },
    rowOfMaterial(model, table.material[number]),
    { name: "part", value: String(table.part[number]) },
  ];
}

function describeFaces(format: (value: number) => string, upper = NaN, lower = NaN): string {
  return `${format(upper)}, ${format(lower)}`;
}

function ownMises(stresses: Float32Array | undefined, corner: number): number {
  if (stresses === undefined) return NaN;
  const at = 3 * corner;
  return planeEquivalentStress(stresses[at], stresses[at + 1], stresses[at + 2]);
}

// What colours the element, unless the card has it anyway. stressSize: of the stresses at a corner,
// of which a stress in another direction is a sum.
function describeShown(
  { model, shellField: field, results, envelopes }: PickSources,
  byNode: (text: (corner: number) => string) => PickRow[],
  stressSize: (corner: number) => number,
): PickGroup {
  if (field === null || field.quantity.isCategory) return { title: "", rows: [] };
  // Envelopes have no results of their own.
  if (results !== null && field.quantity.id === "mises") return { title: "", rows: [] };
  const { upperCases, lowerCases } = envelopes?.shell ?? {};
  const { quantity, upper, lower, digits } = field;
  const text = (corner: number) => {
    const isOfFile = digits === fileDigits;
    const format = (value: number) => (isOfFile ? formatFile(value) : formatSure(value, size));
    const size = quantity.hasAverages ? stressSize(corner) : 0;
    const one = `${format(upper[corner])}${nameCase(model, upperCases?.[corner])}`;
    if (upper === lower) return one;
    return `${one}, ${format(lower[corner])}${nameCase(model, lowerCases?.[corner])}`;
  };
  const rows = byNode(text);
  return { title: `Shown: ${quantity.label}`, rows: upper === lower ? rows : withFaces(rows) };
}

// A row for each row of loads: the pressure, or those at the first three nodes.
function describePressure(loads: CaseLoads | null, kind: ShellKind, number: number): PickRow[] {
  if (loads === null) return [];
  const elements = kind === "shell" ? loads.shellLoads : loads.triangleLoads;
  const pressures = kind === "shell" ? loads.shellPressures : loads.trianglePressures;
  return indicesOf(elements, number).map((at) => {
    const values = [...pressures.subarray(3 * at, 3 * at + 3)].map(formatFile);
    const isUniform = values.every((value) => value === values[0]);
    return isUniform
      ? { name: "along the normal", value: values[0] }
      : { name: "at nodes 1, 2, 3", value: values.join(", ") };
  });
}

// A triangle has the stresses of its first corner at all three, as in the result files: the card
// shows one.
function countOwnCorners(kind: ShellKind): number {
  return kind === "shell" ? 4 : 1;
}

// Forces and moments at the corners, in the order of the nodes; shear at the centre.
function describeResultants(
  sources: PickSources,
  kind: ShellKind,
  number: number,
): PickGroup {
  const { model, corners } = sources;
  const where = kind === "shell" ? "by node" : "at the first node";
  const title = `Forces and moments ${where}, element axes`;
  if (corners === null) return { title, rows: [] };
  const rows: PickRow[] = [];
  for (const id of resultantIds) {
    const isShear = id === "qx" || id === "qy";
    if (isShear && kind === "triangle") continue;
    const values = resultantsOf(id, corners, model, kind, number).slice(0, countOwnCorners(kind));
    rows.push(
      isShear
        ? { name: `${id}, centre`, value: formatFile(values[0].value) }
        : { name: id, value: values.map((sum) => formatSure(sum.value, sum.size)).join(", ") },
    );
  }
  return { title, rows };
}
