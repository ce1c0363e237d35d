// The picture as a PNG of any size, drawn into a target of its own: the canvas keeps no pixels
// after a frame.

import * as three from "three";

export interface Sheet {
  width: number; // device pixels
  height: number;
  ratio: number; // of them to a CSS pixel: how thick lines are
}

// screenHeight: of the canvas, CSS pixels; lines and glyphs are as large in the picture as there.
export async function makePicture(
  renderer: three.WebGLRenderer,
  width: number,
  height: number,
  screenHeight: number,
  draw: (sheet: Sheet) => void,
): Promise<Blob> {
  const most = renderer.capabilities.maxTextureSize;
  const isPossible = width >= 1 && height >= 1 && Math.max(width, height) <= most;
  if (!isPossible) throw new Error(`A picture has 1 to ${most} pixels along each side.`);
  const [w, h] = [Math.round(width), Math.round(height)];
  const target = new three.WebGLRenderTarget(w, h, { samples: 4 });
  const bytes = new Uint8Array(4 * w * h);
  renderer.setRenderTarget(target);
  draw({ width: w, height: h, ratio: Math.max(1, h / screenHeight) });
  renderer.readRenderTargetPixels(target, 0, 0, w, h, bytes);
  renderer.setRenderTarget(null);
  target.dispose();
  return encodePng(bytes, w, h);
}

// bytes: RGBA, the lowest row first.
function encodePng(bytes: Uint8Array, width: number, height: number): Promise<Blob> {
  const canvas = document.createElement("canvas");
  canvas.width = width;
  canvas.height = height;
  const context = canvas.getContext("2d");
  if (!context) throw new Error("This browser makes no pictures.");
  const image = context.createImageData(width, height);
  for (let row = 0; row < height; ++row) {
    const from = 4 * width * (height - 1 - row);
    image.data.set(bytes.subarray(from, from + 4 * width), 4 * width * row);
  }
  // Blending leaves alphas below 1; the picture has none.
  for (let at = 3; at < image.data.length; at += 4) image.data[at] = 255;
  context.putImageData(image, 0, 0);
  return new Promise((resolve, reject) => {
    canvas.toBlob((blob) => {
      if (blob) resolve(blob);
      else reject(new Error("This browser makes no picture of this size."));
    }, "image/png");
  });
}
