// Everything that a scene holds: the graphics card's things for one model, and how they follow what
// is to be drawn. Each part is renewed only where what it depends on differs from the last drawing.

import * as three from "three";
import { listCornerNodes } from "../data/corners";
import type { PageModel } from "../data/page_model";
import { notNumberColor } from "../fields/color_maps";
import type { BeamField } from "../fields/quantity";
import { colorBeams, createBeams, paintBeams, showBeams } from "./beams";
import type { Beams } from "./beams";
import { clipPlane } from "./clip";
import { createDetails, freeDetails, showDetails } from "./details";
import type { Details } from "./details";
import { createDiagrams, showDiagrams } from "./diagrams";
import type { Diagrams } from "./diagrams";
import { findFrame, placeNodes } from "./frame";
import type { Frame } from "./frame";
import { createHighlight, showHighlight } from "./highlight";
import type { Highlight } from "./highlight";
import { createLocalAxes, showLocalAxes } from "./local_axes";
import type { LocalAxes } from "./local_axes";
import { createOutline, paintOutline, showOutline } from "./outline";
import type { Hidden, Outline } from "./outline";
import { darkPalette, lightPalette } from "./palette";
import type { Palette } from "./palette";
import { createNodePoints, createPickTarget, moveNodePoints, numberThings } from "./pick";
import { showNodePoints } from "./pick";
import type { NodePoints, Numbers, PickTarget } from "./pick";
import type { Drawing } from "./scene";
import { createUniforms, numberDepth, plainDepth, setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { listShownNodes } from "./shown_nodes";
import { createSigns, showSigns } from "./signs";
import type { Signs } from "./signs";
import { colorSurface, createSurface, fieldMode, moveSurface, normalMode } from "./surface";
import { paintSurface, plainMode, showElements } from "./surface";
import type { Surface } from "./surface";

export interface Stage {
  model: PageModel;
  frame: Frame;
  places: Float32Array; // of nodes, [nodes x 3], in the frame of the picture
  shared: SharedUniforms;
  scene: three.Scene;
  pick: PickTarget;
  numbers: Numbers;
  shells: Surface;
  beams: Beams;
  outline: Outline;
  nodes: NodePoints;
  highlight: Highlight;
  localAxes: LocalAxes;
  signs: Signs;
  diagrams: Diagrams;
  details: Details | null;
  textureWidth: number;
  drawing: Drawing | null; // the last one
  hidden: Hidden; // copies of the last drawing's
  shownNodes: Uint32Array;
  // Which signs were shown last: the caller may write into the same state.
  shownSigns: Pick<Drawing["state"]["shows"], "supports" | "loads" | "reactions" | "findings">;
  diagramField: BeamField | null; // of the diagrams that are shown
  largestMove: number; // of the displacements, model units
}

export function createStage(model: PageModel, textureWidth: number): Stage {
  const frame = findFrame(model.coordinates);
  const places = placeNodes(frame, model);
  const shared = createUniforms();
  const numbers = numberThings(model);
  const nodes = listCornerNodes(model);
  const source = { quads: model.shells.count, triangles: model.triangles.count, nodes, places };
  const beams = createBeams(model, places, frame.size, shared, numbers.beams);
  const stage: Stage = {
    model,
    frame,
    places,
    shared,
    scene: new three.Scene(),
    pick: createPickTarget(),
    numbers,
    shells: createSurface(source, shared, textureWidth, numbers.shells),
    beams,
    outline: createOutline(model, places, shared),
    nodes: createNodePoints(places, beams.extentsAtNodes, shared, numbers.nodes),
    highlight: createHighlight(shared),
    localAxes: createLocalAxes(shared),
    diagrams: createDiagrams(frame.size, shared),
    signs: createSigns(model, frame, places, shared),
    details: null,
    textureWidth,
    drawing: null,
    hidden: { shells: new Uint8Array(0), triangles: new Uint8Array(0), beams: new Uint8Array(0) },
    shownNodes: new Uint32Array(0),
    shownSigns: { supports: false, loads: false, reactions: false, findings: false },
    diagramField: null,
    largestMove: 0,
  };
  addParts(stage);
  return stage;
}

function addParts(stage: Stage): void {
  const { scene, pick, outline, highlight, beams } = stage;
  // Lines after the surfaces they lie in, the undeformed ones first.
  outline.undeformed.mesh.renderOrder = 1;
  outline.deformed.mesh.renderOrder = 2;
  outline.freeEdges.mesh.renderOrder = 3;
  beams.thinLines.mesh.renderOrder = 4;
  scene.add(stage.shells.mesh, beams.thinLines.mesh, highlight.lines.mesh, highlight.dot.mesh);
  scene.add(outline.undeformed.mesh, outline.deformed.mesh, outline.freeEdges.mesh);
  const { diagrams } = stage;
  scene.add(diagrams.areas, diagrams.curves.mesh, diagrams.ends.mesh);
  scene.add(stage.signs.glyphs.group, stage.signs.findings.mesh, stage.signs.lone.mesh);
  for (const axis of stage.localAxes.lines) scene.add(axis.mesh);
  scene.add(...stage.localAxes.letters);
  pick.scene.add(stage.shells.pickMesh, beams.thinLines.pickMesh, stage.nodes.mesh);
  for (const section of beams.sections) {
    scene.add(section.mesh);
    pick.scene.add(section.pickMesh);
  }
}

// Follows a drawing; what is drawn next shows it.
export function followDrawing(stage: Stage, drawing: Drawing): void {
  const last = stage.drawing;
  const isMoved = !last || last.results !== drawing.results;
  const isFiltered = followFilters(stage, drawing);
  if (isMoved) followDisplacements(stage, drawing);
  followShells(stage, drawing, last, isMoved);
  if (isMoved || isFiltered) showBeams(stage.beams, beamDrawing(stage, drawing));
  else if (last?.beamField !== drawing.beamField) {
    colorBeams(stage.beams, beamDrawing(stage, drawing));
  }
  const moves = drawing.results?.displacements ?? null;
  if (isMoved || isFiltered) showOutline(stage.outline, stage.hidden, moves);
  followSigns(stage, drawing, isMoved || isFiltered);
  followDiagrams(stage, drawing, isMoved || isFiltered);
  followDetails(stage, drawing, last, isFiltered);
  followUniforms(stage, drawing, last);
  followColors(stage, drawing);
  followSwitches(stage, drawing);
  const { picked } = drawing.state;
  const palette = paletteOf(drawing);
  const { highlight, model, beams, places } = stage;
  showHighlight(highlight, model, beams, places, moves, picked, palette);
  showLocalAxes(stage.localAxes, model, beams, places, moves, picked, palette);
  stage.drawing = drawing;
}

export function paletteOf(drawing: Drawing): Palette {
  return drawing.isDark ? darkPalette : lightPalette;
}

function beamDrawing(stage: Stage, drawing: Drawing): Parameters<typeof showBeams>[1] {
  return {
    displacements: drawing.results?.displacements ?? null,
    field: drawing.beamField,
    isHidden: stage.hidden.beams,
  };
}

// True where something is hidden or shown that was not. The arrays are compared by content: the
// caller may write into the same ones.
function followFilters(stage: Stage, drawing: Drawing): boolean {
  const { isHidden } = drawing;
  const kinds = ["shells", "triangles", "beams"] as const;
  const isSame = kinds.every((kind) => areEqual(isHidden[kind], stage.hidden[kind]));
  if (stage.drawing && isSame) return false;
  for (const kind of kinds) stage.hidden[kind] = isHidden[kind].slice();
  const { shells, triangles } = stage.hidden;
  const quads = stage.model.shells.count;
  showElements(stage.shells, (element) =>
    Boolean(element < quads ? shells[element] : triangles[element - quads]),
  );
  stage.shownNodes = listShownNodes(stage.model, stage.hidden, stage.places);
  showNodePoints(stage.nodes, stage.shownNodes);
  return true;
}

function areEqual(a: Uint8Array, b: Uint8Array): boolean {
  return a.length === b.length && a.every((value, at) => value === b[at]);
}

function followDisplacements(stage: Stage, drawing: Drawing): void {
  const moves = drawing.results?.displacements ?? null;
  moveSurface(stage.shells, moves, 6);
  moveNodePoints(stage.nodes, moves);
  const drawn = stage.nodes.mesh.geometry.getAttribute("displacement").array;
  let largest = 0;
  for (let at = 0; at < drawn.length; ++at) largest = Math.max(largest, Math.abs(drawn[at]));
  stage.largestMove = Math.sqrt(3) * largest;
}

function followSigns(stage: Stage, drawing: Drawing, isOther: boolean): void {
  const last = stage.drawing;
  const isSame =
    last !== null &&
    !isOther &&
    last.loads === drawing.loads &&
    last.isDark === drawing.isDark &&
    (["supports", "loads", "reactions", "findings"] as const).every(
      (name) => stage.shownSigns[name] === drawing.state.shows[name],
    );
  if (isSame) return;
  const { supports, loads, reactions, findings } = drawing.state.shows;
  stage.shownSigns = { supports, loads, reactions, findings };
  const isShown = new Uint8Array(stage.model.nodeCount);
  for (const node of stage.shownNodes) isShown[node] = 1;
  const moves = stage.nodes.mesh.geometry.getAttribute("displacement").array;
  showSigns(stage.signs, drawing, paletteOf(drawing), stage.hidden, moves, isShown);
}

function followDiagrams(stage: Stage, drawing: Drawing, isOther: boolean): void {
  const { shows } = drawing.state;
  const field = shows.diagrams && shows.beams ? drawing.beamField : null;
  const last = stage.drawing;
  if (!isOther && field === stage.diagramField && last?.isDark === drawing.isDark) return;
  stage.diagramField = field;
  const moves = drawing.results?.displacements ?? null;
  const { diagrams, beams, hidden } = stage;
  showDiagrams(diagrams, beams, field, hidden.beams, moves, paletteOf(drawing));
}

function followShells(
  stage: Stage,
  drawing: Drawing,
  last: Drawing | null,
  isMoved: boolean,
): void {
  const field = drawing.shellField;
  const before = last?.shellField ?? null;
  if (isMoved || field?.upper !== before?.upper || field?.lower !== before?.lower) {
    colorSurface(stage.shells, field?.upper ?? null, field?.lower ?? null);
  }
  const byField = field ? fieldMode : plainMode;
  const mode = drawing.state.shows.normals ? normalMode : byField;
  paintSurface(stage.shells, paletteOf(drawing), mode);
}

function followDetails(
  stage: Stage,
  drawing: Drawing,
  last: Drawing | null,
  isFiltered: boolean,
): void {
  const isOther = drawing.details !== (last?.details ?? null);
  if (isOther) {
    if (stage.details) freeDetails(stage.details, stage.scene, stage.pick.scene);
    const { frame, shared, textureWidth, numbers } = stage;
    stage.details =
      drawing.details &&
      createDetails(drawing.details, frame, shared, textureWidth, numbers.details);
    if (stage.details) {
      stage.scene.add(stage.details.surface.mesh);
      stage.pick.scene.add(stage.details.surface.pickMesh);
    }
  }
  if (!stage.details) return;
  const isFieldNew = isOther || drawing.detailField !== last?.detailField;
  showDetails(stage.details, stage.hidden.beams, isOther || isFiltered, drawing, isFieldNew);
  paintSurface(stage.details.surface, paletteOf(drawing), drawing.detailField ? 1 : 0);
}

function followUniforms(stage: Stage, drawing: Drawing, last: Drawing | null): void {
  const { shared } = stage;
  shared.range.value.set(drawing.range[0], drawing.range[1]);
  shared.clip.value.set(...clipPlane(stage.frame, drawing.state.clip));
  shared.isShaded.value = drawing.state.shows.shading ? 1 : 0;
  const fields = [drawing.shellField, drawing.detailField, drawing.beamField];
  const isCategory = fields.some((field) => field?.quantity.isCategory);
  shared.fieldDepth.value = isCategory ? plainDepth : numberDepth;
  shared.hasEdges.value = drawing.state.shows.edges ? 1 : 0;
  if (last && last.colors === drawing.colors) return;
  const texture = shared.colors.value;
  const bytes = texture.image.data as unknown as Uint8Array;
  for (let entry = 0; entry < 256; ++entry) {
    bytes.set(drawing.colors.subarray(3 * entry, 3 * entry + 3), 4 * entry);
    bytes[4 * entry + 3] = 255;
  }
  texture.needsUpdate = true;
}

function followColors(stage: Stage, drawing: Drawing): void {
  const palette = paletteOf(drawing);
  setColor(stage.shared.edgeColor, palette.edge);
  setColor(stage.shared.cutColor, palette.cut);
  setColor(stage.shared.notNumber, notNumberColor);
  paintBeams(stage.beams, palette, drawing.beamField);
  paintOutline(stage.outline, palette);
}

function followSwitches(stage: Stage, drawing: Drawing): void {
  const { shows } = drawing.state;
  const { shells, beams, outline, details } = stage;
  shells.mesh.visible = shells.pickMesh.visible = shows.shells && shells.corners > 0;
  const hasBeams = shows.beams && !details;
  for (const each of beams.sections) {
    const isShown = hasBeams && each.mesh.geometry.instanceCount > 0;
    each.mesh.visible = each.pickMesh.visible = isShown;
  }
  const { thinLines } = beams;
  const hasLines = thinLines.mesh.geometry.instanceCount > 0;
  thinLines.mesh.visible = thinLines.pickMesh.visible = hasBeams && hasLines;
  if (details) {
    details.surface.mesh.visible = details.surface.pickMesh.visible = shows.beams;
  }
  const isDeformed = drawing.results !== null && drawing.scale !== 0;
  const has = (lines: Outline["deformed"]): boolean => lines.mesh.geometry.instanceCount > 0;
  outline.deformed.mesh.visible = shows.edges && shows.shells && has(outline.deformed);
  outline.undeformed.mesh.visible = shows.outline && isDeformed && has(outline.undeformed);
  outline.freeEdges.mesh.visible = shows.freeEdges && has(outline.freeEdges);
}
