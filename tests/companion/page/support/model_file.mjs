// Reads a model file, fem_solving.txt, for the tests of the page: a reader of its own, so that the
// page's numbers are compared with the file and not with what the program made of it.
//
// Rows and nodes count from 0, lines from 1.
import { readFileSync } from "node:fs";

export function readModelFile(path) {
  const lines = readFileSync(path, "utf8").split(/\r?\n/);
  const rows = (key, pattern) => readTable(lines, key, pattern);
  const number = "\\s*([-+.\\deE]+)\\s*";
  const list = (count) => Array(count).fill(number).join(",");
  const nodes = rows("NPOIN", `^\\d+:${list(3)}$`);
  const shells = rows("NELEM_S_4ND", `^\\d+:${list(4)}\\[${list(2)}\\]$`);
  const triangles = rows("NELEM_S_3ND", `^\\d+:${list(3)}\\[${list(2)}\\]$`);
  const beams = rows(
    "NELEM_B",
    `^\\d+:${list(2)}<${list(3)}>\\[${number},BeamSecType=${number},BeamSecIndex=${number},` +
      `BeamSecOz=${number},BeamSecMirrored=${number}\\]$`,
  );
  return {
    nodes: nodes.map(({ numbers, line }) => ({ place: numbers, line })),
    shells: shells.map((row) => shellOf(row, 4)),
    triangles: triangles.map((row) => shellOf(row, 3)),
    beams: beams.map(beamOf),
    supports: rows("NRN", "^\\s*(\\d+):\\s*(\\d)\\s+(\\d)\\s+(\\d)\\s+(\\d)\\s+(\\d)\\s+(\\d)\\s*$").map(
      ({ numbers }) => ({ node: numbers[0], holds: numbers.slice(1) }),
    ),
    thicknesses: lines.filter((line) => line.startsWith("TK=")).map((line) => Number(line.slice(3))),
    lines,
  };
}

// The rows behind the line with "KEY=", as many as it says.
function readTable(lines, key, pattern) {
  const head = lines.findIndex((line) => line.includes(`:${key}=`));
  const count = Number(lines[head].split("=")[1]);
  const form = new RegExp(pattern);
  return Array.from({ length: count }, (_, row) => {
    const found = form.exec(lines[head + 1 + row]);
    if (found === null) throw new Error(`${key}, row ${row}: ${lines[head + 1 + row]}`);
    return { numbers: found.slice(1).map(Number), line: head + 2 + row };
  });
}

function shellOf({ numbers, line }, corners) {
  const [material, thickness] = numbers.slice(corners);
  return { nodes: numbers.slice(0, corners), material, thickness, line };
}

function beamOf({ numbers, line }) {
  const [material, type, index, offset, mirrored] = numbers.slice(5);
  return { nodes: numbers.slice(0, 2), material, type, index, offset, mirrored, line };
}
