// The clipping plane in the frame of the picture, and the choice of sparse places.
import assert from "node:assert/strict";
import { test } from "node:test";

import { clipPlane } from "../../../../companion/view/page/src/scene/clip";
import { findFrame, toPicture } from "../../../../companion/view/page/src/scene/frame";
import type { Place } from "../../../../companion/view/page/src/scene/frame";
import { pickSparse } from "../../../../companion/view/page/src/scene/sparse";

const frame = findFrame(new Float64Array([10, 0, -5, 30, 40, 5]));

function isKept(clip: Parameters<typeof clipPlane>[1], place: Place): boolean {
  const [a, b, c, d] = clipPlane(frame, clip);
  const [x, y, z] = toPicture(frame, place);
  return a * x + b * y + c * z <= d;
}

test("a plane across y at a quarter keeps what is below y = 10", () => {
  const clip = { axis: "y" as const, share: 0.25, isFlipped: false };
  assert.ok(isKept(clip, [30, 9.9, 5]));
  assert.ok(!isKept(clip, [10, 10.1, -5]));
  assert.ok(!isKept({ ...clip, isFlipped: true }, [30, 9.9, 5]));
  assert.ok(isKept({ ...clip, isFlipped: true }, [10, 10.1, -5]));
});

test("planes at the ends keep what lies in them", () => {
  assert.ok(isKept({ axis: "x", share: 0, isFlipped: false }, [10, 20, 0]));
  assert.ok(isKept({ axis: "x", share: 1, isFlipped: true }, [30, 20, 0]));
});

test("no plane keeps all", () => {
  assert.deepEqual(clipPlane(frame, { axis: "none", share: 0, isFlipped: false }), [0, 0, 0, 0]);
});

test("sparse places are apart, and none is far from one that was kept", () => {
  const list = Array.from({ length: 2500 }, (_, at) => ({
    place: [(at % 50) / 70, Math.floor(at / 50) / 70, 0] as Place,
  }));
  const kept = pickSparse(list, 1000).map(({ place }) => place);
  const apart = (a: Place, b: Place): number => Math.hypot(a[0] - b[0], a[1] - b[1]);
  assert.ok(kept.length > 50, `${kept.length}`);
  kept.forEach((a, row) => {
    for (const b of kept.slice(0, row)) assert.ok(apart(a, b) >= 0.06);
  });
  // Not farther than the distance and what thinning out before took away (a third, in a square).
  for (const { place } of list) {
    assert.ok(kept.some((other) => apart(place, other) < 0.06 + 0.02 * Math.SQRT2));
  }
});

test("no more sparse places than asked for", () => {
  const list = Array.from({ length: 900 }, (_, at) => ({
    place: [(at % 30) / 10, Math.floor(at / 30) / 10, 0] as Place,
  }));
  const kept = pickSparse(list, 40);
  assert.ok(kept.length <= 40 && kept.length > 10, `${kept.length}`);
});
