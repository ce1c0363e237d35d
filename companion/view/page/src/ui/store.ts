// Holds the state of the page. A change is shown when the data that it needs are there; of several
// changes in the meantime only the last state is shown.

import type { Derive } from "./derive";
import type { Shown } from "./shown";
import type { CaseData } from "./case_data";
import type { ViewState } from "../state";

export interface Store {
  state(): ViewState;
  // Done when it, or a later one, is shown. Fails where data cannot be read; then the state is again
  // that of the picture.
  change(patch: Partial<ViewState>): Promise<void>;
  note(patch: Partial<ViewState>): void; // of what is seen already, such as the camera
}

export function makeStore(
  first: ViewState,
  read: (state: ViewState) => Promise<CaseData[]>,
  derive: Derive,
  show: (shown: Shown) => void,
): Store {
  let state = first;
  let good = first; // the last one that was shown
  let known: { promise: Promise<CaseData[]>; data: CaseData[] } | null = null;
  const refresh = async (): Promise<void> => {
    const promise = read(state);
    // What is there already is shown at once, without a turn of the event loop.
    if (known?.promise !== promise) {
      const data = await promise.catch((error: unknown) => {
        state = good;
        throw error;
      });
      if (read(state) !== promise) return; // a later change asked for other data
      known = { promise, data };
    }
    good = state;
    show(derive(state, known.data));
  };
  return {
    state: () => state,
    change(patch) {
      state = { ...state, ...patch };
      return refresh();
    },
    note(patch) {
      state = { ...state, ...patch };
    },
  };
}
