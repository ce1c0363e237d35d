// The list of the findings: those of one code together, errors first.

import type { Actions } from "./actions";
import { make, makeButton } from "./dom";
import { makeRow, makeTable } from "./table";
import type { Finding } from "../data/page_model";

const Severities = ["error", "warning", "hint"] as const;
const MostNamed = 40; // further findings of a group, each with a button of its own

export interface FindingGroup {
  first: Finding;
  others: Finding[];
  count: number; // with those that are only counted
}

// "1 error, 3 hints"
export function countFindings(findings: readonly Finding[]): string {
  const groups = groupFindings(findings);
  const counts = Severities.map((severity) => {
    const rows = groups.filter((group) => group.first.severity === severity);
    const count = rows.reduce((sum, group) => sum + group.count, 0);
    return count === 0 ? "" : `${count} ${severity}${count === 1 ? "" : "s"}`;
  });
  return counts.filter((text) => text !== "").join(", ");
}

// By severity and code, in the order of the first ones; errors, warnings, hints.
export function groupFindings(findings: readonly Finding[]): FindingGroup[] {
  const groups: FindingGroup[] = [];
  for (const severity of Severities) {
    const known = new Map<string, FindingGroup>();
    for (const finding of findings.filter((row) => row.severity === severity)) {
      const count = countOf(finding);
      const group = known.get(finding.code);
      if (group === undefined) known.set(finding.code, { first: finding, others: [], count });
      else {
        group.others.push(finding);
        group.count += count;
      }
    }
    groups.push(...known.values());
  }
  return groups;
}

// The program writes the first ones of a code, and counts the rest in one finding.
function countOf(finding: Finding): number {
  return Number(/^and (\d+) more of this kind/.exec(finding.message)?.[1] ?? 1);
}

export function drawFindings(findings: readonly Finding[], actions: Actions): HTMLElement {
  const rows = groupFindings(findings).map((group) => drawGroup(group, actions));
  return makeTable("Findings", "findings", ["", "code", "what, and what to do", "where"], rows);
}

function drawGroup({ first, others, count }: FindingGroup, actions: Actions): HTMLTableRowElement {
  const go = hasPlace(first) ? () => goToFinding(first, actions) : null;
  const code =
    go === null
      ? make("span", { text: first.code })
      : makeButton({ class: "quiet", text: first.code }, go);
  const times = count === 1 ? null : make("span", { class: "count", text: `${count} times` });
  const mark = make("span", { class: `severity ${first.severity}`, text: first.severity });
  const message = make(
    "div",
    {},
    make("p", { text: first.message }),
    first.remedy === "" ? null : make("p", { class: "remedy", text: first.remedy }),
    first.origin === undefined ? null : make("p", { class: "remedy", text: first.origin }),
    others.length === 0 ? null : drawOthers(others, count - 1, actions),
  );
  return makeRow([mark, make("div", {}, code, times), message, lineOf(first)], go);
}

// Folded: each finding of the same code by the first thing that it names.
function drawOthers(others: readonly Finding[], count: number, actions: Actions): HTMLElement {
  const items = others.slice(0, MostNamed).map((finding) => {
    const where = lineOf(finding);
    const text = `${nameOf(finding)}${where === "" ? "" : `, ${where}`}`;
    const title = finding.message;
    const child = hasPlace(finding)
      ? makeButton({ class: "quiet", text, title }, () => goToFinding(finding, actions))
      : make("span", { text, title });
    return make("li", {}, child);
  });
  const more = others.length - items.length;
  if (more > 0) items.push(make("li", { text: `and ${more} more` }));
  const summary = make("summary", { text: `${count} more` });
  const root = make("details", { class: "others" }, summary, make("ul", {}, ...items));
  // Else the row would fly to the first one.
  root.addEventListener("click", (event) => event.stopPropagation());
  return root;
}

// "beam 145", "beams 164 to 227"
function nameOf(finding: Finding): string {
  const [first] = finding.elements;
  const count = countOf(finding);
  if (first === undefined) {
    const [node] = finding.nodes;
    return node === undefined ? finding.message : `node ${node}`;
  }
  if (count === 1) return `${first.kind} ${first.number}`;
  const numbers = finding.elements.map((element) => element.number);
  const isOneKind = finding.elements.every((element) => element.kind === first.kind);
  if (!isOneKind || numbers.length < 2) return `${count} more from ${first.kind} ${first.number}`;
  return `${first.kind}s ${Math.min(...numbers)} to ${Math.max(...numbers)}`;
}

function lineOf(finding: Finding): string {
  return finding.line > 0 ? `line ${finding.line}` : "";
}

function hasPlace(finding: Finding): boolean {
  return finding.place !== null || finding.nodes.length + finding.elements.length > 0;
}

// To the first element, else to the first node, else to the bare place.
function goToFinding(finding: Finding, actions: Actions): void {
  const element = finding.elements[0];
  const node = finding.nodes[0];
  if (element !== undefined) actions.goTo(element.kind, element.number, finding.place);
  else if (node !== undefined) actions.goTo("node", node, finding.place);
  else if (finding.place !== null) actions.goToPlace(finding.place);
}
