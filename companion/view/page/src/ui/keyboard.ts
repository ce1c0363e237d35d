// Keys of the page. They work everywhere but in fields that take text; arrows, + and - of a slider
// or list stay its own.

import { ViewNames, type Actions } from "./actions";
import type { ViewState } from "../state";

export interface KeyText {
  keys: string;
  text: string;
}

// What help lists.
export const KeyTexts: KeyText[] = [
  { keys: "1 … 7", text: "iso, top, bottom, front, back, left, right" },
  { keys: "F", text: "show all of the model" },
  { keys: "O", text: "orthographic or perspective" },
  { keys: "← ↑ → ↓", text: "turn the model, where the picture has the focus; Shift: move it" },
  { keys: "Page up, down", text: "nearer, farther" },
  { keys: "+ −", text: "deformation larger, smaller" },
  { keys: "0", text: "automatic deformation" },
  { keys: "A", text: "animate" },
  { keys: "E", text: "element edges" },
  { keys: "U", text: "undeformed outline" },
  { keys: "S", text: "supports" },
  { keys: "D", text: "loads" },
  { keys: "[ ]", text: "load case before, after" },
  { keys: "H", text: "list of the highest values" },
  { keys: "N", text: "list of the findings" },
  { keys: "G", text: "go to what is picked" },
  { keys: "C", text: "controls" },
  { keys: "T", text: "light, dark" },
  { keys: "P", text: "save the picture" },
  { keys: "L", text: "copy the link" },
  { keys: "Esc", text: "close what is open, unpick" },
  { keys: "?", text: "this help" },
];

// What keys need beside the actions.
export interface Keys {
  state(): ViewState;
  step(factor: number): void; // deformation times factor
  near(factor: number): void; // height of the field times factor
  stepCase(step: number): void; // to the one before, after
  toggleList(name: "highest" | "findings"): void;
  goToPicked(): void;
  nextTheme(): void;
  close(): void; // the topmost of what is open
}

const StepFactor = 1.25; // one press of + or -
const NearFactor = 0.8; // one press of Page up

export function listenToKeys(actions: Actions, keys: Keys): void {
  const table = tableKeys(actions, keys);
  // Before the canvas sees them: it has keys of its own.
  const onKey = (event: KeyboardEvent): void => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.key !== "Escape" && takesKey(event.target, event.key)) return;
    const call = table.get(event.key.length === 1 ? event.key.toLowerCase() : event.key);
    if (call === undefined) return;
    event.preventDefault();
    event.stopPropagation();
    call();
  };
  document.addEventListener("keydown", onKey, { capture: true });
}

function tableKeys(actions: Actions, keys: Keys): Map<string, () => void> {
  const toggle = (name: keyof ViewState["shows"]) => () => {
    const { shows } = keys.state();
    actions.change({ shows: { ...shows, [name]: !shows[name] } });
  };
  const flip = (name: "isOrthographic" | "isAnimated" | "isPanelOpen") => () =>
    actions.change({ [name]: !keys.state()[name] });
  const table = new Map<string, () => void>([
    ["f", actions.fit],
    ["o", flip("isOrthographic")],
    ["a", flip("isAnimated")],
    ["c", flip("isPanelOpen")],
    ["e", toggle("edges")],
    ["u", toggle("outline")],
    ["s", toggle("supports")],
    ["d", toggle("loads")],
    ["+", () => keys.step(StepFactor)],
    ["=", () => keys.step(StepFactor)], // + without Shift on many keyboards
    ["-", () => keys.step(1 / StepFactor)],
    ["PageUp", () => keys.near(NearFactor)],
    ["PageDown", () => keys.near(1 / NearFactor)],
    ["0", () => actions.change({ scale: null })],
    ["[", () => keys.stepCase(-1)],
    ["]", () => keys.stepCase(1)],
    ["h", () => keys.toggleList("highest")],
    ["n", () => keys.toggleList("findings")],
    ["g", keys.goToPicked],
    ["t", keys.nextTheme],
    ["p", actions.savePicture],
    ["l", actions.copyLink],
    ["?", actions.openHelp],
    ["Escape", keys.close],
  ]);
  ViewNames.forEach((name, k) => table.set(String(k + 1), () => actions.view(name)));
  return table;
}

// Whether a control wants the key for itself: text in fields, letters that choose in a list.
function takesKey(target: EventTarget | null, key: string): boolean {
  if (target instanceof HTMLSelectElement) return true;
  if (target instanceof HTMLTextAreaElement) return true;
  if (!(target instanceof HTMLInputElement)) return false;
  if (target.type === "text" || target.type === "number") return true;
  return target.type === "range" && !/^[a-z0-9?]$/i.test(key);
}
