// The rows of the list of highest values: each place once.

import { rankOf } from "../fields/quantities";
import type { PlacedValue, Quantity } from "../fields/quantity";

export interface Peak {
  peak: PlacedValue; // of the first element
  numbers: number[]; // of all elements that share the value there
}

const NamedElements = 4; // in a row

// Elements that share an averaged value at a node and face are one row. The highest come first;
// of equal values the order stays.
export function rankPeaks(values: PlacedValue[], quantity: Quantity, length: number): Peak[] {
  const rank = rankOf(quantity);
  const known = new Map<string, Peak>();
  for (const peak of values.sort((a, b) => rank(b.value) - rank(a.value))) {
    const isOfNode = peak.kind !== "beam";
    const place = isOfNode ? `${peak.node} ${peak.face} ${peak.value}` : `${peak.number}`;
    const key = `${peak.kind} ${place}`;
    const row = known.get(key);
    if (row === undefined) known.set(key, { peak, numbers: [peak.number] });
    else row.numbers.push(peak.number);
  }
  return [...known.values()].slice(0, length);
}

// "shell 812", "shells 812, 813"
export function nameElements(kind: PlacedValue["kind"], numbers: readonly number[]): string {
  if (numbers.length === 1) return `${kind} ${numbers[0]}`;
  const more = numbers.length - NamedElements;
  const text = numbers.slice(0, NamedElements).join(", ");
  return `${kind}s ${text}${more > 0 ? ` and ${more} more` : ""}`;
}
