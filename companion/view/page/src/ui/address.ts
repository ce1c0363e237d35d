// The state as it stands in the address, after "#": short and readable, only what differs from the
// default: "#shells=sx&face=lower&show=loads,-edges&clip=-x:0.25&pick=node:12".
//
// Lists are separated by commas, parts of one thing by colons. Unknown names and values that this
// model does not have are left out, so that an old link still opens.

import { formatNumber } from "./numbers";
import type { Kind } from "../data/page_model";
import type { Camera, FaceChoice, ViewState } from "../state";

// What a model has; anything else in an address is ignored.
export interface AddressLimits {
  cases: number;
  hasEnvelopes: boolean;
  hasOwnValues: boolean; // of elements by themselves
  shellQuantities: readonly string[];
  beamQuantities: readonly string[];
  maps: readonly string[];
  hidden: Record<keyof ViewState["hidden"], number>; // rows
  counts: Record<Kind, number>;
}

const CameraDigits = 7; // of coordinates: so fine that edges are drawn as they were
const MostBands = 32;
const MostNumber = 1e30; // larger scales and limits are slips

const HiddenNames: Record<keyof ViewState["hidden"], string> = {
  thicknesses: "hide-thickness",
  materials: "hide-material",
  sections: "hide-section",
  parts: "hide-part",
  groups: "hide-group",
};

export function writeAddress(state: ViewState, defaults: ViewState): string {
  const entries: [string, string][] = [];
  const add = (name: string, value: string, standard: string): void => {
    if (value !== standard) entries.push([name, value]);
  };
  add("case", writeCase(state.case), writeCase(defaults.case));
  add("shells", state.shellQuantity, defaults.shellQuantity);
  add("beams", state.beamQuantity, defaults.beamQuantity);
  add("face", state.face, defaults.face);
  add("values", state.isAveraged ? "averaged" : "element", "averaged");
  add("scale", state.scale === null ? "" : formatNumber(state.scale), "");
  add("animate", state.isAnimated ? "yes" : "", "");
  add("show", writeShows(state.shows, defaults.shows), "");
  for (const [key, name] of hiddenNames()) add(name, state.hidden[key].join(","), "");
  add("clip", writeClip(state.clip), "");
  add("map", state.map, defaults.map);
  add("bands", String(state.bands), String(defaults.bands));
  add("range", state.range === null ? "" : state.range.map((v) => formatNumber(v)).join(":"), "");
  add("limits", state.hasSameLimits ? "same" : "", "");
  add("projection", state.isOrthographic ? "orthographic" : "", "");
  add("camera", state.camera === null ? "" : writeCamera(state.camera), "");
  add("pick", state.picked === null ? "" : `${state.picked.kind}:${state.picked.number}`, "");
  add("theme", state.theme, defaults.theme);
  add("controls", state.isPanelOpen ? "open" : "closed", defaults.isPanelOpen ? "open" : "closed");
  if (entries.length === 0) return "";
  return `#${entries.map(([name, value]) => `${name}=${encode(value)}`).join("&")}`;
}

