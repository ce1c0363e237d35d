// Works out from the state what is shown: fields, ranges, colours, lists. Each part is done again
// only where what it depends on has changed.

import type { Envelopes } from "./governing";
import { canShareScale } from "./pair_quantities";
import { rankPeaks, type Peak } from "./peaks";
import { remember } from "./remember";
import type { Shown } from "./shown";
import type { CaseData } from "./case_data";
import { findAutomaticScale } from "../fields/automatic_scale";
import { computeBeamField } from "../fields/beam_field";
import { listHighestBeams, measureBeamRange } from "../fields/beam_ranges";
import { makeColorScale } from "../fields/color_scale";
import { envelopeOf, envelopeOfBeams } from "../fields/envelope";
import type { BeamEnvelope, End, ShellEnvelope } from "../fields/envelope";
import { findHidden, type Hidden } from "../fields/filters";
import { listBeamQuantities, listShellQuantities } from "../fields/quantities";
import type { BeamField, FieldRange, ShellField } from "../fields/quantity";
import { listHighest, listHighestDetails, measureDetailRange } from "../fields/ranges";
import { measureRange } from "../fields/ranges";
import { computeDetailField, computeShellField } from "../fields/shell_field";
import type { CaseResults, DetailModels, PageModel } from "../data/page_model";
import type { FaceChoice, ViewState } from "../state";

const ListLength = 20; // of the highest values
const Candidates = 8 * ListLength; // elements: of these about four share a node
const DetailQuantity = "detail"; // beams drawn as their detail models

// data: of the case that is shown; of all solved cases for an envelope, or for their limits.
export type Derive = (state: ViewState, data: CaseData[]) => Shown;

export function makeDerive(model: PageModel): Derive {
  const hiddenOf = remember((hidden: ViewState["hidden"]) => findHidden(model, hidden));
  const fieldsOf = makeFields(model);
  const shellRange = remember((field: ShellField | null, hidden: Hidden) =>
    field === null ? null : measureRange(field, model, hidden),
  );
  const beamRange = remember(
    (
      field: BeamField | null,
      detail: ShellField | null,
      details: DetailModels | null,
      hidden: Hidden,
    ) => {
      if (detail !== null && details !== null) {
        return measureDetailRange(detail, details, hidden, model);
      }
      return field === null ? null : measureBeamRange(field, model, hidden);
    },
  );
  const scaleOf = remember((results: CaseResults | null) =>
    results === null ? 0 : findAutomaticScale(model, results),
  );
  const shellQuantities = listShellQuantities(model);
  const beamsOf = remember((results: CaseResults | null) => listBeamQuantities(model, results));
  const colorsOf = makeColors(model);
  const peaksOf = makePeaks(model);
  const ownOf = remember((data: CaseData[], row: number) =>
    row < 0 ? data : data.filter((one) => one.row === row),
  );
  const limitsOf = makeLimits(model);
  return (state, all) => {
    const data = ownOf(all, state.case);
    const results = state.case < 0 ? null : (data[0]?.results ?? null);
    const hidden = hiddenOf(state.hidden);
    const fields = fieldsOf(state, data);
    const details = fields.detail === null ? null : (data[0]?.details ?? null);
    const shells = shellRange(fields.shell, hidden);
    const beams = beamRange(fields.beam, fields.detail, details, hidden);
    const automaticScale = scaleOf(results);
    return {
      model,
      state,
      results,
      loads: state.case < 0 ? null : (data[0]?.loads ?? null),
      corners: state.case < 0 ? null : (data[0]?.corners ?? null),
      details,
      shellQuantities,
      beamQuantities: beamsOf(data[0]?.results ?? null),
      shellQuantity: fields.shell?.quantity ?? null,
      beamQuantity: (fields.detail ?? fields.beam)?.quantity ?? null,
      shellField: fields.shell,
      beamField: fields.beam,
      detailField: fields.detail,
      envelopes: fields.envelopes,
      hidden,
      automaticScale,
      scale: state.scale ?? automaticScale,
      shellRange: shells,
      beamRange: beams,
      notNumbers: (shells?.notNumbers ?? 0) + (beams?.notNumbers ?? 0),
      colors: colorsOf(
        fields,
        shells,
        beams,
        hasLimitsOfAll(state, all, fields) ? limitsOf(state, all, fields, hidden) : null,
        state.map,
        state.bands,
        state.range,
      ),
      peaks: peaksOf(fields.shell, fields.beam, fields.detail, details, hidden),
    };
  };
}

interface Fields {
  shell: ShellField | null;
  beam: BeamField | null;
  detail: ShellField | null; // in place of `beam`
  envelopes: Envelopes;
}

interface OfShells {
  field: ShellField | null;
  envelope: ShellEnvelope | null;
}

interface OfBeams {
  field: BeamField | null;
  envelope: BeamEnvelope | null;
}

