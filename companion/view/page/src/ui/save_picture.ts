// Saves the view as PNG: the picture of the scene with title and legend drawn beside it.

import { cssColor, writeLimits } from "./legend_scale";
import { describeDeformation, describeLegend, nameCase } from "./legend_text";
import { formatNumber } from "./numbers";
import { headingOf } from "./quantity_text";
import { mainQuantity, showsLargest, valuesBeyond, type Shown } from "./shown";
import type { FieldRange, PlacedValue } from "../fields/quantity";
import type { Insets, Scene } from "../scene/scene";

// Lengths in CSS pixels, as multiples of a line.
const Line = 18;
const Margin = 20;
const LegendWidth = 230; // with margins
const BarWidth = 20;
const BarHeight = 220;
const LeastRatio = 2; // device pixels per CSS pixel, at least: pictures go into reports

type Canvas = HTMLCanvasElement;
type Pen = CanvasRenderingContext2D;

export async function savePicture(
  scene: Scene,
  shown: Shown,
  canvas: Canvas,
  insets: Insets,
): Promise<void> {
  const blob = await drawPicture(scene, shown, canvas, insets);
  const link = document.createElement("a");
  link.download = nameFile(shown);
  link.href = URL.createObjectURL(blob);
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000); // ms; the browser has read it by then
}

export function nameFile(shown: Shown): string {
  const words = [shown.model.title, mainQuantity(shown)?.id ?? "", nameCase(shown)];
  const name = words.filter((word) => word !== "").join(" ");
  return `${name.replace(/[^\p{L}\p{N}]+/gu, "-").replace(/^-|-$/g, "") || "model"}.png`;
}

// What sheets cover of the picture is left out at both sides.
async function drawPicture(
  scene: Scene,
  shown: Shown,
  canvas: Canvas,
  insets: Insets,
): Promise<Blob> {
  const ratio = Math.max(LeastRatio, window.devicePixelRatio);
  const [whole, height] = [canvas.clientWidth, canvas.clientHeight];
  const width = whole - insets.left - insets.right;
  const blob = await scene.picture(Math.round(whole * ratio), Math.round(height * ratio));
  const picture = await createImageBitmap(blob);
  const page = document.createElement("canvas");
  const hasLegend = shown.colors !== null;
  page.width = Math.round((width + (hasLegend ? LegendWidth : 0)) * ratio);
  page.height = Math.round(height * ratio);
  const pen = page.getContext("2d");
  if (pen === null) throw new Error("The browser offers no 2-D canvas.");
  const style = getComputedStyle(document.body);
  pen.fillStyle = style.backgroundColor;
  pen.fillRect(0, 0, page.width, page.height);
  pen.drawImage(picture, -insets.left * ratio, 0);
  if (hasLegend) pen.fillRect(width * ratio, 0, LegendWidth * ratio, page.height);
  pen.scale(ratio, ratio);
  pen.fillStyle = style.color;
  pen.textBaseline = "top";
  drawTitle(pen, shown, style.fontFamily);
  if (hasLegend) drawLegend(pen, shown, width + Margin / 2, style.fontFamily);
  drawOrigin(pen, shown, height, style.fontFamily);
  return new Promise((done, fail) => {
    const take = (made: Blob | null): void =>
      made === null ? fail(new Error("The browser made no picture.")) : done(made);
    page.toBlob(take, "image/png");
  });
}

function drawTitle(pen: Pen, shown: Shown, font: string): void {
  pen.font = `600 15px ${font}`;
  const name = nameCase(shown);
  pen.fillText(name === "" ? shown.model.title : `${shown.model.title}: ${name}`, Margin, Margin);
  pen.font = `13px ${font}`;
  pen.fillText(describeDeformation(shown), Margin, Margin + 1.3 * Line);
}

// Where the picture comes from, in small print.
function drawOrigin(pen: Pen, { model }: Shown, height: number, font: string): void {
  pen.font = `10px ${font}`;
  pen.fillText(`${model.file}, ${model.program}`, Margin, height - Margin);
}

function drawLegend(pen: Pen, shown: Shown, left: number, font: string): void {
  const quantity = mainQuantity(shown);
  const scale = shown.colors;
  if (quantity === null || scale === null) return;
  const ink = pen.fillStyle;
  let top = Margin;
  const write = (text: string, weight = 400): void => {
    pen.font = `${weight} 13px ${font}`;
    for (const line of wrapText(pen, text, LegendWidth - Margin)) {
      pen.fillText(line, left, top);
      top += Line;
    }
  };
  write(headingOf(quantity), 600);
  for (const line of describeLegend(shown)) write(line);
  top += Line / 2;
  for (const category of scale.categories) {
    pen.fillStyle = `rgb(${category.color.join(" ")})`;
    pen.fillRect(left, top, BarWidth, Line - 4);
    pen.fillStyle = ink;
    pen.fillText(category.label, left + BarWidth + 8, top, LegendWidth - BarWidth - 8 - Margin);
    top += Line;
  }
  if (scale.limits.length === 0) return;
  drawBar(pen, scale.colors, left, top);
  pen.fillStyle = ink;
  const bands = scale.limits.length - 1;
  writeLimits(scale.limits, valuesBeyond(shown)).forEach((text, k) =>
    pen.fillText(text, left + BarWidth + 8, top + BarHeight * (1 - k / bands) - 7),
  );
  top += BarHeight + Line;
  const least = showsLargest(shown) ? "least shown" : "min";
  if (shown.shellRange !== null) writeExtremes("Shells", shown.shellRange, least, write);
  if (shown.beamRange !== null) writeExtremes("Beams", shown.beamRange, least, write);
}

// Lines that are no wider than `width`, divided between words.
function wrapText(pen: Pen, text: string, width: number): string[] {
  const lines: string[] = [];
  for (const word of text.split(" ")) {
    const last = lines[lines.length - 1];
    const longer = `${last ?? ""} ${word}`;
    if (last === undefined || pen.measureText(longer).width > width) lines.push(word);
    else lines[lines.length - 1] = longer;
  }
  return lines;
}

function drawBar(pen: Pen, colors: Uint8Array, left: number, top: number): void {
  const rows = colors.length / 3;
  for (let row = 0; row < rows; row++) {
    pen.fillStyle = cssColor(colors, row);
    // A little higher than its share, so that no line of the ground shows between two.
    const high = top + (BarHeight * (rows - 1 - row)) / rows;
    pen.fillRect(left, high, BarWidth, Math.min(BarHeight / rows + 0.5, top + BarHeight - high));
  }
}

function writeExtremes(
  heading: string,
  { highest, lowest }: FieldRange,
  least: string, // what the lowest value is
  write: (text: string, weight?: number) => void,
): void {
  const nameOf = ({ kind, number, face }: PlacedValue): string =>
    face === "middle" || kind === "beam" ? `${kind} ${number}` : `${kind} ${number}, ${face} face`;
  write(heading, 600);
  write(`max ${formatNumber(highest.value)}, ${nameOf(highest)}`);
  const where = least === "min" ? nameOf(lowest) : `${lowest.kind} ${lowest.number}`;
  write(`${least} ${formatNumber(lowest.value)}, ${where}`);
}
