// The small triad of the global axes at the lower left: lines and letters, drawn over the picture.

import * as three from "three";
import { createLines, setLines } from "./lines";
import type { Palette, Rgb } from "./palette";
import { createUniforms, setColor } from "./shaders";
import type { SharedUniforms } from "./shaders";
import { placeCamera } from "./view";
import type { View } from "./view";

export interface Axes {
  scene: three.Scene;
  shared: SharedUniforms; // of its own: neither deformation nor clip
  lines: three.RawShaderMaterial[];
  letters: three.Sprite[];
  palette: Palette | null;
}

const AxesSize = 92; // CSS pixels, the square that the triad fills

// The eye sees 2.6 units of length: axes of 0.75, letters of 0.42 beyond them.
const Seen = 2.6;
const AxisLength = 0.78;
const LetterPlace = 1.05;
const LetterSize = 0.46;

export function createAxes(): Axes {
  const shared = createUniforms();
  const axes: Axes = { scene: new three.Scene(), shared, lines: [], letters: [], palette: null };
  for (let axis = 0; axis < 3; ++axis) {
    const style = { width: 2, opacity: 1, isDeformed: false, lift: 0, isClipped: false, border: 0 };
    const line = createLines(shared, style);
    const end = [0, 0, 0];
    end[axis] = AxisLength;
    setLines(line, {
      count: 1,
      starts: new Float32Array(3),
      ends: new Float32Array(end),
      startMoves: null,
      endMoves: null,
      values: null,
      extents: null,
    });
    const letter = new three.Sprite(new three.SpriteMaterial({ depthTest: false }));
    letter.position.setComponent(axis, LetterPlace);
    letter.scale.setScalar(LetterSize);
    axes.lines.push(line.mesh.material);
    axes.letters.push(letter);
    axes.scene.add(line.mesh, letter);
  }
  return axes;
}

function paintAxes(axes: Axes, palette: Palette): void {
  if (axes.palette === palette) return;
  axes.palette = palette;
  palette.axes.forEach((color, axis) => {
    setColor(axes.lines[axis].uniforms.lineColor, color);
    const { material } = axes.letters[axis];
    material.map?.dispose();
    material.map = drawLetter("XYZ"[axis], color);
    material.needsUpdate = true;
  });
}

export function drawLetter(letter: string, color: Rgb): three.CanvasTexture {
  const side = 64; // pixels: some 16 on the screen, with room for fine screens
  const canvas = document.createElement("canvas");
  canvas.width = canvas.height = side;
  const context = canvas.getContext("2d");
  if (context) {
    context.font = "600 48px system-ui, sans-serif";
    context.textAlign = "center";
    context.textBaseline = "middle";
    context.fillStyle = `rgb(${color.join(" ")})`;
    context.fillText(letter, side / 2, side / 2 + 3);
  }
  return new three.CanvasTexture(canvas);
}

// from: of the triad, CSS pixels from the lower left corner; ratio: device pixels in a CSS pixel.
// Leaves the viewport on the whole target: width x height.
export function drawAxes(
  axes: Axes,
  renderer: three.WebGLRenderer,
  view: View,
  palette: Palette,
  on: { width: number; height: number; ratio: number },
  from: { left: number; bottom: number },
): void {
  paintAxes(axes, palette);
  const side = Math.round(AxesSize * on.ratio);
  axes.shared.viewport.value.set(side, side);
  axes.shared.pixel.value = on.ratio;
  const half = Seen / 2;
  const camera = new three.OrthographicCamera(-half, half, half, -half, 0, 10);
  placeCamera(camera, { ...view, target: [0, 0, 0] }, 5);
  const target = renderer.getRenderTarget();
  const set = (x: number, y: number, width: number, height: number): void => {
    const { ratio } = on;
    // Viewports of the canvas are in CSS pixels, those of targets in their own.
    if (target) target.viewport.set(x, y, width, height);
    else renderer.setViewport(x / ratio, y / ratio, width / ratio, height / ratio);
    if (target) renderer.setRenderTarget(target);
  };
  set(Math.round(from.left * on.ratio), Math.round(from.bottom * on.ratio), side, side);
  renderer.clearDepth();
  renderer.render(axes.scene, camera);
  set(0, 0, on.width, on.height);
}
