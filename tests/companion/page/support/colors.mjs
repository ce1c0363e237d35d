// The colour map cividis, of its authors' table: Nunez, Anderton and Renslow, PLoS ONE 13(7), 2018,
// with 256 colours. Some of them, as numbers from 0 to 1; between those given it is nearly straight.
const Anchors = [
  [0, 0.0, 0.135112, 0.304751],
  [6, 0.0, 0.152673, 0.343704],
  [13, 0.0, 0.1708, 0.3931],
  [17, 0.0, 0.18161, 0.421859],
  [19, 0.0, 0.186915, 0.435532],
  [22, 0.0, 0.193366, 0.441561],
  [23, 0.003602, 0.195911, 0.441564],
  [25, 0.03211, 0.201199, 0.440785],
  [28, 0.068968, 0.209372, 0.438863],
  [34, 0.117612, 0.225935, 0.434308],
  [42, 0.165113, 0.247965, 0.428908],
  [51, 0.208926, 0.272546, 0.424809],
  [68, 0.279411, 0.318677, 0.423031],
  [85, 0.342246, 0.364939, 0.428559],
  [102, 0.401418, 0.41179, 0.440708],
  [119, 0.458366, 0.459552, 0.460457],
  [128, 0.488697, 0.485318, 0.471008],
  [136, 0.51792, 0.508454, 0.472707],
  [153, 0.582087, 0.55867, 0.468118],
  [170, 0.648222, 0.610553, 0.454801],
  [187, 0.716177, 0.664384, 0.432386],
  [204, 0.785965, 0.720438, 0.399613],
  [221, 0.857809, 0.778969, 0.353259],
  [238, 0.93218, 0.840159, 0.28588],
  [251, 0.992218, 0.888385, 0.205468],
  [252, 0.994847, 0.892954, 0.203445],
  [255, 0.995737, 0.909344, 0.217772],
];

// The straight lines between the anchors leave the table by less than one of 255 levels; rounding to
// bytes adds half of one, the picture's own rounding another.
export const CividisLevels = 2;

// The colour at a share 0 .. 1 of the map: red, green and blue from 0 to 255.
export function cividisAt(share) {
  const row = 255 * Math.min(1, Math.max(0, share));
  const next = Math.max(1, Anchors.findIndex((anchor) => anchor[0] >= row));
  const [low, high] = [Anchors[next - 1], Anchors[next]];
  const part = (row - low[0]) / (high[0] - low[0]);
  return [1, 2, 3].map((channel) => 255 * (low[channel] + part * (high[channel] - low[channel])));
}

// The largest difference of two colours in one channel.
export function colorDistance(one, other) {
  return Math.max(...one.map((value, channel) => Math.abs(value - other[channel])));
}

// Contrast of two colours, 1 to 21 (W3C, Web Content Accessibility Guidelines 2.1, section 1.4.3).
export function contrastOf(one, other) {
  const [low, high] = [luminanceOf(one), luminanceOf(other)].sort((a, b) => a - b);
  return (high + 0.05) / (low + 0.05);
}

function luminanceOf(color) {
  const [red, green, blue] = color.map((value) => {
    const share = value / 255;
    return share <= 0.03928 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
  });
  return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}
