// The lists at the bottom: the highest values of what is shown, and the findings.
//
// Accessible names: buttons "Highest values", "Findings: 1 error, 3 hints", "Close list"; tables
// "Highest values", "Findings"; in each row a button: "shell 812" or "shells 812, 813", or the code
// of the finding, "K201".

import type { Actions, ListName } from "./actions";
import { describeFace } from "./face_text";
import { make, makeButton, setText, type Settings } from "./dom";
import { countFindings, drawFindings } from "./findings_list";
import { makeTool } from "./icons";
import { governingCase } from "./governing";
import { formatNumber, formatPlace } from "./numbers";
import type { Control } from "./panel";
import { nameElements, type Peak } from "./peaks";
import { mainQuantity, type Shown } from "./shown";
import { makeRow, makeTable } from "./table";
import type { PageModel } from "../data/page_model";
import { rankingOf } from "../fields/quantities";

export interface Lists extends Control {
  open(name: ListName | null): void;
  opened(): ListName | null;
}

export function makeLists(model: PageModel, actions: Actions): Lists {
  let present: ListName | null = null;
  let shown: Shown | null = null;
  let hasPicked = false; // then the hint has done its work
  let drawnPeaks: readonly Peak[] | null = null;
  const names: ListName[] = model.findings.length > 0 ? ["highest", "findings"] : ["highest"];
  const tabs = names.map((name) =>
    makeButton(
      { ...describeTab(name, model), attributes: { "aria-controls": "list" } },
      () => actions.openList(present === name ? null : name),
    ),
  );
  const caption = make("span", { class: "caption" });
  const close = makeTool("close", "Close list", "Close (Esc)", () => actions.openList(null));
  const body = make("div", { class: "body", attributes: { id: "list" } });
  const root = make(
    "section",
    { class: "lists sheet", label: "Lists" },
    make("header", {}, ...tabs, caption, close),
    body,
  );
  const draw = (): void => {
    tabs.forEach((tab, k) => tab.setAttribute("aria-expanded", String(names[k] === present)));
    root.classList.toggle("open", present !== null);
    body.hidden = close.hidden = present === null;
    if (present === "highest" && shown !== null && shown.peaks !== drawnPeaks) {
      drawnPeaks = shown.peaks;
      body.replaceChildren(drawPeaks(shown, actions));
    } else if (present === "findings") {
      drawnPeaks = null;
      if (body.querySelector(".findings") === null) {
        body.replaceChildren(drawFindings(model.findings, actions));
      }
    }
    hasPicked ||= shown?.state.picked != null;
    setText(caption, describeList(present, shown, hasPicked));
    caption.hidden = caption.textContent === "";
  };
  draw();
  return {
    root,
    open(name: ListName | null): void {
      present = name !== null && names.includes(name) ? name : null;
      draw();
    },
    opened: () => present,
    update(next: Shown): void {
      shown = next;
      draw();
    },
  };
}

function describeTab(name: ListName, model: PageModel): Settings {
  if (name === "highest") return { class: "tab", text: "Highest values" };
  const text = countFindings(model.findings);
  const hasErrors = model.findings.some((finding) => finding.severity === "error");
  const label = `Findings: ${text}`;
  return { class: hasErrors ? "tab error" : "tab", text, label, title: `${label} (N)` };
}

// What the open list holds; while none is open and nothing was picked yet, a hint.
function describeList(name: ListName | null, shown: Shown | null, hasPicked: boolean): string {
  if (name === null) return hasPicked ? "" : "Click the model for values.";
  return name === "highest" && shown !== null ? describePeaks(shown) : "";
}

function describePeaks(shown: Shown): string {
  const quantity = mainQuantity(shown);
  if (quantity === null) return "Choose a quantity first.";
  const face = shown.shellQuantity?.hasFaces === true ? `, ${describeFace(shown.state.face)}` : "";
  const ranking = { highest: "Highest", lowest: "Lowest", size: "Largest by size" };
  return `${ranking[rankingOf(quantity)]}: ${quantity.label}${face}`;
}

function drawPeaks(shown: Shown, actions: Actions): HTMLElement {
  const { model, peaks, envelopes } = shown;
  if (peaks.length === 0) {
    return make("p", { class: "empty", text: "Choose a quantity with values to see its highest." });
  }
  const rows = peaks.map(({ peak, numbers }, k) => {
    const name = nameElements(peak.kind, numbers);
    const go = (): void => actions.goTo(peak.kind, peak.number, peak.place);
    const node = peak.node >= 0 ? String(peak.node) : "";
    const cells: (string | HTMLElement)[] = [
      String(k + 1),
      formatNumber(peak.value),
      makeButton({ class: "quiet", text: name }, go),
      peak.kind === "beam" ? "" : peak.face,
      node,
      formatPlace(peak.place, 4),
    ];
    if (shown.state.case < 0) cells.push(governingCase(model, envelopes, peak));
    return makeRow(cells, go);
  });
  const heads = ["", "value", "element", "face", "node", "place"];
  if (shown.state.case < 0) heads.push("case");
  return makeTable("Highest values", "peaks", heads, rows);
}
