// Reads what stands beside a page for tests: the page as a document, the solver's result files with
// their numbers as text, tables of kvx, lines of the model file.

import { existsSync, readdirSync, readFileSync } from "node:fs";

import type { PageTexts } from "../../../../companion/view/page/src/data/load_model";

// A load case of a page with the folder of its result files.
export interface PageFolder {
  name: string;
  page: string; // file
  caseName: string; // empty: the only one
  results: string; // folder
}

// FOLDER/NAME.html with results in FOLDER/NAME, or those of its cases in FOLDER/NAME/results.
export function listPages(folder: string): PageFolder[] {
  if (folder === "" || !existsSync(folder)) return [];
  const names = readdirSync(folder)
    .filter((file) => file.endsWith(".html"))
    .map((file) => file.slice(0, -".html".length));
  return names.flatMap((name) => {
    const page = `${folder}/${name}.html`;
    const cases = `${folder}/${name}/results`;
    const caseNames = existsSync(cases) ? readdirSync(cases) : [];
    return [
      { name, page, caseName: "", results: `${folder}/${name}` },
      ...caseNames.map((caseName) => ({
        name: `${name}, ${caseName}`,
        page,
        caseName,
        results: `${cases}/${caseName}`,
      })),
    ].filter(({ results }) => existsSync(`${results}/Node_Dis.txt`));
  });
}

// The scripts with data, as a browser would find them: they have no markup inside.
export function openPage(file: string): PageTexts {
  const html = readFileSync(file, "utf8");
  const texts = new Map<string, string>();
  for (const id of html.matchAll(/<script type="[^"]*" id="(kvx-[^"]*)">/g)) {
    const start = id.index + id[0].length;
    texts.set(id[1], html.slice(start, html.indexOf("</script>", start)));
  }
  return {
    getElementById(id: string) {
      const text = texts.get(id);
      return text === undefined ? null : { textContent: text };
    },
  };
}

export function readLines(file: string): string[] {
  return readFileSync(file, "utf8").split(/\r?\n/);
}

// The page has no zero and no NaN with a sign.
function dropSign(text: string): string {
  return /^-(0|nan)$/.test(text) ? text.slice(1) : text;
}

// The columns behind the number of a row.
function columnsOf(line: string): string[] {
  const columns = line.slice(line.indexOf(":") + 1).trim().split(/\s+/);
  return columns.map(dropSign);
}

// By node: ux .. rz.
export function readDisplacementTexts(folder: string): string[][] {
  const lines = readLines(`${folder}/Node_Dis.txt`).slice(1);
  return lines.filter((line) => line !== "").map(columnsOf);
}

export interface CornerTexts {
  node: number;
  upper: string[]; // SX .. TYZ, equivalent stress
  lower: string[];
}

// By element and corner, four-node shells first.
export function readStressTexts(file: string): CornerTexts[][] {
  const elements: CornerTexts[][] = [];
  let upper: string[] | null = null;
  for (const line of readLines(file)) {
    if (/^(Four|Three)/.test(line)) {
      elements.push([]);
    } else if (/^\s*\d+:/.test(line)) {
      const columns = columnsOf(line);
      if (upper === null) {
        upper = columns;
      } else {
        const node = Number(line.split(":")[0]);
        elements[elements.length - 1].push({ node, upper, lower: columns });
        upper = null;
      }
    }
  }
  return elements;
}

// A shell of a detail model: of each corner the place, the displacement, both faces (SX .. TYZ,
// equivalent stress).
export interface DetailCornerTexts {
  place: string[];
  motion: string[];
  upper: string[];
  lower: string[];
}

// The detail models of Korvex_AverageStrs.txt: of each beam its shells, of each shell its corners.
export function readDetailTexts(folder: string): DetailCornerTexts[][][] {
  const lines = readLines(`${folder}/Korvex_AverageStrs.txt`);
  let at = 0;
  const next = () => lines[at++].split(",").map(dropSign);
  const nextCount = () => Number(lines[at++].split("=")[1]);
  const nextRows = (count: number) => Array.from({ length: count }, next);
  const nextShells = (corners: number) =>
    Array.from({ length: nextCount() }, () => {
      const nodes = next().map(Number);
      return { nodes, faces: nextRows(2 * corners) };
    });
  nextRows(2 * nextCount());
  nextShells(4);
  nextShells(3);
  return Array.from({ length: nextCount() }, () => {
    at += 3; // BEI=, SND( ), END( )
    const count = nextCount();
    const [places, motions] = [nextRows(count), nextRows(count)];
    return nextShells(4).map(({ nodes, faces }) =>
      nodes.map((node, k) => ({
        place: places[node],
        motion: motions[node].slice(0, 3),
        upper: faces[2 * k],
        lower: faces[2 * k + 1],
      })),
    );
  });
}

// Whether prepare-pages could make the tables of a page: not of a model with errors.
export function hasTables(folder: string): boolean {
  return existsSync(`${folder}/reactions.csv`);
}

// The rows of a table of kvx: text by column. None of an empty file.
export function readTable(file: string): Map<string, string>[] {
  const lines = readLines(file).filter((line) => line !== "" && !line.startsWith("#"));
  if (lines.length === 0) return [];
  const heads = lines[0].split(",");
  return lines.slice(1).map((line) => {
    const cells = line.split(",");
    return new Map(heads.map((head, k) => [head, cells[k]]));
  });
}
