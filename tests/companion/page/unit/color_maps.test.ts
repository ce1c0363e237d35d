// Colour tables.
import assert from "node:assert/strict";
import { test } from "node:test";

import {
  categoryColor,
  categoryTable,
  colorTable,
  MapNames,
} from "../../../../companion/view/page/src/fields/color_maps";

function colorOf(table: Uint8Array, row: number): number[] {
  return [...table.subarray(3 * row, 3 * row + 3)];
}

test("cividis has the published colours", () => {
  // Nunez, Anderton & Renslow 2018, table of cividis, times 255. The straight lines
  // between stops are within 1.5; rounding adds 0.5.
  const published: [number, number[]][] = [
    [0, [0.0, 0.135112, 0.304751]],
    [20, [0.0, 0.188769, 0.439563]],
    [41, [0.159733, 0.245221, 0.429528]],
    [64, [0.263738, 0.307831, 0.422789]],
    [96, [0.38083, 0.395164, 0.435653]],
    [128, [0.488697, 0.485318, 0.471008]],
    [160, [0.609105, 0.579816, 0.463638]],
    [192, [0.736488, 0.680629, 0.424028]],
    [224, [0.870717, 0.789572, 0.343333]],
    [239, [0.93666, 0.843841, 0.280876]],
    [246, [0.968469, 0.869819, 0.24131]],
    [255, [0.995737, 0.909344, 0.217772]],
  ];
  const table = colorTable("cividis", 0, [0, 1]);
  for (const [row, color] of published) {
    color.forEach((part, i) => {
      const difference = Math.abs(colorOf(table, row)[i] - 255 * part);
      assert.ok(difference <= 2, `row ${row}: ${colorOf(table, row)} against ${color}`);
    });
  }
  assert.deepEqual(colorOf(table, 0), [0, 34, 78]);
  assert.deepEqual(colorOf(table, 255), [254, 232, 56]);
});

test("viridis has the published ends", () => {
  // Smith & van der Walt 2015: (0.267004, 0.004874, 0.329415) and (0.993248, 0.906157, 0.143936).
  const table = colorTable("viridis", 0, [0, 1]);
  assert.deepEqual(colorOf(table, 0), [68, 1, 84]);
  assert.deepEqual(colorOf(table, 255), [253, 231, 37]);
});

// Relative luminance (IEC 61966-2-1).
function luminance(color: number[]): number {
  const [r, g, b] = color.map((part) => {
    const c = part / 255;
    return c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
  });
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

test("maps for values without sign grow lighter from end to end", () => {
  for (const name of ["cividis", "viridis", "grey"]) {
    const table = colorTable(name, 32, [0, 1]);
    for (let row = 8; row < 256; row += 8) {
      assert.ok(luminance(colorOf(table, row)) > luminance(colorOf(table, row - 8)), name);
    }
  }
});

test("bands: each has one colour, the first and the last one the map's ends", () => {
  for (const name of MapNames) {
    const table = colorTable(name, 8, [-1, 1]);
    const colors = Array.from({ length: 256 }, (_, row) => colorOf(table, row).join());
    assert.equal(new Set(colors).size, 8);
    for (let row = 0; row < 256; ++row) assert.equal(colors[row], colors[32 * (row >> 5)]);
    const smooth = colorTable(name, 0, [-1, 1]);
    assert.deepEqual(colorOf(table, 0), colorOf(smooth, 0));
    assert.deepEqual(colorOf(table, 255), colorOf(smooth, 255));
  }
});

test("blue-red is white at zero, also in a range that is not symmetric", () => {
  // -1 .. 3: zero is at a quarter, between rows 63 and 64; the map's lighter side ends there.
  const table = colorTable("blue-red", 0, [-1, 3]);
  for (const row of [63, 64]) {
    assert.ok(colorOf(table, row).every((part) => part >= 240), `${colorOf(table, row)}`);
  }
  const [red, , blue] = colorOf(table, 0);
  assert.ok(blue > red);
  assert.deepEqual(colorOf(table, 255), [103, 0, 31]);
  // Of an odd number of bands the middle one is white.
  assert.deepEqual(colorOf(colorTable("blue-red", 5, [-2, 2]), 128), [247, 247, 247]);
});

test("blue-red without any width is its middle", () => {
  assert.deepEqual(colorOf(colorTable("blue-red", 0, [0, 0]), 9), [247, 247, 247]);
});

test("unknown maps are cividis", () => {
  assert.deepEqual(colorTable("constructor", 10, [0, 1]), colorTable("cividis", 10, [0, 1]));
});

test("categories: eight colours, then lighter, then darker, then again", () => {
  const colors = Array.from({ length: 24 }, (_, row) => categoryColor("part", row).join());
  assert.equal(new Set(colors).size, 24);
  assert.deepEqual(categoryColor("part", 24), categoryColor("part", 0));
  // Sky blue of Okabe & Ito, (86, 180, 233), and half way to white.
  assert.deepEqual(categoryColor("part", 0), [86, 180, 233]);
  assert.deepEqual(categoryColor("part", 8), [171, 218, 244]);
});

test("the table of categories has each row's colour where the row's value is looked up", () => {
  for (const count of [1, 2, 3, 7, 24, 100, 255, 256]) {
    const table = categoryTable("part", count);
    for (let row = 0; row < count; ++row) {
      // The range is -0.5 .. count - 0.5.
      const texel = Math.floor(((row + 0.5) / count) * 256);
      assert.deepEqual(colorOf(table, texel), [...categoryColor("part", row)]);
    }
  }
});
