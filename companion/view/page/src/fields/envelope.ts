// The envelope of load cases: at each corner the highest (lowest) value, and the case that has it.
//
// Values that are not finite govern nothing; where no case has a finite one, nor has the envelope.
// Of equal values the first case governs.

import type { BeamField, ShellField } from "./quantity";
import type { PageModel } from "../data/page_model";
import { findBeamExtremes } from "./beam_ranges";

export type End = "highest" | "lowest";

export interface ShellEnvelope {
  field: ShellField;
  // The governing field by corner, of each array of `field`; -1: none.
  upperCases: Int32Array;
  lowerCases: Int32Array; // the same array where both faces are one
}

// fields: of one quantity and the same faces, one for each case, at least one.
export function envelopeOf(fields: ShellField[], end: End): ShellEnvelope {
  const upper = envelopeOfArrays(fields.map((field) => field.upper), end);
  const isOne = fields.every((field) => field.upper === field.lower);
  const lower = isOne ? upper : envelopeOfArrays(fields.map((field) => field.lower), end);
  const faces = fields[0].faces === null ? null : new Uint8Array(upper.values.length);
  faces?.forEach((_, corner) => {
    faces[corner] = fields[Math.max(0, upper.cases[corner])].faces?.[corner] ?? 0;
  });
  return {
    field: { ...fields[0], upper: upper.values, lower: lower.values, faces },
    upperCases: upper.cases,
    lowerCases: lower.cases,
  };
}

function envelopeOfArrays(
  arrays: Float32Array[],
  end: End,
): { values: Float32Array; cases: Int32Array } {
  const values = new Float32Array(arrays[0].length).fill(NaN);
  const cases = new Int32Array(values.length).fill(-1);
  arrays.forEach((array, row) => {
    for (let i = 0; i < values.length; ++i) {
      if (!Number.isFinite(array[i])) continue;
      const isBeyond = end === "highest" ? array[i] > values[i] : array[i] < values[i];
      if (isBeyond || cases[i] < 0) {
        values[i] = array[i];
        cases[i] = row;
      }
    }
  });
  return { values, cases };
}

export interface BeamEnvelope {
  field: BeamField;
  cases: Int32Array; // the governing field by beam; -1: none
}

// Each beam has the curve of the case with the highest (lowest) value anywhere along it. So that
// value is exact; elsewhere along the beam another case may be beyond the curve.
export function envelopeOfBeams(fields: BeamField[], model: PageModel, end: End): BeamEnvelope {
  const { a, b, c } = fields[0];
  const field: BeamField = { ...fields[0], a: a.slice(), b: b.slice(), c: c.slice() };
  const cases = new Int32Array(model.beams.count).fill(-1);
  for (let beam = 0; beam < model.beams.count; ++beam) {
    let best = NaN;
    fields.forEach((one, row) => {
      const extremes = findBeamExtremes(one, model, beam);
      const value = extremes[end].value;
      const isBeyond = end === "highest" ? value > best : value < best;
      if (Number.isFinite(value) && (isBeyond || cases[beam] < 0)) {
        best = value;
        cases[beam] = row;
      }
    });
    const governing = fields[Math.max(0, cases[beam])];
    for (const name of ["a", "b", "c"] as const) {
      field[name].set(governing[name].subarray(4 * beam, 4 * beam + 4), 4 * beam);
    }
  }
  return { field, cases };
}
