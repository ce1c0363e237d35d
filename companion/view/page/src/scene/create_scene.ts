// The picture of a model on a canvas: scene.ts fulfilled with three.
//
// Nothing is drawn but on demand: after show(), a turn of the view, a step of a flight or of the
// animation.

import * as three from "three";
import type { PageModel } from "../data/page_model";
import type { Camera } from "../state";
import { createAxes, drawAxes } from "./axes";
import type { Axes } from "./axes";
import { eachSectionCorner } from "./beams";
import { addControls } from "./controls";
import type { Place } from "./frame";
import { toPicture } from "./frame";
import { beginFlight, stepFlight } from "./flight";
import type { Flight } from "./flight";
import { placeLetters } from "./local_axes";
import { makePicture } from "./make_picture";
import { paletteOf, createStage, followDrawing } from "./stage";
import type { Stage } from "./stage";
import type { Thing } from "./pick";
import { findSeeingView, heightAround } from "./see_element";
import { findHit } from "./find_hit";
import type { Hit } from "./find_hit";
import type { Drawing, Insets, Picked, Scene } from "./scene";
import { countCalls, createCounter } from "./draw_counter";
import type { DrawCounter } from "./draw_counter";
import { aimCamera, createView, findInPlane, findRay, fitView, panView } from "./view";
import { projectPlace, toCamera, toView } from "./view";
import type { View } from "./view";
import { add, dot, takeVector } from "./vector";
import type { Vector } from "./vector";

export interface SceneOptions {
  // The graphics card is lost, or there again (null). The picture comes back by itself.
  onLost?: (message: string | null) => void;
}

interface Player {
  canvas: HTMLCanvasElement;
  renderer: three.WebGLRenderer;
  stage: Stage;
  view: View;
  width: number; // of the canvas, CSS pixels
  height: number;
  flight: Flight | null;
  share: number; // of the deformation, 0 .. 1
  isFitted: boolean; // the view shows all and nobody has turned it since
  insets: Insets;
  isAsked: boolean; // a frame is asked for
  moved: (() => void)[];
  counter: DrawCounter;
  axes: Axes;
}

// Throws an Error, whose message a page can show, where the browser has no WebGL 2.
export function createScene(
  canvas: HTMLCanvasElement,
  model: PageModel,
  options: SceneOptions = {},
): Scene {
  const renderer = createRenderer(canvas);
  const player: Player = {
    canvas,
    renderer,
    stage: createStage(model, renderer.capabilities.maxTextureSize),
    view: createView(),
    width: 1,
    height: 1,
    flight: null,
    share: 1,
    isFitted: false,
    insets: { left: 0, right: 0, top: 0, bottom: 0 },
    isAsked: false,
    moved: [],
    counter: createCounter(),
    axes: createAxes(),
  };
  resize(player);
  listenToCanvas(player, options);
  return sceneOf(player);
}

const noWebGl =
  "This browser cannot draw in three dimensions: WebGL 2 is missing or switched off. " +
  "A current browser with hardware acceleration shows the model.";

function createRenderer(canvas: HTMLCanvasElement): three.WebGLRenderer {
  const wishes = { antialias: true, alpha: false, powerPreference: "high-performance" as const };
  const context = canvas.getContext("webgl2", wishes) as WebGL2RenderingContext | null;
  if (!context) throw new Error(noWebGl);
  // Colours are written as they are.
  three.ColorManagement.enabled = false;
  const renderer = new three.WebGLRenderer({ ...wishes, canvas, context });
  renderer.outputColorSpace = three.LinearSRGBColorSpace;
  renderer.autoClear = false;
  return renderer;
}

function listenToCanvas(player: Player, options: SceneOptions): void {
  const { canvas } = player;
  canvas.addEventListener("webglcontextlost", (event) => {
    event.preventDefault();
    options.onLost?.("The graphics card was lost. The picture comes back when it is there again.");
  });
  canvas.addEventListener("webglcontextrestored", () => {
    options.onLost?.(null);
    askFrame(player);
  });
  addControls(canvas, {
    view: () => player.view,
    setView: (view) => {
      player.flight = null;
      player.isFitted = false;
      setView(player, view);
    },
    seenAt: (x, y) => hitAt(player, x, y)?.seen ?? null,
    planeAt: (x, y) =>
      findInPlane(player.view, findRay(cameraOf(player), x, y, player.width, player.height)),
  });
}

