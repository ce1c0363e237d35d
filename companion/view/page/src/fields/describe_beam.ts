// What the card says of a beam.

import { findBeamLine } from "../data/frames";
import type { BeamLine } from "../data/frames";
import type { CaseLoads, CaseResults, PageModel } from "../data/page_model";
import { computeBeamField } from "./beam_field";
import { evaluateCubic, findBeamExtremes, listExtremePlaces } from "./beam_ranges";
import { describeSection } from "./categories";
import {
  describeFindings,
  indicesOf,
  nameCase,
  rowOfFile,
  rowOfMaterial,
  rowOfNodes,
  rowsOfOrigin,
} from "./describe_parts";
import type { PickGroup, PickRow, PickSources } from "./describe_pick";
import { displacementValue } from "./displacement_values";
import type { BeamField } from "./quantity";
import { formatComputed, formatFile, formatSure } from "./ticks";

const forceNames = ["N", "Vy", "Vz", "T", "My", "Mz"];

export function describeBeam(sources: PickSources, beam: number): PickGroup[] {
  const { model, loads, results } = sources;
  const line = findBeamLine(model.coordinates, model.beams, beam);
  const forces = results === null ? [] : describeForces(results, beam, line.length);
  return [
    { title: "", rows: describeShape(model, beam, line) },
    describeEnvelope(sources, beam, line.length),
    { title: "Line load along z", rows: loads === null ? [] : describeLoads(loads, beam) },
    { title: "Section forces", rows: forces },
    { title: "Stress", rows: results === null ? [] : describeStress(model, results, beam, line) },
    { title: "Displacement", rows: results === null ? [] : describeMotion(model, results, beam) },
    describeFindings(model, "beam", beam),
  ];
}

function describeShape(model: PageModel, beam: number, line: BeamLine): PickRow[] {
  const { beams } = model;
  const section = model.sections[beams.section[beam]];
  const rows: PickRow[] = [
    rowOfFile(model, "beam", beam),
    ...rowsOfOrigin(model, "beam", beam),
    rowOfNodes(model, [beams.nodes[2 * beam], beams.nodes[2 * beam + 1]]),
    { name: "length", value: formatComputed(line.length) },
    { name: "section", value: describeSection(model, beams.section[beam]) },
  ];
  if (section !== undefined) {
    rows.push(
      { name: "A", value: formatComputed(section.area) },
      { name: "Iy, Iz", value: `${formatComputed(section.Iy)}, ${formatComputed(section.Iz)}` },
    );
  }
  return [
    ...rows,
    rowOfMaterial(model, beams.material[beam]),
    { name: "part", value: String(beams.part[beam]) },
  ];
}

// What is shown of all cases together; a single case has rows of its own.
function describeEnvelope(
  { model, results, beamField: field, envelopes }: PickSources,
  beam: number,
  length: number,
): PickGroup {
  if (results !== null || field == null || field.quantity.isCategory) {
    return { title: "", rows: [] };
  }
  const extremes = findBeamExtremes(field, model, beam);
  const governing = nameCase(model, envelopes?.beam?.cases[beam]);
  if (field.isAtMiddle) {
    const value = formatComputed(extremes.highest.value);
    return describeAs(field, [{ name: "at mid-length", value: `${value}${governing}` }]);
  }
  const rows = (["highest", "lowest"] as const).map((name) => {
    const { value, s } = extremes[name];
    const place = `at x = ${formatComputed(s * length)}${governing}`;
    return { name, value: Number.isFinite(value) ? `${formatComputed(value)} ${place}` : "nan" };
  });
  return describeAs(field, rows);
}

function describeAs({ quantity }: BeamField, rows: PickRow[]): PickGroup {
  return { title: `Shown: ${quantity.label}`, rows };
}

// A row for each row of loads: at the first and the second node.
function describeLoads(loads: CaseLoads, beam: number): PickRow[] {
  return indicesOf(loads.beamLoads, beam).map((at) => ({
    name: "first, second node",
    value: `${formatFile(loads.lineLoads[2 * at])}, ${formatFile(loads.lineLoads[2 * at + 1])}`,
  }));
}

// At both ends, and where a force is beyond both of them.
function describeForces(results: CaseResults, beam: number, length: number): PickRow[] {
  return forceNames.map((name, force) => {
    const first = 24 * beam + 4 * force;
    const cubic = results.forces.subarray(first, first + 4);
    const text = (s: number) => formatCubic(cubic, s);
    const [start, end] = [cubic[0], evaluateCubic(cubic, 1)];
    const least = 1e-5 * largestOf(cubic); // of less no digit is sure
    const between = listExtremePlaces(cubic)
      .filter((s) => {
        const value = evaluateCubic(cubic, s);
        return value > Math.max(start, end) + least || value < Math.min(start, end) - least;
      })
      .map((s) => `${text(s)} at x = ${formatComputed(s * length)}`);
    const ends = text(0) === text(1) ? text(0) : `${text(0)} to ${text(1)}`;
    return { name, value: [ends, ...between].join("; ") };
  });
}

function largestOf(cubic: Float32Array): number {
  return Math.max(...cubic.map(Math.abs));
}

// The first end has the number of the data; elsewhere digits that are not sure are left out, so
// that what is zero shows as zero.
function formatCubic(cubic: Float32Array, s: number): string {
  if (s === 0) return formatFile(cubic[0]);
  const isConstant = cubic[1] === 0 && cubic[2] === 0 && cubic[3] === 0;
  if (isConstant) return formatFile(cubic[0]);
  return formatSure(evaluateCubic(cubic, s), largestOf(cubic));
}

function describeStress(
  model: PageModel,
  results: CaseResults,
  beam: number,
  line: BeamLine,
): PickRow[] {
  const rows: PickRow[] = [];
  const field = computeBeamField("beamStress", { model, results });
  if (field !== null && model.sections[model.beams.section[beam]] !== undefined) {
    const extremes = findBeamExtremes(field, model, beam);
    for (const end of ["highest", "lowest"] as const) {
      const { value, s, y, z } = extremes[end];
      const x = formatComputed(s * line.length);
      const place = `at x = ${x}, y = ${formatComputed(y)}, z = ${formatComputed(z)}`;
      const isFound = Number.isFinite(value);
      rows.push({ name: `${end} σ`, value: isFound ? `${formatComputed(value)} ${place}` : "nan" });
    }
  }
  if (results.detailStresses !== null) {
    const value = formatFile(results.detailStresses[beam]);
    rows.push({ name: "detail model at mid-length, σv", value });
  }
  return rows;
}

function describeMotion(model: PageModel, results: CaseResults, beam: number): PickRow[] {
  const size = displacementValue("u", results.displacements);
  return [0, 1].map((k) => {
    const node = model.beams.nodes[2 * beam + k];
    return { name: `|u|, node ${node}`, value: formatComputed(size(node)) };
  });
}
