// Puts the page together: the picture, what floats over it, and the texts for screen readers.
//
// Accessible names: the picture is an image "Picture of NAME"; a status, not seen, tells what was
// picked and what the legend shows.

import type { Actions } from "./actions";
import { makeCard } from "./card";
import { make, setText } from "./dom";
import { describeFace } from "./face_text";
import { makeHelp, type Help } from "./help";
import { makeLegend } from "./legend";
import { makeLists, type Lists } from "./lists";
import { makeNotices } from "./notices";
import { formatNumber } from "./numbers";
import { makePanel } from "./panel";
import { mainQuantity, type Shown } from "./shown";
import { makeTopBar } from "./topbar";
import type { PageModel } from "../data/page_model";
import type { Insets } from "../scene/scene";
import type { ViewState } from "../state";

export interface Page {
  canvas: HTMLCanvasElement;
  notices: HTMLElement;
  lists: Lists;
  help: Help;
  legend: HTMLElement;
  panel: HTMLElement;
  topBar: HTMLElement;
  update(shown: Shown): void;
  say(text: string): void; // to screen readers
  flash(text: string): void; // a short word to everyone, for a moment
}

const FlashTime = 1600; // ms

const CanvasHint =
  "Arrows turn the model, Shift and arrows move it, plus and minus change the deformation. " +
  "Click for values.";

// How far sheets reach into the picture.
export function measureInsets(page: Page): Insets {
  const canvas = page.canvas.getBoundingClientRect();
  const boxOf = (sheet: Element): DOMRect | null => {
    const box = sheet.getBoundingClientRect();
    return box.width > 0 && box.height > 0 ? box : null;
  };
  const tops = [page.topBar, ...page.notices.children];
  return {
    left: boxOf(page.panel)?.right ?? 0,
    right: canvas.width - (boxOf(page.legend)?.left ?? canvas.width),
    top: Math.max(...tops.map((sheet) => boxOf(sheet)?.bottom ?? 0)),
    bottom: canvas.height - (boxOf(page.lists.root)?.top ?? canvas.height),
  };
}

export function makePage(
  parent: HTMLElement,
  model: PageModel,
  actions: Actions,
  maps: readonly string[],
): Page {
  const canvas = make("canvas", {
    class: "picture",
    label: `Picture of ${model.title}`,
    attributes: { tabindex: "0", role: "img", "aria-description": CanvasHint },
  });
  const topBar = makeTopBar(model, actions);
  const panel = makePanel(model, actions);
  const legend = makeLegend(actions, maps);
  const card = makeCard(actions);
  const lists = makeLists(model, actions);
  const help = makeHelp(model);
  const notices = makeNotices(model.notices);
  const flash = make("p", { class: "flash sheet", attributes: { "aria-hidden": "true" } });
  flash.hidden = true;
  const status = make("p", { class: "spoken", attributes: { role: "status" } });
  const side = make("div", { class: "side" }, legend.root, card.root);
  const sheets = [topBar.root, panel.root, notices, lists.root, side, flash];
  const over = make("div", { class: "over" }, ...sheets);
  parent.replaceChildren(over, canvas, status, help.root);
  parent.prepend(canvas);
  const controls = [topBar, panel, legend, card, lists];
  let spoken = "";
  let picked: ViewState["picked"] = null;
  return {
    canvas,
    notices,
    lists,
    help,
    legend: legend.root,
    panel: panel.root,
    topBar: topBar.root,
    say: (text) => setText(status, text),
    flash(text: string): void {
      setText(flash, text);
      flash.hidden = false;
      setTimeout(() => (flash.hidden = true), FlashTime);
    },
    update(shown: Shown): void {
      for (const control of controls) control.update(shown);
      const text = describeShown(shown);
      const now = shown.state.picked;
      if (now !== null && (now.kind !== picked?.kind || now.number !== picked.number)) {
        setText(status, `Picked: ${now.kind} ${now.number}`);
      } else if (text !== spoken) {
        setText(status, text);
      }
      [spoken, picked] = [text, now];
    },
  };
}

// "von Mises stress, lower face, from 0.3 to 251"
function describeShown(shown: Shown): string {
  const quantity = mainQuantity(shown);
  const parts: string[] = [];
  if (quantity !== null) {
    parts.push(quantity.label);
    if (shown.shellQuantity?.hasFaces === true) parts.push(describeFace(shown.state.face));
    const range = shown.colors?.range;
    if (range !== undefined && !quantity.isCategory) {
      parts.push(`from ${formatNumber(range[0], 4)} to ${formatNumber(range[1], 4)}`);
    }
  }
  return parts.join(", ");
}
