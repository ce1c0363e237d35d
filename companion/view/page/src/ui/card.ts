// The card of what is picked.
//
// Accessible names: region "Picked"; buttons "Go there", "Copy values", "Close".

import type { Actions } from "./actions";
import { copyText } from "./copy_text";
import { make, setText } from "./dom";
import { makeTool } from "./icons";
import type { Control } from "./panel";
import type { Shown } from "./shown";
import type { Kind } from "../data/page_model";
import { describePick, titlePick, type PickGroup } from "../fields/describe_pick";

export function makeCard(actions: Actions): Control {
  let copied = "";
  let picked: { kind: Kind; number: number } | null = null;
  const title = make("h2");
  const body = make("div", { class: "groups" });
  const copy = (): void => {
    void copyText(copied).then((isCopied) =>
      actions.say(isCopied ? "Values copied." : "This browser does not copy here."),
    );
  };
  const go = (): void => {
    if (picked !== null) actions.goTo(picked.kind, picked.number, null);
  };
  const close = (): void => actions.change({ picked: null });
  const header = make(
    "header",
    {},
    title,
    makeTool("fit", "Go there", "Go there (G)", go),
    makeTool("copy", "Copy values", "Copy as text", copy),
    makeTool("close", "Close", "Close (Esc)", close),
  );
  const root = make("section", { class: "card sheet", label: "Picked" }, header, body);
  return {
    root,
    update(shown: Shown): void {
      picked = shown.state.picked;
      root.hidden = picked === null;
      if (picked === null) return;
      setText(title, titlePick(shown.model, picked));
      const groups = orderGroups(describePick(shown, picked));
      const text = `${title.textContent ?? ""}\n${writeGroups(groups)}`;
      if (text === copied && body.childElementCount > 0) return;
      copied = text;
      body.replaceChildren(...groups.flatMap(drawGroup));
    },
  };
}

// What is shown comes first, then what was computed, loads and supports, and the data of the model.
function orderGroups(groups: readonly PickGroup[]): PickGroup[] {
  const starts = ["Shown", "Displacement", "Reaction", "Section forces", "Stress", "von Mises"];
  const data = ["Support", "Loads", "Line load", "Pressure", "Elements", "Findings"];
  const order = [...starts, "Forces and moments", ...data];
  const placeOf = ({ title }: PickGroup): number => {
    const at = order.findIndex((start) => title.startsWith(start));
    return title === "" || at < 0 ? order.length : at;
  };
  return [...groups]
    .sort((a, b) => placeOf(a) - placeOf(b))
    .map((group) => (group.title === "" ? { ...group, title: "Model" } : group));
}

function drawGroup(group: PickGroup): HTMLElement[] {
  const rows = group.rows.flatMap((row) => [
    make("dt", { text: row.name }),
    make("dd", { text: row.value }),
  ]);
  const list = make("dl", {}, ...rows);
  return group.title === "" ? [list] : [make("h3", { text: group.title }), list];
}

// Rows as lines of text with a tab, as a spreadsheet takes them; numbers as the results have them.
export function writeGroups(groups: readonly PickGroup[]): string {
  const lines = groups.flatMap((group) => [
    ...(group.title === "" ? [] : [group.title]),
    ...group.rows.map((row) => `${row.name}\t${row.exact ?? row.value}`),
  ]);
  return lines.join("\n");
}
