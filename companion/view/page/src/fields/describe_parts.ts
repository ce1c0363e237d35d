// Rows that the descriptions of nodes, elements and beams have in common.

import type { Kind, PageModel } from "../data/page_model";
import type { PickGroup, PickRow } from "./describe_pick";
import { formatFile, formatPlain } from "./ticks";

export const forceNames = ["Fx", "Fy", "Fz", "Mx", "My", "Mz"];
export const dofNames = ["ux", "uy", "uz", "rx", "ry", "rz"];

// The line of an element or node in the model file; 0: not known.
export function lineOf(model: PageModel, kind: Kind, number: number): number {
  const lines = model.lines[kind];
  if (lines !== null) return lines[number] ?? 0;
  const first = model.firstLines[kind];
  return first > 0 ? first + number : 0;
}

// "row 12, line 45 of fem_solving.txt"
export function rowOfFile(model: PageModel, kind: Kind, number: number): PickRow {
  const line = lineOf(model, kind, number);
  const place = line > 0 ? `, line ${line} of ${model.file}` : "";
  return { name: "in the file", value: `row ${number}${place}` };
}

// "CQUAD4 4711"; empty: the model was not imported, or has no such element.
export function nameInDeck({ origin }: PageModel, kind: Kind, number: number): string {
  const numberInDeck = origin?.numbers[kind][number];
  if (origin === null || numberInDeck === undefined) return "";
  const type = kind === "node" ? "node" : (origin.types[origin.typeRows[kind][number]] ?? "element");
  return `${type} ${numberInDeck}`;
}

// "in deck.bdf": "CQUAD4 4711", and the groups of the deck; none: the model was not imported.
export function rowsOfOrigin(model: PageModel, kind: Kind, number: number): PickRow[] {
  const { origin } = model;
  if (origin === null) return [];
  const rows = [{ name: `in ${origin.source}`, value: nameInDeck(model, kind, number) }];
  const groups = origin.groups.filter((group) => group.members[kind].includes(number));
  if (groups.length > 0) {
    rows.push({ name: "groups", value: groups.map((group) => group.name).join(", ") });
  }
  return rows;
}

// "0, 1, 4, 3", of an imported model "0, 1, 4, 3 (in the deck 101, 102, 105, 104)".
export function rowOfNodes({ origin }: PageModel, nodes: readonly number[]): PickRow {
  const inDeck = origin === null ? [] : nodes.map((node) => origin.numbers.node[node]);
  const more = inDeck.length > 0 ? ` (in the deck ${inDeck.join(", ")})` : "";
  return { name: "nodes", value: nodes.join(", ") + more };
}

export function rowOfMaterial(model: PageModel, row: number): PickRow {
  const material = model.materials[row];
  const text =
    material === undefined
      ? "does not exist"
      : `E ${formatPlain(material.E)}, ν ${formatPlain(material.nu)}`;
  return { name: "material", value: `${text} ${nameRow(row, model.origin?.materials)}` };
}

// "(row 3)"; with a name in the deck "(row 3, MAT1 7)".
export function nameRow(row: number, names: readonly string[] | undefined): string {
  const name = names?.[row] ?? "";
  return name === "" ? `(row ${row})` : `(row ${row}, ${name})`;
}

// Values of one node or end from values[first ..], one row for each name; zeros are left out.
export function rowsOfForces(values: Float32Array, first: number): PickRow[] {
  return forceNames
    .map((name, d) => ({ name, value: formatFile(values[first + d]) }))
    .filter((_, d) => values[first + d] !== 0);
}

export function describeFindings(model: PageModel, kind: Kind, number: number): PickGroup {
  const found = model.findings.filter((finding) =>
    kind === "node"
      ? finding.nodes.includes(number)
      : finding.elements.some((element) => element.kind === kind && element.number === number),
  );
  const rows = found.map(({ code, severity, message }) => ({
    name: `${code}, ${severity}`,
    value: message,
  }));
  return { title: "Findings", rows };
}

// " (name)" of a case that governs an envelope; row: among the solved ones.
export function nameCase(model: PageModel, row: number | undefined): string {
  const solved = model.cases.filter((one) => one.isSolved);
  return row === undefined || solved[row] === undefined ? "" : ` (${solved[row].name})`;
}

// Rows with values of both faces, below one that says so. None: no rows.
export function withFaces(rows: PickRow[] | null): PickRow[] {
  if (rows === null || rows.length === 0) return [];
  return [{ name: "face", value: "upper, lower" }, ...rows];
}

// The rows of `nodes` in a list of nodes that is not sorted.
export function indicesOf(nodes: Int32Array, node: number): number[] {
  const found: number[] = [];
  for (let at = nodes.indexOf(node); at >= 0; at = nodes.indexOf(node, at + 1)) found.push(at);
  return found;
}
