// Blocks: arrays as the page carries them, gzip in base64 in a <script type="text/plain">.
//
// A block's columns are listed in the page's JSON. A column has rows of `width` numbers: it begins
// with the first number of all rows, then come the second ones. Each has one of four encodings, all
// in byte planes (all lowest bytes first, then all second ones ...), which compress well.

// Encodings:
//   integers  differences of neighbours, 32 bits, modulo 2^32          -> Int32Array
//   decimals  numbers of six digits, as m 10^e with |m| <= 999999: m + 2^23 in 24 bits,
//             e + 64 in 8 bits; e of 127 - 64: m = 1, 2, 3 is +inf, -inf, NaN -> Float32Array
//   doubles   IEEE 754, 64 bits, little endian                          -> Float64Array
//   fixed     n / 10^digits, differences d of neighbours' n in 48 bits, as 2 d, or -2 d - 1 where
//             d < 0; all numbers are exact                              -> Float64Array
export interface Column {
  name: string;
  encoding: "integers" | "decimals" | "doubles" | "fixed";
  count: number; // numbers
  at: number; // first byte in the block, before compression
  width?: number; // numbers in a row; 1 where it is missing
  digits?: number; // "fixed": decimal places; 0 where it is missing
}

export type Block = Map<string, Int32Array | Float32Array | Float64Array>;
