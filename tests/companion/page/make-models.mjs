// Writes small models whose stresses are known by hand: node make-models.mjs FOLDER
//
// N and mm. Each part stands for itself, so that what is wrong with one does not reach the others.
import { mkdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";

const Side = 100; // of the squares
const Pitch = 150; // of the parts, along y
const Modulus = 200000;

const emptyModel = () => ({
  thicknesses: [],
  tubes: [],
  nodes: [],
  shells: [],
  triangles: [],
  beams: [],
  supports: [],
  forces: [],
});

// A square under tension along x, free to contract: sigma x is `stress` everywhere on both faces,
// all other stresses are zero. As one four-node shell or as two triangles.
function addSquare(model, stress, areTriangles) {
  const first = model.nodes.length;
  const y = (model.thicknesses.length + model.tubes.length) * Pitch;
  const thickness = 1 + model.thicknesses.length; // each part its own
  model.thicknesses.push(thickness);
  for (const [dx, dy] of [[0, 0], [Side, 0], [Side, Side], [0, Side]]) {
    model.nodes.push([dx, y + dy, 0]);
  }
  const [a, b, c, d] = [0, 1, 2, 3].map((k) => first + k);
  const row = model.thicknesses.length - 1;
  if (areTriangles) model.triangles.push([a, b, c, row], [a, c, d, row]);
  else model.shells.push([a, b, c, d, row]);
  // Out of its plane it is held everywhere, in its plane as a rigid body.
  model.supports.push([a, "1 1 1 1 1 1"], [b, "0 0 1 1 1 1"], [c, "0 0 1 1 1 1"]);
  model.supports.push([d, "1 0 1 1 1 1"]);
  const force = (stress * thickness * Side) / 2;
  model.forces.push([b, [force, 0, 0, 0, 0, 0]], [c, [force, 0, 0, 0, 0, 0]]);
}

// A tube along x, clamped at its first node, under the axial force `force`.
function addTube(model, force, name) {
  const first = model.nodes.length;
  const y = (model.thicknesses.length + model.tubes.length) * Pitch;
  model.tubes.push({ name, radius: 20, wall: 2 });
  model.nodes.push([0, y, 0], [Side * 4, y, 0]);
  model.beams.push([first, first + 1, [0, 0, 1], 2, model.tubes.length - 1]);
  model.supports.push([first, "1 1 1 1 1 1"]);
  model.forces.push([first + 1, [force, 0, 0, 0, 0, 0]]);
}

function writeModel(folder, model) {
  const lines = ["### Toln_Korvex release=3.0 ###", "Number of materials:NMT=1"];
  const count = (title, key, rows) => lines.push(`Number of ${title}:${key}=${rows.length}`);
  lines.push("#0:", `E=${Modulus}`, "Mu=0.3", "Density=7.85e-9");
  count("shell thicknesses", "NTK", model.thicknesses);
  model.thicknesses.forEach((value, row) => lines.push(`#${row}:`, `TK=${value}`));
  count("T_beam sections", "NTBS", []);
  count("L_beam sections", "NLBS", []);
  count("C_beam sections", "NCBS", model.tubes);
  for (const { name, radius, wall } of model.tubes) lines.push(name, `R=${radius}`, `T=${wall}`);
  count("nodal points", "NPOIN", model.nodes);
  model.nodes.forEach((place, row) => lines.push(`${row}:${place.join(",")}`));
  const writeShells = (rows) =>
    rows.forEach((row, k) => lines.push(`${k}:${row.slice(0, -1).join(",")}[0,${row.at(-1)}]`));
  count("four-nodes shell elements", "NELEM_S_4ND", model.shells);
  writeShells(model.shells);
  count("three-nodes shell elements", "NELEM_S_3ND", model.triangles);
  writeShells(model.triangles);
  count("beam elements", "NELEM_B", model.beams);
  model.beams.forEach(([i, j, z, type, index], row) =>
    lines.push(
      `${row}:${i},${j}<${z.join(",")}>[0,BeamSecType=${type},BeamSecIndex=${index},` +
        "BeamSecOz=0,BeamSecMirrored=0]",
    ),
  );
  count("restricted nodal points", "NRN", model.supports);
  for (const [node, flags] of model.supports) lines.push(`${node}: ${flags}`);
  count("forces", "NFOR", model.forces);
  for (const [node, force] of model.forces) lines.push(`${node}<${force.join(",")}>`);
  count("distributed loads on four-nodes shell elements", "NDL_S_4ND", []);
  count("distributed loads on three-nodes shell elements", "NDL_S_3ND", []);
  count("distributed loads on beam elements", "NDL_B", []);
  mkdirSync(folder, { recursive: true });
  writeFileSync(join(folder, "fem_solving.txt"), `${lines.join("\n")}\n`);
}

// Ten squares with 5, 15 .. 95 N/mm², the last one as triangles, and two tubes.
function makeStrips(name = "tube") {
  const model = emptyModel();
  for (let k = 0; k < 10; k += 1) addSquare(model, 5 + 10 * k, k === 9);
  addTube(model, 10000, name);
  addTube(model, -20000, "strut");
  return model;
}

// What kvx import leaves beside a model that it has made: its numbers in the deck are 1001, 1003 ..
// of nodes, 5001, 5002 .. of shells, 6001 .. of triangles, 7001 .. of beams.
function writeImport(folder, model) {
  const numbers = (rows, first, step = 1) => rows.map((_, k) => first + step * k);
  const elements = (rows, first, type) => ({ numbers: numbers(rows, first), types: rows.map(() => type) });
  const group = (name, source, rows) => ({
    name,
    source,
    nodes: [],
    shells4: [],
    shells3: [],
    beams: [],
    ...rows,
  });
  const origin = {
    kvx: 1,
    source: "strips <1>.bdf",
    format: "Nastran bulk data",
    hash: hashStructure(model).toString(16).padStart(16, "0"),
    files: [],
    types: ["CQUAD4", "CTRIA3", "CBAR"],
    nodes: numbers(model.nodes, 1001, 2),
    shells4: elements(model.shells, 5001, 0),
    shells3: elements(model.triangles, 6001, 1),
    beams: elements(model.beams, 7001, 2),
    materials: ["MAT1 7"],
    thicknesses: model.thicknesses.map((_, k) => `PSHELL ${10 * (k + 1)}`),
    sectionsT: [],
    sectionsL: [],
    sectionsC: ["PBARL 1", "PBARL 2"],
    groups: [
      group("deck", "*ELSET", { shells4: [0, 1, 2], nodes: [0, 1] }),
      group("<b>bars</b>", "*ELSET", { beams: [0, 1], shells4: [2, 3] }),
    ],
    report: { cards: {}, entries: [] },
  };
  writeFileSync(join(folder, "import.json"), JSON.stringify(origin));
}

// As companion/tables/model_origin.cpp has it: by words of 64 bits, of the nodes' coordinates and
// of the elements' nodes, each list after its length.
function hashStructure({ nodes, shells, triangles, beams }) {
  let hash = 14695981039346656037n;
  const add = (word) => {
    hash = BigInt.asUintN(64, (hash ^ word) * 1099511628211n);
    hash ^= hash >> 32n;
  };
  const bits = new DataView(new ArrayBuffer(8));
  const addNumber = (value) => {
    bits.setFloat64(0, value === 0 ? 0 : value);
    add(bits.getBigUint64(0));
  };
  add(BigInt(nodes.length));
  for (const place of nodes) place.forEach(addNumber);
  const addRows = (rows, corners) => {
    add(BigInt(corners * rows.length));
    for (const row of rows) row.slice(0, corners).forEach((node) => add(BigInt(node)));
  };
  addRows(shells, 4);
  addRows(triangles, 3);
  addRows(beams, 2);
  return hash;
}

const folder = process.argv[2];
writeModel(join(folder, "strips"), makeStrips());
writeModel(join(folder, "imported"), makeStrips());
writeImport(join(folder, "imported"), makeStrips());

// Names that a careless page would take for its own text.
const Planted = `</script><img src=x onerror=alert(1)> & "tube" 'T' <!-- </style> \\u003c`;
writeModel(join(folder, "planted"), makeStrips(Planted));

// On an edge of the last square stands a beam whose web shall point along its axis: this part has no
// numbers, the others have theirs.
const broken = makeStrips();
broken.beams.push([36, 37, [1, 0, 0], 2, 0]);
writeModel(join(folder, "broken"), broken);
