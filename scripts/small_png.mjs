// Writes PNG pictures small (W3C, Portable Network Graphics, second edition, section 5): flat colours and
// letters compress best without filters. Colours of large areas stay as they are; the many others, of
// edges and shades, are rounded to 64 levels a channel, which nobody sees.
import { deflateSync } from "node:zlib";

const Step = 4; // between levels of a channel
const LargeArea = 200; // pixels

// picture: { width, height, channels, bytes } of 3 or 4 channels, as read by readPng; no alpha is
// kept. Returns the file.
export function writeSmallPng({ width, height, channels, bytes }) {
  const row = 1 + 3 * width;
  const pixels = Buffer.alloc(row * height); // each row begins with its filter, 0: none
  const areas = new Map();
  const colorAt = (at) => bytes.readUIntBE(at, 3);
  for (let at = 0; at < bytes.length; at += channels) {
    areas.set(colorAt(at), (areas.get(colorAt(at)) ?? 0) + 1);
  }
  for (let y = 0; y < height; y += 1) {
    for (let x = 0; x < width; x += 1) {
      const from = (y * width + x) * channels;
      const step = areas.get(colorAt(from)) >= LargeArea ? 1 : Step;
      for (let channel = 0; channel < 3; channel += 1) {
        const value = step * Math.round(bytes[from + channel] / step);
        pixels[y * row + 1 + 3 * x + channel] = Math.min(255, value);
      }
    }
  }
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header.set([8, 2, 0, 0, 0], 8); // 8 bits, red, green and blue
  return Buffer.concat([
    Buffer.from([137, 80, 78, 71, 13, 10, 26, 10]),
    makeChunk("IHDR", header),
    makeChunk("IDAT", deflateSync(pixels, { level: 9 })),
    makeChunk("IEND", Buffer.alloc(0)),
  ]);
}

function makeChunk(type, data) {
  const named = Buffer.concat([Buffer.from(type, "latin1"), data]);
  const [length, sum] = [Buffer.alloc(4), Buffer.alloc(4)];
  length.writeUInt32BE(data.length);
  sum.writeUInt32BE(checkSum(named));
  return Buffer.concat([length, named, sum]);
}

// CRC-32 of Portable Network Graphics, appendix D.
function checkSum(bytes) {
  let sum = 0xffffffff;
  for (const byte of bytes) {
    sum ^= byte;
    for (let bit = 0; bit < 8; bit += 1) sum = (sum >>> 1) ^ (sum & 1 ? 0xedb88320 : 0);
  }
  return (sum ^ 0xffffffff) >>> 0;
}
