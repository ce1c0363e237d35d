// Columns of a block by name, checked for what they hold.

import type { Block } from "./blocks";

// A column of a block, checked: a page whose parts do not fit one another shows nothing.
function column<T extends Int32Array | Float32Array | Float64Array>(
  block: Block,
  name: string,
  isFitting: (values: Int32Array | Float32Array | Float64Array) => values is T,
  count?: number,
): T {
  const values = block.get(name);
  if (values === undefined || !isFitting(values) || values.length !== (count ?? values.length)) {
    throw new Error(`The data of this page is damaged: column ${name} is missing or does not fit.`);
  }
  return values;
}

type Numbers = Int32Array | Float32Array | Float64Array;
const areIntegers = (values: Numbers): values is Int32Array => values instanceof Int32Array;
const areDecimals = (values: Numbers): values is Float32Array => values instanceof Float32Array;
const areDoubles = (values: Numbers): values is Float64Array => values instanceof Float64Array;

export function integers(block: Block, name: string, count?: number): Int32Array {
  return column(block, name, areIntegers, count);
}

export function decimals(block: Block, name: string, count?: number): Float32Array {
  return column(block, name, areDecimals, count);
}

export function doubles(block: Block, name: string, count?: number): Float64Array {
  return column(block, name, areDoubles, count);
}

export function findIntegers(block: Block, name: string): Int32Array | null {
  return block.has(name) ? integers(block, name) : null;
}
