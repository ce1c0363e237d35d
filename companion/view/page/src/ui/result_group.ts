// What colours the model: quantity of shells and of beams, face, averaged or not.
//
// Accessible names: comboboxes "Shells", "Beams"; radio groups "Face" ("Upper", "Lower",
// "Larger", "Middle", "Visible") and "Values at corners" ("Averaged", "By element").

import type { Actions } from "./actions";
import { fillSelect, make, makeField, makeGroup, makeSegments, makeSelect, setText } from "./dom";
import type { Choice } from "./dom";
import type { Control } from "./panel";
import { pairBeam, pairShell, Plain } from "./pair_quantities";
import { headingOf } from "./quantity_text";
import type { Shown } from "./shown";
import { hasOwnValues } from "../fields/quantities";
import type { Quantity } from "../fields/quantity";
import type { FaceChoice } from "../state";

const Faces: { value: FaceChoice; text: string; title: string }[] = [
  { value: "upper", text: "Upper", title: "The face on the side of the normal" },
  { value: "lower", text: "Lower", title: "The face opposite to the normal" },
  { value: "larger", text: "Larger", title: "At each place the face with the larger value" },
  { value: "middle", text: "Middle", title: "Membrane stress alone, without bending" },
  { value: "visible", text: "Visible", title: "The face that you look at" },
];

const Averaging: Choice[] = [
  { value: "averaged", text: "Averaged" },
  { value: "element", text: "By element" },
];

export function makeResultGroup(actions: Actions): Control {
  let shown: Shown | null = null;
  let listed = ""; // ids that the lists hold now
  const shells = makeSelect("Shells", [], (id) => {
    if (shown !== null) actions.change(pairBeam(id, shown));
  });
  const beams = makeSelect("Beams", [], (id) => {
    if (shown !== null) actions.change(pairShell(id, shown));
  });
  const faces = makeSegments("Face", Faces, (value) => {
    const face = Faces.find((known) => known.value === value);
    if (face !== undefined) actions.change({ face: face.value });
  });
  const averaging = makeSegments("Values at corners", Averaging, (value) =>
    actions.change({ isAveraged: value === "averaged" }),
  );
  const reason = make("p", { class: "reason" });
  const beamField = makeField("Beams", beams);
  const notes = { shells: make("p", { class: "reason" }), beams: make("p", { class: "reason" }) };
  const shellFields = [
    makeField("Shells", shells),
    notes.shells,
    faces.root,
    reason,
    averaging.root,
  ];
  return {
    root: makeGroup("Result", true, ...shellFields, beamField, notes.beams),
    update(next: Shown): void {
      shown = next;
      const ids = [...next.shellQuantities, ...next.beamQuantities].map((row) => row.id).join();
      if (ids !== listed) {
        listed = ids;
        fillSelect(shells, listQuantities(next.shellQuantities));
        fillSelect(beams, listQuantities(next.beamQuantities));
      }
      const hasShells = next.model.shells.count + next.model.triangles.count > 0;
      for (const field of shellFields) field.hidden = !hasShells;
      averaging.root.hidden = !hasShells || !hasOwnValues(next.model);
      beamField.hidden = next.model.beams.count === 0;
      shells.value = next.shellQuantity?.id ?? Plain;
      beams.value = next.beamQuantity?.id ?? Plain;
      faces.set(next.state.face);
      averaging.set(next.state.isAveraged ? "averaged" : "element");
      explainFaces(next.shellQuantity);
      averaging.enable(next.shellQuantity?.hasAverages === true);
      explainPlain(notes.shells, next.shellQuantity, next.beamQuantity, "beams");
      explainPlain(notes.beams, next.beamQuantity, next.shellQuantity, "shells");
      notes.beams.hidden ||= beamField.hidden;
      notes.shells.hidden ||= !hasShells;
    },
  };

  function explainFaces(quantity: Quantity | null): void {
    const hasFaces = quantity?.hasFaces === true;
    faces.enable(hasFaces);
    setText(reason, hasFaces ? "" : "The same on both faces.");
    reason.hidden = hasFaces || quantity === null;
  }
}

// Why what has one colour has no other: it would not fit the legend of the others.
function explainPlain(
  note: HTMLElement,
  own: Quantity | null,
  other: Quantity | null,
  others: string,
): void {
  note.hidden = own !== null || other === null;
  if (other === null) return;
  const text = `One colour: the legend is that of the ${others}, ${other.symbol || other.label}.`;
  setText(note, text);
}

function listQuantities(quantities: readonly Quantity[]): Choice[] {
  const rows = quantities.map((row) => ({
    value: row.id,
    text: headingOf(row),
    group: row.group,
  }));
  return [{ value: Plain, text: "One colour" }, ...rows];
}
