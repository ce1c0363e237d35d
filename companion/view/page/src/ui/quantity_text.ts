// The name of a quantity at the start of a line.

import type { Quantity } from "../fields/quantity";

// "von" in a name stays small.
export function titleOf(quantity: Quantity): string {
  const { label } = quantity;
  return label.startsWith("von ") ? label : label.charAt(0).toUpperCase() + label.slice(1);
}

// The same with its symbol.
export function headingOf(quantity: Quantity): string {
  return quantity.symbol === "" ? titleOf(quantity) : `${titleOf(quantity)}, ${quantity.symbol}`;
}
