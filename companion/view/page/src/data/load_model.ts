// Reads the page's data: the model at once, blocks of load cases when they are asked for.
//
// The page holds <script type="application/json" id="kvx-model"> and, for each block,
// <script type="text/plain" id="kvx-block-ID">; PageModel and data/blocks.ts tell what is in them.
// JSON has no NaN and no infinities: they are null there, and NaN here.

import type { Block, Column } from "./blocks";
import { decimals, doubles, findIntegers, integers } from "./columns";
import { decodeBlock } from "./decode_block";
import { readOrigin, type OriginJson } from "./load_origin";
import type {
  AveragedStresses,
  BeamTable,
  CaseInfo,
  CaseLoads,
  CaseResults,
  CornerStresses,
  DetailModels,
  Finding,
  Kind,
  Material,
  PageModel,
  Section,
  ShellTable,
} from "./page_model";

// What is needed of a Document.
export interface PageTexts {
  getElementById(id: string): { textContent: string | null } | null;
}

// The results of load cases by row. A block is decoded once, when it is asked for first.
export interface Cases {
  loads(row: number): Promise<CaseLoads>;
  results(row: number): Promise<CaseResults | null>; // null: the page has none
  corners(row: number): Promise<CornerStresses | null>;
  details(row: number): Promise<DetailModels | null>;
}

type MaybeNumber = number | null;

// The JSON of the page: PageModel less its typed arrays, with null for numbers that are none.
interface PageJson {
  title: string;
  program: string;
  file: string;
  notices: string[];
  parts: number;
  thicknesses: MaybeNumber[];
  materials: { E: MaybeNumber; nu: MaybeNumber; density: MaybeNumber }[];
  sections: SectionJson[];
  findings: FindingJson[];
  cases: CaseInfo[];
  firstLines: Record<Kind, number>;
  nodeCount: number;
  counts: { shells: number; triangles: number; beams: number };
  origin?: OriginJson;
  blocks: Record<string, Column[]>;
}

// Numbers that follow one another, the first and the last of them.
type Run = [number, number];

// A finding may be about all elements of a model: their numbers are runs.
interface FindingJson extends Omit<Finding, "place" | "nodes" | "elements"> {
  place: MaybeNumber[] | null;
  nodes: Run[];
  elements: Partial<Record<Kind, Run[]>>;
}

interface SectionJson
  extends Pick<Section, "type" | "index" | "mirrored" | "name" | "origin" | "sizes"> {
  offset: MaybeNumber;
  rings: MaybeNumber[][];
  centroid: MaybeNumber[];
  area: MaybeNumber;
  Iy: MaybeNumber;
  Iz: MaybeNumber;
}

export async function readModel(texts: PageTexts): Promise<PageModel> {
  const json = readJson(texts);
  const structure = await readBlock(texts, json, "structure");
  return {
    title: json.title,
    program: json.program,
    file: json.file,
    notices: json.notices,
    parts: json.parts,
    thicknesses: json.thicknesses.map(toNumber),
    materials: json.materials.map(toMaterial),
    sections: json.sections.map(toSection),
    findings: json.findings.map(toFinding),
    cases: json.cases,
    firstLines: json.firstLines,
    lines: {
      node: findIntegers(structure, "lines.node"),
      shell: findIntegers(structure, "lines.shell"),
      triangle: findIntegers(structure, "lines.triangle"),
      beam: findIntegers(structure, "lines.beam"),
    },
    nodeCount: json.nodeCount,
    coordinates: doubles(structure, "coordinates", 3 * json.nodeCount),
    shells: readShellTable(structure, "shells", 4, json.counts.shells),
    triangles: readShellTable(structure, "triangles", 3, json.counts.triangles),
    beams: readBeamTable(structure, json.counts.beams),
    supportNodes: integers(structure, "supportNodes"),
    supportFlags: integers(structure, "supportFlags"),
    origin: json.origin === undefined ? null : readOrigin(json.origin, json, structure),
  };
}

export function openCases(texts: PageTexts, model: PageModel): Cases {
  const json = readJson(texts);
  const read = (id: string) => readBlock(texts, json, id);
  const ids = (row: number) => model.cases[row].blocks;
  return {
    loads: keepByRow(async (row) => readLoads(await read(ids(row).loads))),
    results: keepByRow(async (row) => {
      const id = ids(row).results;
      return id === undefined ? null : readResults(await read(id), model);
    }),
    corners: keepByRow(async (row) => {
      const id = ids(row).corners;
      return id === undefined ? null : readCorners(await read(id), model);
    }),
    details: keepByRow(async (row) => {
      const id = ids(row).details;
      return id === undefined ? null : readDetails(await read(id));
    }),
  };
}

// A function that calls `make` once for each row.
function keepByRow<T>(make: (row: number) => Promise<T>): (row: number) => Promise<T> {
  const kept = new Map<number, Promise<T>>();
  return (row) => {
    let promise = kept.get(row);
    if (promise === undefined) {
      promise = make(row);
      kept.set(row, promise);
    }
    return promise;
  };
}

function readJson(texts: PageTexts): PageJson {
  return JSON.parse(readText(texts, "kvx-model")) as PageJson;
}

function readText(texts: PageTexts, id: string): string {
  const text = texts.getElementById(id)?.textContent;
  if (typeof text !== "string") {
    throw new Error(`The data of this page is not complete: ${id} is missing.`);
  }
  return text;
}