function makeFields(model: PageModel): (state: ViewState, data: CaseData[]) => Fields {
  const ofShells = remember(
    (id: string, face: FaceChoice, isAveraged: boolean, data: CaseData[], end: End | null) => {
      const options = { face, isAveraged };
      const fields = data.map((one) => computeShellField(id, { model, ...one }, options));
      const known = fields.filter((field): field is ShellField => field !== null);
      const field = known[0] ?? null;
      if (end === null || field === null) return { field, envelope: null };
      const envelope = envelopeOf(known, end);
      return { field: envelope.field, envelope };
    },
  );
  const ofBeams = remember((id: string, data: CaseData[], end: End | null) => {
    const fields = data.map((one) => computeBeamField(id, { model, results: one.results }));
    const known = fields.filter((field): field is BeamField => field !== null);
    const field = known[0] ?? null;
    if (end === null || field === null) return { field, envelope: null };
    const envelope = envelopeOfBeams(known, model, end);
    return { field: envelope.field, envelope };
  });
  const ofDetails = remember((details: DetailModels | null, face: FaceChoice) =>
    details === null ? null : computeDetailField(details, { face }),
  );
  const together = remember(
    (shell: OfShells, beam: OfBeams | null, detail: ShellField | null): Fields =>
      settleFields({
        shell: shell.field,
        beam: beam?.field ?? null,
        detail,
        envelopes: { shell: shell.envelope, beam: beam?.envelope ?? null },
      }),
  );
  return (state, data) => {
    const end = state.case === -1 ? "highest" : state.case === -2 ? "lowest" : null;
    const { shellQuantity, beamQuantity, face, isAveraged } = state;
    // Details of one case at a time: all of them would be too many.
    const hasDetails = beamQuantity === DetailQuantity && end === null;
    const shell = ofShells(shellQuantity, face, isAveraged, data, end);
    const beam = hasDetails ? null : ofBeams(beamQuantity, data, end);
    return together(shell, beam, ofDetails(hasDetails ? (data[0]?.details ?? null) : null, face));
  };
}

// One legend serves both: where two cannot share it, shells win.
function settleFields(fields: Fields): Fields {
  const beam = (fields.detail ?? fields.beam)?.quantity;
  const shell = fields.shell?.quantity;
  if (beam === undefined || shell === undefined || canShareScale(shell, beam)) return fields;
  return { ...fields, beam: null, detail: null };
}

function makeColors(model: PageModel) {
  return remember(
    (
      fields: Fields,
      shells: FieldRange | null,
      beams: FieldRange | null,
      all: [number, number] | null, // of all cases; null: of this one alone
      map: string,
      bands: number,
      range: [number, number] | null,
    ) => {
      const quantity = (fields.shell ?? fields.detail ?? fields.beam)?.quantity ?? null;
      if (quantity === null) return null;
      const measured = all ?? joinRanges([shells, beams]);
      return makeColorScale(quantity, model, measured, { map, bands, range });
    },
  );
}

// Not with detail models: all of them would be too many.
function hasLimitsOfAll(state: ViewState, all: CaseData[], fields: Fields): boolean {
  return state.case >= 0 && all.length > 1 && fields.detail === null;
}

// The limits of what is shown over all cases.
function makeLimits(model: PageModel) {
  const measure = remember(
    (
      shell: string | null,
      beam: string | null,
      face: FaceChoice,
      isAveraged: boolean,
      data: CaseData[],
      hidden: Hidden,
    ) => {
      const ranges = data.flatMap((one) => {
        const sources = { model, ...one };
        const ofShells =
          shell === null ? null : computeShellField(shell, sources, { face, isAveraged });
        const ofBeams = beam === null ? null : computeBeamField(beam, sources);
        return [
          ofShells === null ? null : measureRange(ofShells, model, hidden),
          ofBeams === null ? null : measureBeamRange(ofBeams, model, hidden),
        ];
      });
      return joinRanges(ranges);
    },
  );
  return (state: ViewState, data: CaseData[], fields: Fields, hidden: Hidden) =>
    measure(
      fields.shell?.quantity.id ?? null,
      fields.beam?.quantity.id ?? null,
      state.face,
      state.isAveraged,
      data,
      hidden,
    );
}

function joinRanges(all: (FieldRange | null)[]): [number, number] | null {
  const ranges = all.filter((range): range is FieldRange => range !== null);
  if (ranges.length === 0) return null;
  return [
    Math.min(...ranges.map((range) => range.lowest.value)),
    Math.max(...ranges.map((range) => range.highest.value)),
  ];
}

// Of shells and beams together, as far as both are coloured by numbers.
function makePeaks(model: PageModel) {
  return remember(
    (
      shell: ShellField | null,
      beam: BeamField | null,
      detail: ShellField | null,
      details: DetailModels | null,
      hidden: Hidden,
    ): Peak[] => {
      const quantity = (shell ?? detail ?? beam)?.quantity ?? null;
      if (quantity === null || quantity.isCategory) return [];
      const rows = shell === null ? [] : listHighest(shell, model, hidden, Candidates);
      if (detail !== null && details !== null) {
        rows.push(...listHighestDetails(detail, details, hidden, model, ListLength));
      } else if (beam !== null) {
        rows.push(...listHighestBeams(beam, model, hidden, ListLength));
      }
      return rankPeaks(rows, quantity, ListLength);
    },
  );
}
