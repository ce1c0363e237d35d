// Icons: lines of a 16 x 16 field, in the colour of the text; and the buttons that have one.

import { makeButton } from "./dom";

const Paths = {
  panel: "M2 3h12v10H2zM6 3v10",
  fit: "M2 6V2h4M10 2h4v4M14 10v4h-4M6 14H2v-4",
  perspective: "M2 4 14 2v12L2 12zM8 3v10M2 8h12",
  orthographic: "M2 3h12v10H2zM8 3v10M2 8h12",
  theme: "M8 2a6 6 0 1 0 0 12zM8 2a6 6 0 0 1 0 12",
  picture: "M2 5h3l1-2h4l1 2h3v8H2zM8 7a2 2 0 1 0 0 4 2 2 0 0 0 0-4",
  link:
    "M7 9 9.5 6.5M6.5 5 8 3.5A3 3 0 0 1 12.5 8L11 9.5M9.5 11 8 12.5A3 3 0 0 1 3.5 8L5 6.5",
  help:
    "M8 2a6 6 0 1 0 0 12A6 6 0 0 0 8 2M6.3 6.3a1.7 1.7 0 1 1 2.4 1.6C8.2 8.2 8 8.5 8 9.3M8 11v.4",
  close: "M4 4l8 8M12 4l-8 8",
  copy: "M6 6h7v7H6zM10 6V3H3v7h3",
};

type IconName = keyof typeof Paths;

function makeIcon(name: IconName): SVGSVGElement {
  const space = "http://www.w3.org/2000/svg";
  const icon = document.createElementNS(space, "svg");
  icon.setAttribute("viewBox", "0 0 16 16");
  icon.setAttribute("class", "icon");
  icon.setAttribute("aria-hidden", "true");
  const path = document.createElementNS(space, "path");
  path.setAttribute("d", Paths[name]);
  icon.append(path);
  return icon;
}

// label: for screen readers and tests; title: what the pointer is told.
export function makeTool(
  icon: IconName,
  label: string,
  title: string,
  call: () => void,
): HTMLButtonElement {
  return makeButton({ class: "tool", label, title }, call, makeIcon(icon));
}
