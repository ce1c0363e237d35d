// The help: mouse, keys, what quantities and signs are, and the licence of what the page contains.
//
// Accessible names: dialog "Help", button "Close help".

import { make } from "./dom";
import { makeTool } from "./icons";
import { KeyTexts } from "./keyboard";
import type { PageModel } from "../data/page_model";

const MouseTexts = [
  { keys: "Click", text: "values of a node, an element or a beam" },
  { keys: "Drag", text: "turn" },
  { keys: "Right drag, Shift + drag", text: "move" },
  { keys: "Wheel", text: "nearer, farther" },
  { keys: "Double click", text: "go there" },
];

const QuantityTexts = [
  [
    "Units",
    "All numbers are in the units of the model. Where the page writes force/length², it is N/mm² " +
      "if the model is in N and mm. Results have six digits, as the result files.",
  ],
  [
    "Faces",
    "The upper face of a shell is on the side of its normal, from where its nodes run " +
      "counter-clockwise. “Larger” takes the face whose value is larger in size, at each place. " +
      "“Visible” shows the face that you look at. The middle face has membrane stress alone.",
  ],
  [
    "Averaged, by element",
    "Averaged values are those of neighbours in one surface, as in “Shell element average node " +
      "stress.txt”. Values by element are not averaged; where they jump from one element to the " +
      "next, the mesh is coarse.",
  ],
  [
    "Stress",
    "Tension is positive. Components SX … TXZ are along the global axes. Principal stresses are " +
      "those in the plane of the shell.",
  ],
  [
    "Shell forces",
    "nx, ny, nxy are forces per length, mx, my, mxy moments per length, in each element's own " +
      "axes: x from its first to its second node. A positive mx stretches the upper face along x.",
  ],
  [
    "Beam forces",
    "N pulls where it is positive. My stretches the side of +z, the flange; Mz the side of −y. T " +
      "turns from y to z. They act at the centroid of the section.",
  ],
  [
    "Supports",
    "A cone holds the translation along it, a diamond all three; a ring holds the rotation about " +
      "its axis; a cube holds everything. Along rows of equal supports signs come nearer to one " +
      "another as you look closer.",
  ],
  [
    "Axes of elements",
    "What is picked shows its own axes x, y and z. Of a shell, z is the normal on the upper side.",
  ],
  ["Support forces", "act on the structure; with the loads they add up to zero."],
  [
    "Envelopes",
    "hold the highest, or lowest, value of each place over all load cases; what stands side by " +
      "side need not come from one case.",
  ],
] as const;

const AboutText =
  "The page works without network. The address keeps the view: a copied link opens the same one.";

export interface Help {
  root: HTMLDialogElement;
  open(): void;
  close(): boolean; // whether it was open
}

export function makeHelp(model: PageModel): Help {
  const close = makeTool("close", "Close help", "Close (Esc)", () => root.close());
  const root = make(
    "dialog",
    { class: "help", label: "Help" },
    make("header", {}, make("h2", { text: "Help" }), close),
    make(
      "div",
      { class: "columns" },
      make(
        "section",
        {},
        make("h3", { text: "Mouse" }),
        makePairs(MouseTexts),
        make("h3", { text: "What the quantities are" }),
        makePairs(QuantityTexts.map(([keys, text]) => ({ keys, text })), "wide"),
      ),
      make("section", {}, make("h3", { text: "Keys" }), makePairs(KeyTexts)),
    ),
    make("h3", { text: "About" }),
    make("p", { text: `Written by ${model.program} from ${model.file}. ${AboutText}` }),
    makeLicense(),
  );
  root.addEventListener("click", (event) => {
    if (event.target === root) root.close(); // beside it
  });
  return {
    root,
    open: () => root.showModal(),
    close(): boolean {
      const wasOpen = root.open;
      root.close();
      return wasOpen;
    },
  };
}

function makePairs(pairs: readonly { keys: string; text: string }[], name = ""): HTMLElement {
  const items = pairs.flatMap((pair) => [
    make("dt", { text: pair.keys }),
    make("dd", { text: pair.text }),
  ]);
  return make("dl", { class: name }, ...items);
}

// The licence text is the comment in the page's head, which the build put there.
function makeLicense(): HTMLElement {
  const texts = [...document.head.childNodes]
    .filter((node): node is Comment => node instanceof Comment && node.data.includes("licence"))
    .map((node) => node.data.trim());
  const body = make("pre", { text: texts.join("\n\n") });
  const details = make("details", {}, make("summary", { text: "Licence of three.js" }), body);
  details.hidden = texts.length === 0;
  return details;
}
