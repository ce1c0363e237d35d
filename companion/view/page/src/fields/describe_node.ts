// What the card says of a node.

import { firstCorner } from "../data/corners";
import type { CaseLoads, CaseResults, PageModel } from "../data/page_model";
import {
  describeFindings,
  dofNames,
  indicesOf,
  rowOfFile,
  rowsOfOrigin,
  rowsOfForces,
  withFaces,
} from "./describe_parts";
import type { PickGroup, PickRow, PickSources } from "./describe_pick";
import { formatComputed, formatFile, formatPlain } from "./ticks";

// Elements at a node that the card names; the others are counted.
const namedElements = 8;

export function describeNode(sources: PickSources, node: number): PickGroup[] {
  const { model, loads, results } = sources;
  const places = ["X", "Y", "Z"].map((name, d) => ({
    name,
    value: formatPlain(model.coordinates[3 * node + d]),
  }));
  return [
    {
      title: "",
      rows: [rowOfFile(model, "node", node), ...rowsOfOrigin(model, "node", node), ...places],
    },
    { title: "Displacement", rows: describeMotion(sources, node) },
    { title: "Support", rows: describeSupport(model, loads, node) },
    { title: "Loads", rows: loads === null ? [] : describeForces(loads, node) },
    { title: "Reaction", rows: results === null ? [] : describeReaction(results, node) },
    { title: "von Mises stress, averaged", rows: withFaces(describeStress(model, results, node)) },
    { title: "Elements", rows: describeElements(model, node) },
    describeFindings(model, "node", node),
  ];
}

// Of a held displacement the solver leaves this part of the largest one, or less.
const residue = 1e-9;

function describeMotion({ model, results }: PickSources, node: number): PickRow[] {
  if (results === null) return [];
  const motion = results.displacements.subarray(6 * node, 6 * node + 6);
  const size = Math.hypot(motion[0], motion[1], motion[2]);
  const flags = indicesOf(model.supportNodes, node).map((at) => model.supportFlags[at]);
  const rows: PickRow[] = dofNames.map((name, d) => {
    const exact = formatFile(motion[d]);
    const isHeld = flags.some((flag) => ((flag >> d) & 1) === 1);
    const isNothing = isHeld && Math.abs(motion[d]) <= residue * largestMotion(results, d);
    return isNothing ? { name, value: "0 (held)", exact } : { name, value: exact };
  });
  const exact = formatComputed(size);
  const isNothing = rows.slice(0, 3).every((row) => row.exact !== undefined);
  const sum = isNothing ? { value: "0 (held)", exact } : { value: exact };
  return [...rows, { name: "|u|", ...sum }];
}

// Of all displacements, or all rotations: what `dof` is.
function largestMotion({ displacements }: CaseResults, dof: number): number {
  const first = dof < 3 ? 0 : 3;
  let largest = 0;
  for (let at = first; at < displacements.length; at += 6) {
    for (let d = at; d < at + 3; ++d) largest = Math.max(largest, Math.abs(displacements[d]) || 0);
  }
  return largest;
}

function describeSupport(model: PageModel, loads: CaseLoads | null, node: number): PickRow[] {
  const rows: PickRow[] = [];
  for (const at of indicesOf(model.supportNodes, node)) {
    const held = dofNames.filter((_, d) => ((model.supportFlags[at] >> d) & 1) === 1);
    if (held.length > 0) rows.push({ name: "held", value: held.join(", ") });
  }
  if (loads === null) return rows;
  for (const at of indicesOf(loads.prescribedNodes, node)) {
    const name = `${dofNames[loads.prescribedDofs[at]]} prescribed`;
    rows.push({ name, value: formatFile(loads.prescribedValues[at]) });
  }
  return rows;
}

function describeForces(loads: CaseLoads, node: number): PickRow[] {
  return indicesOf(loads.forceNodes, node).flatMap((at) => rowsOfForces(loads.forces, 6 * at));
}

function describeReaction(results: CaseResults, node: number): PickRow[] {
  return indicesOf(results.reactionNodes, node).flatMap((at) =>
    rowsOfForces(results.reactions, 6 * at),
  );
}

// A row for each different average: elements on one side of a fold share one.
function describeStress(
  model: PageModel,
  results: CaseResults | null,
  node: number,
): PickRow[] {
  if (results === null) return [];
  const { rows, upperMises, lowerMises } = results.shells;
  const elements = new Map<number, string[]>(); // by row of averages
  for (const kind of ["shell", "triangle"] as const) {
    const table = kind === "shell" ? model.shells : model.triangles;
    for (const at of indicesOf(table.nodes, node)) {
      const row = rows[firstCorner(model, kind, 0) + at];
      const names = elements.get(row) ?? [];
      names.push(`${kind} ${Math.floor(at / table.corners)}`);
      elements.set(row, names);
    }
  }
  return [...elements].map(([row, names]) => ({
    name: shorten(names),
    value: `${formatFile(upperMises[row])}, ${formatFile(lowerMises[row])}`,
  }));
}

function describeElements(model: PageModel, node: number): PickRow[] {
  const tables = [
    { name: "shells", nodes: model.shells.nodes, corners: 4 },
    { name: "triangles", nodes: model.triangles.nodes, corners: 3 },
    { name: "beams", nodes: model.beams.nodes, corners: 2 },
  ];
  return tables
    .map(({ name, nodes, corners }) => {
      const numbers = new Set(indicesOf(nodes, node).map((at) => Math.floor(at / corners)));
      return { name, value: shorten([...numbers].map(String)) };
    })
    .filter((row) => row.value !== "");
}

function shorten(names: string[]): string {
  const others = names.length - namedElements;
  const text = names.slice(0, namedElements).join(", ");
  return others > 0 ? `${text} and ${others} more` : text;
}
