// The store: what is shown follows the last change; what cannot be read leaves the picture.
import assert from "node:assert/strict";
import { test } from "node:test";

import { defaultState } from "../../../../companion/view/page/src/state";
import type { ViewState } from "../../../../companion/view/page/src/state";
import type { CaseData } from "../../../../companion/view/page/src/ui/case_data";
import type { Derive } from "../../../../companion/view/page/src/ui/derive";
import { makeStore } from "../../../../companion/view/page/src/ui/store";

const first = defaultState("mises", "plain");

// Data of case k arrive when arrive(k) is called; those of case 9 never do. Shows the row of the
// case and the bands.
function makeTrial() {
  const waiting = new Map<number, { promise: Promise<CaseData[]>; arrive: () => void }>();
  const find = (row: number) => {
    let entry = waiting.get(row);
    if (entry === undefined) {
      let arrive = (): void => undefined;
      const promise = new Promise<CaseData[]>((done, fail) => {
        arrive = () => (row === 9 ? fail(new Error("damaged")) : done([]));
      });
      entry = { promise, arrive };
      waiting.set(row, entry);
    }
    return entry;
  };
  const shown: [number, number][] = [];
  const derive = ((state: ViewState) => ({ state })) as unknown as Derive;
  const store = makeStore(first, (state) => find(state.case).promise, derive, ({ state }) =>
    shown.push([state.case, state.bands]),
  );
  return { store, shown, arrive: (row: number) => find(row).arrive() };
}

test("a change is shown when its data are there, and at once if they are", async () => {
  const { store, shown, arrive } = makeTrial();
  const change = store.change({});
  assert.deepEqual(shown, []);
  arrive(0);
  await change;
  void store.change({ bands: 5 }); // not awaited
  assert.deepEqual(shown, [[0, 10], [0, 5]]);
});

test("of changes in the meantime only the last is shown", async () => {
  const { store, shown, arrive } = makeTrial();
  const changes = [store.change({ case: 1 }), store.change({ case: 2 })];
  arrive(2);
  arrive(1);
  await Promise.all(changes);
  assert.deepEqual(shown, [[2, 10]]);
});

test("what cannot be read leaves the state as it is shown", async () => {
  const { store, arrive } = makeTrial();
  arrive(0);
  await store.change({ bands: 8 });
  const change = store.change({ case: 9 });
  arrive(9);
  await assert.rejects(change, /damaged/);
  assert.deepEqual([store.state().case, store.state().bands], [0, 8]);
});

test("a note is kept and shows nothing", () => {
  const { store, shown } = makeTrial();
  store.note({ isOrthographic: true });
  assert.equal(store.state().isOrthographic, true);
  assert.deepEqual(shown, []);
});
