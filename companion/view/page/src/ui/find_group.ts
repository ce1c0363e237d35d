// Finds a node or an element by its number.
//
// Accessible names: combobox "Kind", textbox "Number", button "Find".

import type { Actions } from "./actions";
import { make, makeButton, makeGroup, makeSelect, setText } from "./dom";
import type { Control } from "./panel";
import type { Kind, PageModel } from "../data/page_model";

export function makeFindGroup(model: PageModel, actions: Actions): Control {
  const counts = countItems(model);
  const kinds = (["node", "shell", "triangle", "beam"] as const).filter((kind) => counts[kind] > 0);
  let kind: Kind = "node";
  const list = makeSelect("Kind", kinds.map((value) => ({ value, text: value })), (value) => {
    kind = kinds.find((known) => known === value) ?? "node";
  });
  const input = make("input", {
    label: "Number",
    attributes: { type: "text", inputmode: "numeric", placeholder: "number" },
  });
  const answer = make("p", { class: "reason", attributes: { role: "status" } });
  const find = (): void => {
    const number = Number(input.value.trim());
    const isThere = input.value.trim() !== "" && Number.isInteger(number) && number >= 0;
    const last = counts[kind] - 1;
    answer.hidden = isThere && number <= last;
    setText(answer, answer.hidden ? "" : `There are ${kind}s 0 to ${last}.`);
    if (!answer.hidden) return answer.scrollIntoView({ block: "nearest" });
    actions.goTo(kind, number, null);
    actions.focusPicture(); // keys work again
  };
  input.addEventListener("keydown", (event) => {
    if (event.key === "Enter") find();
  });
  answer.hidden = true;
  const row = make("div", { class: "row" }, list, input, makeButton({ text: "Find" }, find));
  return { root: makeGroup("Find", true, row, answer), update: () => undefined };
}

function countItems(model: PageModel): Record<Kind, number> {
  return {
    node: model.nodeCount,
    shell: model.shells.count,
    triangle: model.triangles.count,
    beam: model.beams.count,
  };
}
