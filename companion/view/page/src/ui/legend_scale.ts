// The coloured bar of the legend with its limits, or the swatches of categories.

import { make } from "./dom";
import { formatLimits, formatNumber } from "./numbers";
import type { ColorScale } from "../fields/color_scale";

const MostCategories = 14; // rows that are listed; further ones are counted
const MostLabels = 12; // with more bands each second limit has its label

// beyond: whether there are values below, above the range.
export function drawScale(
  root: HTMLElement,
  scale: ColorScale,
  beyond: [boolean, boolean],
): void {
  if (scale.limits.length === 0) drawCategories(root, scale);
  else drawBar(root, scale, writeLimits(scale.limits, beyond));
}

// The outermost colours stand for all values beyond the range, too.
export function writeLimits(limits: readonly number[], beyond: [boolean, boolean]): string[] {
  const texts = formatLimits(limits);
  const last = texts.length - 1;
  if (beyond[0]) texts[0] = `≤ ${texts[0]}`;
  if (beyond[1]) texts[last] = `≥ ${texts[last]}`;
  return texts;
}

function drawBar(root: HTMLElement, scale: ColorScale, texts: string[]): void {
  const bands = scale.limits.length - 1;
  const bar = make("div", { class: "bar" });
  bar.style.background = gradientOf(scale.colors);
  const labels = make("div", { class: "labels" });
  const stride = bands > MostLabels ? 2 : 1;
  for (let k = bands; k >= 0; k -= stride) {
    const label = make("span", { text: texts[k] ?? "" });
    label.style.top = `${(100 * (bands - k)) / bands}%`;
    labels.append(label);
  }
  root.className = "scale";
  root.replaceChildren(bar, labels);
}

// The colours as they are, row by row: equal neighbours are one stretch.
function gradientOf(colors: Uint8Array): string {
  const rows = colors.length / 3;
  const stops: string[] = [];
  for (let row = 0; row < rows; ) {
    let end = row + 1;
    while (end < rows && cssColor(colors, end) === cssColor(colors, row)) end++;
    const color = cssColor(colors, row);
    stops.push(`${color} ${(100 * row) / rows}% ${(100 * end) / rows}%`);
    row = end;
  }
  return `linear-gradient(to top, ${stops.join(", ")})`;
}

export function cssColor(colors: Uint8Array, row: number): string {
  return `rgb(${colors[3 * row] ?? 0} ${colors[3 * row + 1] ?? 0} ${colors[3 * row + 2] ?? 0})`;
}

export function makeSwatchRow(text: string, color: readonly number[]): HTMLLIElement {
  const swatch = make("span", { class: "swatch" });
  swatch.style.background = `rgb(${color.join(" ")})`;
  return make("li", {}, swatch, make("span", { text, title: text }));
}

function drawCategories(root: HTMLElement, scale: ColorScale): void {
  const listed = scale.categories.slice(0, MostCategories);
  const rows = listed.map((category) => makeSwatchRow(category.label, category.color));
  const more = scale.categories.length - listed.length;
  if (more > 0) rows.push(make("li", { text: `and ${formatNumber(more)} more` }));
  root.className = "scale categories";
  root.replaceChildren(make("ul", {}, ...rows));
}
