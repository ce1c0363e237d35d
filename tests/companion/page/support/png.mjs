// Reads PNG pictures as browsers write them: 8 bits a channel, RGB or RGBA, not interlaced
// (W3C, Portable Network Graphics, second edition, sections 5, 9 and 11).
import assert from "node:assert/strict";
import { inflateSync } from "node:zlib";

const Signature = Buffer.from([137, 80, 78, 71, 13, 10, 26, 10]);

// The picture as { width, height, channels, bytes }: rows from above, pixels from the left.
export function readPng(file) {
  assert.ok(file.subarray(0, 8).equals(Signature), "no PNG");
  let header = null;
  const packed = [];
  for (let at = 8; at < file.length; ) {
    const length = file.readUInt32BE(at);
    const type = file.toString("latin1", at + 4, at + 8);
    const data = file.subarray(at + 8, at + 8 + length);
    if (type === "IHDR") header = data;
    if (type === "IDAT") packed.push(data);
    at += 12 + length;
  }
  const width = header.readUInt32BE(0);
  const height = header.readUInt32BE(4);
  const channels = { 2: 3, 6: 4 }[header[9]];
  assert.ok(header[8] === 8 && channels && header[12] === 0, "a PNG of another form");
  const bytes = unfilter(inflateSync(Buffer.concat(packed)), width * channels, height, channels);
  return { width, height, channels, bytes };
}

// Red, green and blue of a pixel, 0 to 255.
export function pixelOf(picture, x, y) {
  const at = (Math.floor(y) * picture.width + Math.floor(x)) * picture.channels;
  return [...picture.bytes.subarray(at, at + 3)];
}

// How many pixels hold a condition of red, green and blue.
export function countPixels(picture, holds) {
  let count = 0;
  for (let at = 0; at < picture.bytes.length; at += picture.channels) {
    if (holds(picture.bytes[at], picture.bytes[at + 1], picture.bytes[at + 2])) count += 1;
  }
  return count;
}

// How many pixels of two pictures of one size differ by more than a few levels.
export function countDifferences(one, other, levels = 8) {
  assert.deepEqual([one.width, one.height], [other.width, other.height]);
  let count = 0;
  for (let y = 0; y < one.height; y += 1) {
    for (let x = 0; x < one.width; x += 1) {
      const a = pixelOf(one, x, y);
      const b = pixelOf(other, x, y);
      if (a.some((value, channel) => Math.abs(value - b[channel]) > levels)) count += 1;
    }
  }
  return count;
}

// Each row begins with its filter: none, or the difference to the left, to above, to the mean of
// both, or to the one of left, above and upper left that is nearest to left + above - upper left.
function unfilter(filtered, rowBytes, height, step) {
  const bytes = Buffer.alloc(rowBytes * height);
  for (let y = 0; y < height; y += 1) {
    const filter = filtered[y * (rowBytes + 1)];
    const from = y * (rowBytes + 1) + 1;
    const to = y * rowBytes;
    for (let i = 0; i < rowBytes; i += 1) {
      const left = i >= step ? bytes[to + i - step] : 0;
      const above = y > 0 ? bytes[to + i - rowBytes] : 0;
      const corner = i >= step && y > 0 ? bytes[to + i - rowBytes - step] : 0;
      bytes[to + i] = filtered[from + i] + predict(filter, left, above, corner);
    }
  }
  return bytes;
}

function predict(filter, left, above, corner) {
  if (filter === 0) return 0;
  if (filter === 1) return left;
  if (filter === 2) return above;
  if (filter === 3) return (left + above) >> 1;
  assert.equal(filter, 4);
  const guess = left + above - corner;
  const [a, b, c] = [left, above, corner].map((value) => Math.abs(guess - value));
  if (a <= b && a <= c) return left;
  return b <= c ? above : corner;
}
