// Colour maps: tables of 256 colours, sRGB, 0 .. 255.
//
// All keep their order for people who do not tell red from green. cividis looks nearly the same to
// them as to all others (Nunez, Anderton & Renslow 2018). viridis: Smith & van der Walt 2015.
// blue-red is RdBu of ColorBrewer (Harrower & Brewer 2003), reversed. Categories: Okabe & Ito 2008.

export type Color = [number, number, number];

// What a person can choose; blue-red has white at zero and is for values with signs.
export const MapNames = ["cividis", "viridis", "blue-red", "grey"] as const;
type MapName = (typeof MapNames)[number];

// Unknown names are cividis: a name may come from an address.
function knownName(name: string): MapName {
  return MapNames.find((known) => known === name) ?? "cividis";
}

// Where there is no number. A strong pink, which stands in no map.
export const notNumberColor: Color = [230, 0, 150];

type Stop = [number, number, number, number]; // row of 256, red, green, blue

// Between these rows straight lines follow the published tables within 1.5 of 255.
const maps: Record<MapName, Stop[]> = {
  cividis: [
    [0, 0, 34, 78], [20, 0, 48, 112], [23, 1, 50, 113], [29, 20, 54, 112], [41, 41, 63, 110],
    [73, 76, 85, 108], [119, 117, 117, 117], [138, 134, 131, 121], [181, 176, 165, 113],
    [216, 213, 194, 94], [239, 239, 215, 72], [252, 254, 228, 52], [255, 254, 232, 56],
  ],
  viridis: [
    [0, 68, 1, 84], [24, 72, 35, 116], [48, 66, 64, 134], [82, 50, 101, 142], [132, 31, 148, 140],
    [149, 32, 164, 134], [163, 44, 177, 126], [179, 68, 191, 112], [200, 112, 207, 87],
    [236, 205, 225, 29], [244, 226, 228, 24], [253, 248, 230, 33], [255, 253, 231, 37],
  ],
  "blue-red": [
    [0, 5, 48, 97], [25.5, 33, 102, 172], [51, 67, 147, 195], [76.5, 146, 197, 222],
    [102, 209, 229, 240], [127.5, 247, 247, 247], [153, 253, 219, 199], [178.5, 244, 165, 130],
    [204, 214, 96, 77], [229.5, 178, 24, 43], [255, 103, 0, 31],
  ],
  grey: [[0, 30, 30, 30], [255, 240, 240, 240]],
};

// The colour at a place 0 .. 1 of a map.
function colorAt(name: string, place: number): Color {
  const stops = maps[knownName(name)];
  const row = 255 * Math.min(1, Math.max(0, place));
  const next = Math.max(1, stops.findIndex((stop) => stop[0] >= row));
  const [a, b] = [stops[next - 1], stops[next]];
  const t = (row - a[0]) / (b[0] - a[0]);
  const mix = (i: number) => Math.round(a[i] + t * (b[i] - a[i]));
  return [mix(1), mix(2), mix(3)];
}

// The table for values from range[0] to range[1], [256 x 3]. bands 0: continuous; else each of so
// many equal bands has one colour, the first and the last one those of the map's ends. blue-red has
// its white where the value is zero, also if the range is not symmetric.
export function colorTable(name: string, bands: number, range: [number, number]): Uint8Array {
  const table = new Uint8Array(3 * 256);
  for (let row = 0; row < 256; ++row) {
    table.set(colorAt(name, placeOfRow(name, bands, range, row)), 3 * row);
  }
  return table;
}

function placeOfRow(name: string, bands: number, range: [number, number], row: number): number {
  const share = (row + 0.5) / 256;
  const band = bands > 0 ? Math.min(bands - 1, Math.floor(share * bands)) : 0;
  if (name === "blue-red") {
    const at = bands > 0 ? (band + 0.5) / bands : row / 255;
    const value = (from: number) => range[0] + from * (range[1] - range[0]);
    const half = bands > 0 ? 0.5 / bands : 0;
    const largest = Math.max(Math.abs(value(half)), Math.abs(value(1 - half)));
    return largest > 0 ? 0.5 + (0.5 * value(at)) / largest : 0.5;
  }
  if (bands === 0) return row / 255;
  return bands === 1 ? 0.5 : band / (bands - 1);
}

// Colours of categories, by row. Black, which hides edges, is a grey.
const categoryColors: Color[] = [
  [86, 180, 233], [230, 159, 0], [0, 158, 115], [204, 121, 167],
  [240, 228, 66], [0, 114, 178], [213, 94, 0], [153, 153, 153],
];

// Each time the colours repeat they are mixed with white or black, by these parts.
const lightnessSteps = [0, 0.5, -0.4];

// Severity of findings: none, hint, warning, error.
const findingColors: Color[] = [[200, 203, 208], [86, 180, 233], [230, 159, 0], [200, 50, 20]];

// Front and back.
const sideColors: Color[] = [[150, 190, 220], [230, 159, 0]];

// id: of the quantity.
export function categoryColor(id: string, row: number): Color {
  if (id === "finding") return findingColors[row] ?? notNumberColor;
  if (id === "side") return sideColors[row] ?? notNumberColor;
  if (!(row >= 0)) return notNumberColor;
  const color = categoryColors[row % categoryColors.length];
  const step = lightnessSteps[Math.floor(row / categoryColors.length) % lightnessSteps.length];
  const end = step > 0 ? 255 : 0;
  return color.map((part) => Math.round(part + Math.abs(step) * (end - part))) as Color;
}

// The table for rows 0 .. count - 1, which goes with the range -0.5 .. count - 0.5. With more than
// 256 rows neighbours share a colour.
export function categoryTable(id: string, count: number): Uint8Array {
  const table = new Uint8Array(3 * 256);
  for (let row = 0; row < 256; ++row) {
    table.set(categoryColor(id, Math.floor(((row + 0.5) / 256) * count)), 3 * row);
  }
  return table;
}
