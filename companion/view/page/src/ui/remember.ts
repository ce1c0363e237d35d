// Work that is done again only where what it depends on has changed.

// Calls `make` where an argument is another one than in the last call; else gives the last result.
export function remember<A extends readonly unknown[], R>(
  make: (...given: A) => R,
): (...given: A) => R {
  let last: { given: A; result: R } | null = null;
  return (...given) => {
    const known = last;
    if (known !== null && given.every((value, i) => value === known.given[i])) return known.result;
    const result = make(...given);
    last = { given, result };
    return result;
  };
}
