// Reads the solver's result files for the tests of the page.
import { readFileSync } from "node:fs";
import { join } from "node:path";

// By node: ux, uy, uz, rx, ry, rz as they are written.
export function readDisplacements(folder) {
  const lines = readFileSync(join(folder, "Node_Dis.txt"), "utf8").trimEnd().split("\n").slice(1);
  return lines.map((line) => columnsOf(line));
}

// By element and corner: { node, upper, lower }, each face SX, SY, SZ, TXY, TXZ, TYZ and the
// equivalent stress.
export function readStresses(folder, isAveraged) {
  const name = isAveraged ? "Shell element average node stress.txt" : "Shell element node stress.txt";
  const found = { shells: [], triangles: [] };
  let element = null;
  let upper = null;
  for (const line of readFileSync(join(folder, name), "utf8").split("\n")) {
    if (line.startsWith("Four") || line.startsWith("Three")) {
      element = [];
      (line.startsWith("Four") ? found.shells : found.triangles).push(element);
    } else if (/^\s*\d+:/.test(line)) {
      // Two lines a corner: the upper face, then the lower one.
      if (upper === null) {
        upper = columnsOf(line);
      } else {
        element.push({ node: Number(line.split(":")[0]), upper, lower: columnsOf(line) });
        upper = null;
      }
    }
  }
  return found;
}

function columnsOf(line) {
  return line.slice(line.indexOf(":") + 1).trim().split(/\s+/).map(Number);
}

// The rows of a table of kvx as records: text by column.
export function readCsv(file) {
  const lines = readFileSync(file, "utf8").trimEnd().split("\n").filter((line) => !line.startsWith("#"));
  const heads = lines[0].split(",");
  return lines.slice(1).map((line) => {
    const cells = line.split(",");
    return Object.fromEntries(heads.map((head, k) => [head, cells[k]]));
  });
}