function sceneOf(player: Player): Scene {
  const { stage } = player;
  return {
    show: (drawing) => show(player, drawing),
    pick: (x, y) => pickAt(player, x, y),
    project: (place) =>
      projectPlace(cameraOf(player), toPicture(stage.frame, place), player.width, player.height),
    projectNode: (node) => {
      const place = placeOfNode(player, node);
      return projectPlace(cameraOf(player), place, player.width, player.height);
    },
    camera: () => toCamera(stage.frame, player.view),
    setCamera: (camera, isFlight) => setCamera(player, camera, isFlight),
    fit: (from) => {
      const camera = { ...toCamera(stage.frame, player.view), ...from };
      goTo(player, fitted(player, toView(stage.frame, camera, player.view)), true);
      player.isFitted = true;
    },
    fly: (place, size, element) => fly(player, place, size, element),
    picture: (width, height) =>
      makePicture(player.renderer, width, height, player.height, (draw) => drawOn(player, draw)),
    onCameraMoved: (call) => player.moved.push(call),
    drawCalls: () => ({ shells: player.counter.shells, beams: player.counter.beams }),
    resize: () => resize(player),
    setInsets: (insets) => {
      player.insets = insets;
      if (player.isFitted) resize(player);
    },
  };
}

function show(player: Player, drawing: Drawing): void {
  const { stage } = player;
  const isFirst = stage.drawing === null;
  const wasAnimated = stage.drawing?.state.isAnimated ?? false;
  followDrawing(stage, drawing);
  countCalls(player.counter, stage);
  if (wasAnimated && !drawing.state.isAnimated) player.share = 1;
  setMotion(player);
  if (isFirst) {
    const { camera } = drawing.state;
    player.view = camera ? toView(stage.frame, camera, fitted(player)) : fitted(player);
    player.isFitted = !camera;
  }
  askFrame(player);
}

// Displacements are drawn with the scale, in the frame of the picture; rotations with the scale.
function setMotion(player: Player): void {
  const { drawing, shared, frame } = player.stage;
  const scale = drawing && Number.isFinite(drawing.scale) ? drawing.scale * player.share : 0;
  shared.motion.value.set(scale / frame.size, scale);
}

function resize(player: Player): void {
  const { canvas, renderer } = player;
  player.width = Math.max(1, canvas.clientWidth);
  player.height = Math.max(1, canvas.clientHeight);
  // More than two device pixels in a CSS pixel cannot be seen.
  renderer.setPixelRatio(Math.min(2, window.devicePixelRatio || 1));
  renderer.setSize(player.width, player.height, false);
  if (player.isFitted) player.view = fitted(player);
  if (player.stage.drawing) drawFrame(player);
}

function askFrame(player: Player): void {
  if (player.isAsked) return;
  player.isAsked = true;
  requestAnimationFrame((time) => {
    player.isAsked = false;
    step(player, time);
    drawFrame(player);
  });
}

// A swing of the animated deformation, there and back, milliseconds.
const SwingTime = 2000;

function step(player: Player, time: number): void {
  if (player.flight) {
    const [view, isOver] = stepFlight(player.flight, time);
    if (isOver) player.flight = null;
    setView(player, view);
  }
  const { drawing } = player.stage;
  if (!drawing?.state.isAnimated || !drawing.results) return;
  player.share = (1 - Math.cos((2 * Math.PI * time) / SwingTime)) / 2;
  setMotion(player);
  askFrame(player);
}

function setView(player: Player, view: View): void {
  player.view = view;
  for (const call of player.moved) call();
  askFrame(player);
}

function goTo(player: Player, view: View, isFlight: boolean): void {
  player.isFitted = false;
  player.flight = isFlight ? beginFlight(player.view, view) : null;
  if (player.flight) askFrame(player);
  else setView(player, view);
}

function setCamera(player: Player, camera: Camera, isFlight: boolean): void {
  goTo(player, toView(player.stage.frame, camera, player.view), isFlight);
}

function fly(player: Player, place: Place, size: number, element?: Thing): void {
  const target = toPicture(player.stage.frame, place);
  const height = size > 0 ? size / player.stage.frame.size : player.view.height;
  const { frame } = player.stage;
  const around = toCamera(frame, { ...player.view, target, height });
  const view = toView(frame, around, player.view);
  const to = element && element.kind !== "node" ? seeing(player, element, view) : view;
  goTo(player, centreInFree(player, to), true);
}

function seeing(player: Player, element: Thing, view: View): View {
  const { stage, renderer, width, height } = player;
  if (!stage.drawing || renderer.getContext().isContextLost()) return view;
  const cameraFrom = (one: View): ReturnType<typeof cameraOf> =>
    cameraOf({ ...player, view: one });
  const drawnAt = (node: number): Vector => placeOfNode(player, node);
  const look = { renderer, width, height, cameraOf: cameraFrom, drawnAt };
  const around = Math.min(player.view.height, heightAround(stage, element, view));
  return findSeeingView(stage, look, element, { ...view, height: around });
}

