// Filters: which thicknesses, sections, materials and parts are drawn; of an imported model also
// which groups of its deck.
//
// Accessible names: groups "Thickness", "Section", "Material", "Part", "Group"; in each the check
// boxes, buttons "Only NAME", and "Show all" where something is hidden.

import type { Actions } from "./actions";
import { make, makeButton, makeCheckBox, makeGroup, setText } from "./dom";
import { formatNumber } from "./numbers";
import type { Control } from "./panel";
import type { Shown } from "./shown";
import type { PageModel } from "../data/page_model";
import type { ViewState } from "../state";

type Hidden = ViewState["hidden"];

interface FilterList {
  key: keyof Hidden;
  title: string;
  names: FilterName[];
}

interface FilterName {
  row: number;
  name: string;
  more: string; // what the pointer is told
  sizes: string; // below the name; may be empty
}

export function makeFilterGroup(model: PageModel, actions: Actions): Control {
  let hidden: Hidden | null = null;
  const change = (key: keyof Hidden, rows: number[]): void => {
    if (hidden !== null) actions.change({ hidden: { ...hidden, [key]: rows } });
  };
  const lists = listFilters(model).filter((list) => list.names.length > 1);
  const parts = lists.map((list) => makeList(list, () => hidden?.[list.key] ?? [], change));
  const note = make("p", { class: "reason" });
  const root = makeGroup("Filter", false, ...parts.map((part) => part.root));
  const summary = root.querySelector("summary");
  summary?.append(note);
  root.hidden = lists.length === 0;
  return {
    root,
    update(shown: Shown): void {
      hidden = shown.state.hidden;
      const count = Object.values(hidden).reduce((sum, rows) => sum + rows.length, 0);
      setText(note, count === 0 ? "" : `${count} hidden`);
      for (const part of parts) part.update();
    },
  };
}

function makeList(
  list: FilterList,
  hiddenRows: () => readonly number[],
  change: (key: keyof Hidden, rows: number[]) => void,
): { root: HTMLElement; update(): void } {
  const showOnly = (row: number): void => {
    const others = list.names.map((item) => item.row).filter((other) => other !== row);
    change(list.key, others.sort((a, b) => a - b));
  };
  const items = list.names.map((item) => {
    const check = makeCheckBox(item.name, (isChecked) => {
      const others = hiddenRows().filter((row) => row !== item.row);
      change(list.key, isChecked ? others : [...others, item.row].sort((a, b) => a - b));
    });
    check.root.title = item.more === "" ? item.name : `${item.name}\n${item.more}`;
    const label = `Only ${item.name}`;
    const only = makeButton({ class: "only", text: "only", label }, () => showOnly(item.row));
    const more = item.sizes === "" ? null : make("span", { class: "more", text: item.sizes });
    const root = make("li", {}, check.root, only, more);
    root.addEventListener("dblclick", () => showOnly(item.row));
    return { root, box: check.box, row: item.row };
  });
  const all = makeButton({ class: "quiet", text: "Show all" }, () => change(list.key, []));
  const root = make(
    "fieldset",
    { class: "field filter" },
    make("legend", { text: list.title }),
    all,
    make("ul", {}, ...items.map((item) => item.root)),
  );
  return {
    root,
    update(): void {
      const rows = hiddenRows();
      all.hidden = rows.length === 0;
      for (const item of items) item.box.checked = !rows.includes(item.row);
    },
  };
}

// The rows that elements use; a row of no element would be a box without effect.
function listFilters(model: PageModel): FilterList[] {
  const { shells, triangles, beams } = model;
  const used = (...columns: Int32Array[]): number[] =>
    [...new Set(columns.flatMap((column) => [...new Set(column)]))].sort((a, b) => a - b);
  return [
    {
      key: "thicknesses",
      title: "Thickness",
      names: tellApart(
        used(shells.thickness, triangles.thickness).map((row) => {
          const value = model.thicknesses[row];
          const name = value === undefined ? "no thickness" : formatNumber(value);
          return { row, name, more: `row ${row}`, sizes: model.origin?.thicknesses[row] ?? "" };
        }),
      ),
    },
    {
      key: "sections",
      title: "Section",
      names: tellApart(used(beams.section).map((row) => nameSection(model, row))),
    },
    {
      key: "materials",
      title: "Material",
      names: used(shells.material, triangles.material, beams.material).map((row) => {
        const material = model.materials[row];
        if (material === undefined) return { row, name: "no material", more: "", sizes: "" };
        const more = `ν ${formatNumber(material.nu)}, density ${formatNumber(material.density)}`;
        const sizes = model.origin?.materials[row] ?? "";
        return { row, name: `${row}: E ${formatNumber(material.E)}`, more, sizes };
      }),
    },
    {
      key: "parts",
      title: "Part",
      names: used(shells.part, triangles.part, beams.part).map((row) => ({
        row,
        name: row < 0 ? "no part" : `Part ${row}`,
        more: "",
        sizes: "",
      })),
    },
    { key: "groups", title: "Group", names: tellApart(nameGroups(model)) },
  ];
}

// Groups of nodes alone have nothing to be drawn.
function nameGroups({ origin, shells, triangles, beams }: PageModel): FilterName[] {
  if (origin === null) return [];
  const tables = { shell: shells, triangle: triangles, beam: beams };
  const elementKinds = ["shell", "triangle", "beam"] as const;
  const names = origin.groups.map(({ name, source, members }, row) => {
    const counts = elementKinds
      .filter((kind) => members[kind].length > 0)
      .map((kind) => `${members[kind].length} ${kind}${members[kind].length === 1 ? "" : "s"}`);
    return { row, name, more: source === name ? "" : source, sizes: counts.join(", ") };
  });
  const isOutside = elementKinds.some((kind) => {
    const isMember = new Uint8Array(tables[kind].count);
    for (const { members } of origin.groups) for (const e of members[kind]) isMember[e] = 1;
    return isMember.includes(0);
  });
  const none = { row: -1, name: "no group", more: "", sizes: "" };
  return [...names.filter((item) => item.sizes !== ""), ...(isOutside ? [none] : [])];
}

// Names that occur twice get their row.
function tellApart(names: FilterName[]): FilterName[] {
  return names.map((item) => {
    const isOnly = names.every((other) => other === item || other.name !== item.name);
    return isOnly ? item : { ...item, name: `${item.name} (row ${item.row})` };
  });
}

function nameSection(model: PageModel, row: number): FilterName {
  const section = model.sections[row];
  if (section === undefined) return { row, name: "no section", more: "", sizes: "" };
  const mark = section.mirrored ? ", mirrored" : "";
  const kind = `${section.type}${mark}`;
  const name = `${section.name === "" ? `${section.type} ${section.index}` : section.name}${mark}`;
  const sizes = [section.sizes, section.origin ?? ""].filter((text) => text !== "").join("; ");
  return { row, name, more: `${kind}, row ${section.index}`, sizes };
}
