// The deck that the model was imported from, from the JSON of the page and its block "structure":
// columns "origin.KIND" with the deck's numbers, "origin.KIND.type", and "origin.KIND.groups" with
// the rows of all groups, one group after the other.

import type { Block } from "./blocks";
import { doubles, integers } from "./columns";
import type { Kind, Origin, OriginGroup, PageModel } from "./page_model";

export interface OriginJson extends Pick<Origin, "source" | "format" | "types"> {
  thicknesses: string[];
  materials: string[];
  groups: { name: string; source: string; counts: Record<Kind, number> }[];
}

type Counts = Pick<PageModel, "nodeCount"> & {
  counts: { shells: number; triangles: number; beams: number };
};

const kinds = ["node", "shell", "triangle", "beam"] as const;

export function readOrigin(json: OriginJson, model: Counts, block: Block): Origin {
  const rows: Record<Kind, number> = {
    node: model.nodeCount,
    shell: model.counts.shells,
    triangle: model.counts.triangles,
    beam: model.counts.beams,
  };
  const types = (kind: Kind) => integers(block, `origin.${kind}.type`, rows[kind]);
  return {
    source: json.source,
    format: json.format,
    types: json.types,
    thicknesses: json.thicknesses,
    materials: json.materials,
    numbers: byKind((kind) => doubles(block, `origin.${kind}`, rows[kind])),
    typeRows: { shell: types("shell"), triangle: types("triangle"), beam: types("beam") },
    groups: readGroups(json.groups, block),
  };
}

function readGroups(groups: OriginJson["groups"], block: Block): OriginGroup[] {
  const columns = byKind((kind) => {
    const count = groups.reduce((sum, group) => sum + group.counts[kind], 0);
    return integers(block, `origin.${kind}.groups`, count);
  });
  const begins = byKind(() => 0);
  return groups.map(({ name, source, counts }) => {
    const members = byKind((kind) => {
      const begin = begins[kind];
      begins[kind] += counts[kind];
      return columns[kind].subarray(begin, begins[kind]);
    });
    return { name, source, members };
  });
}

function byKind<T>(make: (kind: Kind) => T): Record<Kind, T> {
  const [node, shell, triangle, beam] = kinds.map(make) as [T, T, T, T];
  return { node, shell, triangle, beam };
}