// hash: with or without "#". Whatever it does not tell is as in the default.
export function readAddress(hash: string, defaults: ViewState, limits: AddressLimits): ViewState {
  const state = structuredClone(defaults);
  for (const entry of hash.replace(/^#/, "").split("&")) {
    const at = entry.indexOf("=");
    if (at < 1) continue;
    const value = decode(entry.slice(at + 1));
    if (value !== null) Readers.get(entry.slice(0, at))?.(value, state, limits);
  }
  return state;
}

type Reader = (value: string, state: ViewState, limits: AddressLimits) => void;

// A map, for an object would answer to "constructor", too.
const Readers = new Map<string, Reader>(Object.entries<Reader>({
  case: readCase,
  shells(value, state, limits) {
    if (isOneOf(value, ["plain", ...limits.shellQuantities])) state.shellQuantity = value;
  },
  beams(value, state, limits) {
    if (isOneOf(value, ["plain", ...limits.beamQuantities])) state.beamQuantity = value;
  },
  face(value, state) {
    const faces: FaceChoice[] = ["upper", "lower", "larger", "middle", "visible"];
    state.face = faces.find((face) => face === value) ?? state.face;
  },
  values(value, state, limits) {
    const known = limits.hasOwnValues ? ["averaged", "element"] : ["averaged"];
    if (isOneOf(value, known)) state.isAveraged = value === "averaged";
  },
  scale(value, state) {
    const scale = readNumber(value);
    if (scale !== null && scale >= 0) state.scale = scale;
  },
  animate(value, state) {
    state.isAnimated = value === "yes";
  },
  show: readShows,
  clip: readClip,
  map(value, state, limits) {
    if (isOneOf(value, ["auto", ...limits.maps])) state.map = value;
  },
  bands(value, state) {
    const bands = readCount(value, MostBands + 1);
    if (bands !== null) state.bands = bands;
  },
  range(value, state) {
    const [low, high] = readNumbers(value, ":", 2) ?? [];
    if (low !== undefined && high !== undefined && low < high) state.range = [low, high];
  },
  limits(value, state) {
    state.hasSameLimits = value === "same";
  },
  projection(value, state) {
    if (isOneOf(value, ["orthographic", "perspective"])) {
      state.isOrthographic = value === "orthographic";
    }
  },
  camera(value, state) {
    state.camera = readCamera(value) ?? state.camera;
  },
  pick: readPick,
  theme(value, state) {
    const themes: ViewState["theme"][] = ["auto", "light", "dark"];
    state.theme = themes.find((theme) => theme === value) ?? state.theme;
  },
  controls(value, state) {
    if (isOneOf(value, ["open", "closed"])) state.isPanelOpen = value === "open";
  },
  ...hiddenReaders(),
}));

function hiddenNames(): [keyof ViewState["hidden"], string][] {
  return [
    ["thicknesses", HiddenNames.thicknesses],
    ["materials", HiddenNames.materials],
    ["sections", HiddenNames.sections],
    ["parts", HiddenNames.parts],
    ["groups", HiddenNames.groups],
  ];
}

function hiddenReaders(): Record<string, Reader> {
  const readers: Record<string, Reader> = {};
  for (const [key, name] of hiddenNames()) {
    readers[name] = (value, state, limits) => {
      const count = limits.hidden[key];
      const rows = value.split(",").map((text) => (text === "-1" ? -1 : readCount(text, count)));
      const known = rows.filter((row): row is number => row !== null);
      state.hidden[key] = [...new Set(known)].sort((a, b) => a - b);
    };
  }
  return readers;
}

function writeCase(row: number): string {
  if (row === -1) return "highest";
  return row === -2 ? "lowest" : String(row);
}

function readCase(value: string, state: ViewState, limits: AddressLimits): void {
  const row = value === "highest" ? -1 : value === "lowest" ? -2 : readCount(value, limits.cases);
  if (row !== null && (row >= 0 || limits.hasEnvelopes)) state.case = row;
}

type Shows = ViewState["shows"];

// Names of what is shown beyond the default; with "-" what is not.
function writeShows(shows: Shows, defaults: Shows): string {
  const names = Object.keys(defaults) as (keyof Shows)[];
  const changed = names.filter((name) => shows[name] !== defaults[name]);
  return changed.map((name) => (shows[name] ? name : `-${name}`)).join(",");
}

function readShows(value: string, state: ViewState): void {
  for (const text of value.split(",")) {
    const names = Object.keys(state.shows) as (keyof Shows)[];
    const name = names.find((known) => known === text.replace(/^-/, ""));
    if (name !== undefined) state.shows[name] = !text.startsWith("-");
  }
}

// "x:0.25" keeps what lies below the plane, "-x:0.25" what lies above it.
function writeClip(clip: ViewState["clip"]): string {
  if (clip.axis === "none") return "";
  return `${clip.isFlipped ? "-" : ""}${clip.axis}:${formatNumber(clip.share, 4)}`;
}

function readClip(value: string, state: ViewState): void {
  const parts = /^(-?)([xyz]):(.+)$/.exec(value);
  const share = readNumber(parts?.[3] ?? "");
  const axis = (["x", "y", "z"] as const).find((known) => known === parts?.[2]);
  if (axis === undefined || share === null || share < 0 || share > 1) return;
  state.clip = { axis, share, isFlipped: parts?.[1] === "-" };
}

function writeCamera(camera: Camera): string {
  const numbers = [...camera.target, ...camera.direction, ...camera.up, camera.height];
  return numbers.map((value) => formatNumber(value, CameraDigits)).join(",");
}

function readCamera(value: string): Camera | null {
  const numbers = readNumbers(value, ",", 10);
  if (numbers === null) return null;
  const [a = 0, b = 0, c = 0, d = 0, e = 0, f = 0, g = 0, h = 0, i = 0, height = 0] = numbers;
  const length = Math.hypot(d, e, f);
  const isUpright = Math.hypot(e * i - f * h, f * g - d * i, d * h - e * g) > 1e-3 * length;
  if (!(height > 0) || !isUpright) return null;
  return {
    target: [a, b, c],
    direction: [d / length, e / length, f / length],
    up: [g, h, i],
    height,
  };
}

function readPick(value: string, state: ViewState, limits: AddressLimits): void {
  const [name, text = ""] = value.split(":");
  const kind = (["node", "shell", "triangle", "beam"] as const).find((known) => known === name);
  if (kind === undefined) return;
  const number = readCount(text, limits.counts[kind]);
  if (number !== null) state.picked = { kind, number };
}

function readNumber(text: string): number | null {
  if (text.trim() === "") return null;
  const value = Number(text);
  return Number.isFinite(value) && Math.abs(value) <= MostNumber ? value : null;
}

function readNumbers(text: string, separator: string, count: number): number[] | null {
  const numbers = text.split(separator).map(readNumber);
  const known = numbers.filter((value): value is number => value !== null);
  return known.length === count && numbers.length === count ? known : null;
}

// An integer from 0 to below the count.
function readCount(text: string, count: number): number | null {
  return /^\d{1,9}$/.test(text) && Number(text) < count ? Number(text) : null;
}

function isOneOf(value: string, known: readonly string[]): boolean {
  return known.includes(value);
}

// Commas and colons may stand in an address as they are, and read better so.
function encode(value: string): string {
  return encodeURIComponent(value).replaceAll("%2C", ",").replaceAll("%3A", ":");
}

function decode(text: string): string | null {
  try {
    return decodeURIComponent(text);
  } catch {
    return null; // a "%" that begins no letter
  }
}