function isOrthographic(player: Player): boolean {
  return player.stage.drawing?.state.isOrthographic ?? true;
}

// Room around the model in which glyphs and diagrams are drawn, parts of its diagonal.
const GlyphRoom = 0.25;

function cameraOf(
  player: Player,
  aspect = player.width / player.height,
): three.OrthographicCamera | three.PerspectiveCamera {
  const { stage, view } = player;
  const moved = stage.largestMove * stage.shared.motion.value.x;
  const radius = 0.5 + GlyphRoom + moved + stage.beams.largestExtent;
  const ball = { centre: [0, 0, 0] as Vector, radius };
  return aimCamera(view, isOrthographic(player), aspect, ball);
}

// What is shown fills the part of the canvas that insets leave free.
function fitted(player: Player, view: View = player.view): View {
  const { stage } = player;
  const [width, height] = freeSize(player);
  const each = (call: (place: Vector) => void): void => {
    for (const node of stage.shownNodes) {
      if (!isClipped(stage, node)) call(placeOfNode(player, node));
    }
    eachSectionCorner(stage.beams, (node, aside) => {
      if (!isClipped(stage, node)) call(add(placeOfNode(player, node), aside));
    });
  };
  const free = { aspect: width / height, share: height / player.height };
  return centreInFree(player, fitView(view, each, isOrthographic(player), free));
}

// Some of the canvas is always taken as free, so that nothing is fitted into nothing.
const LeastFree = 0.25;

function freeSize(player: Player): [number, number] {
  const { width, height, insets } = player;
  return [
    Math.max(LeastFree * width, width - insets.left - insets.right),
    Math.max(LeastFree * height, height - insets.top - insets.bottom),
  ];
}

// The view whose target is seen in the middle of the free part.
function centreInFree(player: Player, view: View): View {
  const { left, right, top, bottom } = player.insets;
  return panView(view, (left - right) / 2, (top - bottom) / 2, player.height);
}

function isClipped(stage: Stage, node: number): boolean {
  const { x, y, z, w } = stage.shared.clip.value;
  return dot([x, y, z], takeVector(stage.places, node)) > w;
}

// In the frame of the picture, as it is drawn.
function placeOfNode(player: Player, node: number): Vector {
  const { stage } = player;
  const place = takeVector(stage.places, node);
  const moves = stage.nodes.mesh.geometry.getAttribute("displacement").array;
  const factor = stage.shared.motion.value.x;
  for (let axis = 0; axis < 3; ++axis) place[axis] += factor * moves[3 * node + axis];
  return place;
}

function drawFrame(player: Player): void {
  if (!player.stage.drawing || player.renderer.getContext().isContextLost()) return;
  const ratio = player.renderer.getPixelRatio();
  const size = player.renderer.getDrawingBufferSize(new three.Vector2());
  drawOn(player, { width: size.x, height: size.y, ratio });
}

// Draws on the renderer's present target. Sizes in device pixels; ratio: of them to a CSS pixel.
function drawOn(player: Player, on: { width: number; height: number; ratio: number }): void {
  const { stage, renderer } = player;
  if (!stage.drawing) return;
  player.counter.shells = player.counter.beams = 0;
  stage.shared.viewport.value.set(on.width, on.height);
  stage.shared.pixel.value = on.ratio;
  const { background } = paletteOf(stage.drawing);
  const [red, green, blue] = background.map((value) => value / 255);
  renderer.setClearColor(new three.Color(red, green, blue), 1);
  renderer.clear();
  const perPixel = (player.view.height * on.ratio) / on.height;
  placeLetters(stage.localAxes, stage.shared.motion.value.x, perPixel);
  renderer.render(stage.scene, cameraOf(player, on.width / on.height));
  if (!stage.drawing.state.shows.axes) return;
  drawAxes(player.axes, renderer, player.view, paletteOf(stage.drawing), on, player.insets);
}

function hitAt(player: Player, x: number, y: number): Hit | null {
  if (!player.stage.drawing || player.renderer.getContext().isContextLost()) return null;
  const pixel = { x, y, width: player.width, height: player.height };
  return findHit(player.stage, player.renderer, cameraOf(player), pixel, (node) =>
    placeOfNode(player, node),
  );
}

function pickAt(player: Player, x: number, y: number): Picked | null {
  const hit = hitAt(player, x, y);
  return hit && { kind: hit.kind, number: hit.number, place: hit.place };
}