async function readBlock(texts: PageTexts, json: PageJson, id: string): Promise<Block> {
  const columns = json.blocks[id];
  if (columns === undefined) {
    throw new Error(`The data of this page is not complete: block ${id} is not listed.`);
  }
  return decodeBlock(readText(texts, `kvx-block-${id}`), columns);
}

function toNumber(value: MaybeNumber): number {
  return value ?? NaN;
}

function toMaterial(json: PageJson["materials"][number]): Material {
  return { E: toNumber(json.E), nu: toNumber(json.nu), density: toNumber(json.density) };
}

function toSection(json: SectionJson): Section {
  return {
    ...json,
    offset: toNumber(json.offset),
    rings: json.rings.map((ring) => ring.map(toNumber)),
    centroid: [toNumber(json.centroid[0]), toNumber(json.centroid[1])],
    area: toNumber(json.area),
    Iy: toNumber(json.Iy),
    Iz: toNumber(json.Iz),
  };
}

function toFinding(json: FindingJson): Finding {
  const place = json.place;
  const elements: Finding["elements"] = [];
  for (const kind of ["shell", "triangle", "beam"] as const) {
    for (const number of listRuns(json.elements[kind] ?? [])) elements.push({ kind, number });
  }
  return {
    ...json,
    place: place === null ? null : [toNumber(place[0]), toNumber(place[1]), toNumber(place[2])],
    nodes: listRuns(json.nodes),
    elements,
  };
}

function listRuns(runs: Run[]): number[] {
  const numbers: number[] = [];
  for (const [first, last] of runs) {
    for (let number = first; number <= last; number += 1) numbers.push(number);
  }
  return numbers;
}

function readShellTable(block: Block, name: string, corners: 4 | 3, count: number): ShellTable {
  return {
    corners,
    count,
    nodes: integers(block, `${name}.nodes`, corners * count),
    thickness: integers(block, `${name}.thickness`, count),
    material: integers(block, `${name}.material`, count),
    part: integers(block, `${name}.part`, count),
  };
}

function readBeamTable(block: Block, count: number): BeamTable {
  return {
    count,
    nodes: integers(block, "beams.nodes", 2 * count),
    section: integers(block, "beams.section", count),
    material: integers(block, "beams.material", count),
    part: integers(block, "beams.part", count),
    z: doubles(block, "beams.z", 3 * count),
  };
}

function readLoads(block: Block): CaseLoads {
  const forceNodes = integers(block, "forceNodes");
  const prescribedNodes = integers(block, "prescribedNodes");
  const shellLoads = integers(block, "shellLoads");
  const triangleLoads = integers(block, "triangleLoads");
  const beamLoads = integers(block, "beamLoads");
  return {
    forceNodes,
    forces: decimals(block, "forces", 6 * forceNodes.length),
    prescribedNodes,
    prescribedDofs: integers(block, "prescribedDofs", prescribedNodes.length),
    prescribedValues: decimals(block, "prescribedValues", prescribedNodes.length),
    shellLoads,
    shellPressures: decimals(block, "shellPressures", 3 * shellLoads.length),
    triangleLoads,
    trianglePressures: decimals(block, "trianglePressures", 3 * triangleLoads.length),
    beamLoads,
    lineLoads: decimals(block, "lineLoads", 2 * beamLoads.length),
  };
}

// prefix: of the names, "shells." or "stresses.".
function readAveraged(block: Block, prefix: string, corners: number): AveragedStresses {
  const upperMises = decimals(block, `${prefix}upperMises`);
  const rows = upperMises.length;
  return {
    rows: integers(block, `${prefix}rows`, corners),
    upper: decimals(block, `${prefix}upper`, 6 * rows),
    lower: decimals(block, `${prefix}lower`, 6 * rows),
    upperMises,
    lowerMises: decimals(block, `${prefix}lowerMises`, rows),
  };
}

function readResults(block: Block, model: PageModel): CaseResults {
  const corners = 4 * model.shells.count + 3 * model.triangles.count;
  const reactionNodes = integers(block, "reactionNodes");
  const hasDetails = block.has("detailStresses");
  return {
    displacements: decimals(block, "displacements", 6 * model.nodeCount),
    reactionNodes,
    reactions: decimals(block, "reactions", 6 * reactionNodes.length),
    shells: readAveraged(block, "shells.", corners),
    forces: decimals(block, "forces", 24 * model.beams.count),
    detailStresses: hasDetails ? decimals(block, "detailStresses", model.beams.count) : null,
  };
}

function readCorners(block: Block, model: PageModel): CornerStresses {
  const corners = 4 * model.shells.count + 3 * model.triangles.count;
  return {
    upper: decimals(block, "upper", 3 * corners),
    lower: decimals(block, "lower", 3 * corners),
    shear: decimals(block, "shear", 2 * model.shells.count),
  };
}

function readDetails(block: Block): DetailModels {
  const beams = integers(block, "beams");
  const coordinates = doubles(block, "coordinates");
  return {
    coordinates,
    displacements: decimals(block, "displacements", coordinates.length),
    shells: integers(block, "shells", 4 * beams.length),
    beams,
    stresses: readAveraged(block, "stresses.", 4 * beams.length),
  };
}
