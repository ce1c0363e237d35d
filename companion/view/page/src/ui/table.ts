// Tables of the lists: rows that go somewhere where they are clicked.

import { make } from "./dom";

export function makeTable(
  label: string,
  name: string,
  heads: string[],
  rows: HTMLTableRowElement[],
): HTMLTableElement {
  const head = make("tr", {}, ...heads.map((text) => make("th", { text })));
  const body = make("tbody", {}, ...rows);
  return make("table", { class: name, label }, make("thead", {}, head), body);
}

export function makeRow(
  cells: (string | HTMLElement)[],
  go: (() => void) | null,
): HTMLTableRowElement {
  const row = make("tr", {}, ...cells.map((cell) => make("td", {}, cell)));
  if (go !== null) {
    row.className = "goes";
    // The button in the row does it by itself.
    row.addEventListener("click", (event) => {
      if (!(event.target instanceof HTMLButtonElement)) go();
    });
  }
  return row;
}
