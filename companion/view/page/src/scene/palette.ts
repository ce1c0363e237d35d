// The colours of the picture that are not those of a colour map, sRGB, 0 .. 255.

export type Rgb = [number, number, number];

export interface Palette {
  background: Rgb;
  shell: Rgb; // without a quantity
  beam: Rgb;
  front: Rgb; // upper and lower faces, where normals are shown
  back: Rgb;
  edge: Rgb; // of elements
  outline: Rgb; // free edges and folds, as they are drawn
  undeformed: Rgb;
  freeEdge: Rgb;
  cut: Rgb; // where the clipping plane cuts
  picked: Rgb;
  support: Rgb;
  rotation: Rgb; // rotations that are held
  force: Rgb;
  moment: Rgb;
  pressure: Rgb;
  prescribed: Rgb;
  reaction: Rgb;
  error: Rgb;
  warning: Rgb;
  hint: Rgb;
  axes: [Rgb, Rgb, Rgb];
}

export const lightPalette: Palette = {
  background: [247, 248, 250],
  shell: [190, 202, 216],
  beam: [146, 164, 186],
  front: [126, 168, 208],
  back: [226, 166, 118],
  edge: [22, 32, 46],
  outline: [32, 42, 56],
  undeformed: [176, 183, 194],
  freeEdge: [210, 70, 30],
  cut: [20, 26, 36],
  picked: [0, 122, 255],
  support: [46, 110, 96],
  rotation: [94, 150, 136],
  force: [188, 52, 36],
  moment: [126, 62, 158],
  pressure: [196, 92, 40],
  prescribed: [8, 120, 158],
  reaction: [36, 124, 60],
  error: [196, 32, 42],
  warning: [206, 128, 0],
  hint: [46, 110, 190],
  axes: [
    [192, 56, 48],
    [52, 132, 60],
    [48, 92, 190],
  ],
};

export const darkPalette: Palette = {
  background: [22, 25, 30],
  shell: [104, 120, 140],
  beam: [138, 156, 178],
  front: [86, 132, 178],
  back: [188, 128, 82],
  edge: [8, 10, 14],
  outline: [206, 213, 222],
  undeformed: [84, 92, 104],
  freeEdge: [255, 122, 74],
  cut: [240, 244, 250],
  picked: [92, 178, 255],
  support: [112, 190, 170],
  rotation: [150, 208, 194],
  force: [255, 116, 96],
  moment: [202, 146, 236],
  pressure: [240, 152, 98],
  prescribed: [92, 194, 230],
  reaction: [116, 204, 136],
  error: [255, 100, 104],
  warning: [246, 184, 62],
  hint: [122, 176, 246],
  axes: [
    [240, 116, 106],
    [122, 200, 128],
    [126, 164, 250],
  ],
};
