// Bars with a sentence that a reader has to know first, each with a button that closes it; and the
// sentence that stands in place of the page where it cannot be shown.
//
// Accessible names: region "Notices", buttons "Close notice".

import { make } from "./dom";
import { makeTool } from "./icons";

export function makeNotices(texts: readonly string[]): HTMLElement {
  const root = make("section", { class: "notices", label: "Notices" });
  for (const text of texts) addNotice(root, text);
  return root;
}

export function addNotice(root: HTMLElement, text: string): void {
  const bar = make("div", { class: "notice sheet" }, make("p", { text }));
  const close = (): void => bar.remove();
  bar.append(makeTool("close", "Close notice", "Close", close));
  root.append(bar);
}

export function showFailure(page: HTMLElement, text: string): void {
  page.replaceChildren(make("p", { class: "failure", text, attributes: { role: "alert" } }));
}

const OldBrowser =
  "This browser is too old for the page: it cannot unpack compressed data " +
  "(DecompressionStream). Open the page with a version of 2023 or later.";
const NoWebGl =
  "This page draws with WebGL 2, which this browser does not offer here. Switch on hardware " +
  "acceleration in its settings, or open the page with another browser.";

// What this browser lacks; null: nothing.
export function findLack(): string | null {
  if (typeof DecompressionStream === "undefined") {
    return OldBrowser;
  }
  const probe = document.createElement("canvas").getContext("webgl2");
  if (probe === null) return NoWebGl;
  probe.getExtension("WEBGL_lose_context")?.loseContext();
  return null;
}
