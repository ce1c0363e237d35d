// A short flight of the view from one place to another; none for people who want no motion.

import { mixViews } from "./view";
import type { View } from "./view";

export interface Flight {
  from: View;
  to: View;
  begin: number; // time of its first step, milliseconds; NaN before that
}

const FlightTime = 350; // milliseconds

// Null where the system asks for reduced motion.
export function beginFlight(from: View, to: View): Flight | null {
  const isStill = window.matchMedia("(prefers-reduced-motion: reduce)").matches;
  return isStill ? null : { from, to, begin: NaN };
}

// The view at a time, and whether the flight is over.
export function stepFlight(flight: Flight, time: number): [View, boolean] {
  if (Number.isNaN(flight.begin)) flight.begin = time;
  const share = (time - flight.begin) / FlightTime;
  if (share >= 1) return [flight.to, true];
  // Slow at both ends.
  const eased = share * share * (3 - 2 * share);
  return [mixViews(flight.from, flight.to, eased), false];
}
