// Finds a node or an element by its number; of an imported model also by that of its deck.
//
// Accessible names: combobox "Kind", textbox "Number", button "Find".

import type { Actions } from "./actions";
import { make, makeButton, makeGroup, makeSelect, setText } from "./dom";
import type { Control } from "./panel";
import type { Kind, Origin, PageModel } from "../data/page_model";

type Item = { kind: Kind; number: number };

// What numbers are asked for.
interface Search {
  name: string;
  find(number: number): Item | null;
  explain(number: number): string; // where there is none
}

export function makeFindGroup(model: PageModel, actions: Actions): Control {
  const searches = [...listSearches(model), ...listDeckSearches(model)];
  let search = searches[0];
  const names = searches.map(({ name }) => ({ value: name, text: name }));
  const list = makeSelect("Kind", names, (value) => {
    search = searches.find(({ name }) => name === value) ?? searches[0];
  });
  const input = make("input", {
    label: "Number",
    attributes: { type: "text", inputmode: "numeric", placeholder: "number" },
  });
  const answer = make("p", { class: "reason", attributes: { role: "status" } });
  const find = (): void => {
    const number = input.value.trim() === "" ? NaN : Number(input.value.trim());
    const found = search.find(number);
    answer.hidden = found !== null;
    setText(answer, found === null ? search.explain(number) : "");
    if (found === null) return answer.scrollIntoView({ block: "nearest" });
    actions.goTo(found.kind, found.number, null);
    actions.focusPicture(); // keys work again
  };
  input.addEventListener("keydown", (event) => {
    if (event.key === "Enter") find();
  });
  answer.hidden = true;
  const row = make("div", { class: "row" }, list, input, makeButton({ text: "Find" }, find));
  return { root: makeGroup("Find", true, row, answer), update: () => undefined };
}

// By the numbers of the model file; nodes always, elements where there are such.
function listSearches(model: PageModel): Search[] {
  const counts = countItems(model);
  const kinds = (["node", "shell", "triangle", "beam"] as const).filter(
    (kind) => kind === "node" || counts[kind] > 0,
  );
  return kinds.map((kind) => ({
    name: kind,
    find: (number) =>
      Number.isInteger(number) && number >= 0 && number < counts[kind] ? { kind, number } : null,
    explain: () => `There are ${kind}s 0 to ${counts[kind] - 1}.`,
  }));
}

function listDeckSearches({ origin }: PageModel): Search[] {
  if (origin === null) return [];
  const name = (what: string): string => `${what} of the deck`;
  const explain = (what: string) => (number: number): string =>
    Number.isInteger(number)
      ? `${origin.source} has no ${what} ${number} that was imported.`
      : `Numbers of ${origin.source} are whole.`;
  return [
    { name: name("node"), find: findIn(origin, ["node"]), explain: explain("node") },
    {
      name: name("element"),
      find: findIn(origin, ["shell", "triangle", "beam"]),
      explain: explain("element"),
    },
  ];
}

function findIn(origin: Origin, kinds: readonly Kind[]): Search["find"] {
  return (number) => {
    for (const kind of kinds) {
      const row = origin.numbers[kind].indexOf(number);
      if (row >= 0) return { kind, number: row };
    }
    return null;
  };
}

function countItems(model: PageModel): Record<Kind, number> {
  return {
    node: model.nodeCount,
    shell: model.shells.count,
    triangle: model.triangles.count,
    beam: model.beams.count,
  };
}
