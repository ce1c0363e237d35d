#include "results/corner_sum.h"

namespace korvex {

namespace {

// The offsets of the upper faces may differ by the own element's thickness divided by this.
constexpr double OffsetDivisor = 10.0;

// Whether an element lies in the surface of the sum's own one, and whether the normals point to
// opposite sides.
struct SurfaceTest {
  bool isInSurface, isFlipped;
};

SurfaceTest TestSurface(Vector3 normal, double TK, const CornerSum& sum) {
  const Vector3& own = sum.normal;
  const bool flipped = own[0] * normal[0] + own[1] * normal[1] + own[2] * normal[2] <= 0.0;
  if (flipped) normal = {-normal[0], -normal[1], -normal[2]};
  const double half = TK * 0.5;
  const double ownHalf = sum.TK * 0.5;
  const Vector3 w{half * normal[0] - ownHalf * own[0], half * normal[1] - ownHalf * own[1],
                  half * normal[2] - ownHalf * own[2]};
  return {!(Length(w) > sum.TK / OffsetDivisor), flipped};
}

}  // namespace

void AddCorner(const StressVector& top, const StressVector& bottom, Vector3 normal, double TK,
               CornerSum& sum) {
  const SurfaceTest test = TestSurface(normal, TK, sum);
  if (!test.isInSurface) return;
  AddFaces(test.isFlipped ? bottom : top, test.isFlipped ? top : bottom, sum);
}

void TakeAlike(CornerSum& sum) {
  const SurfaceTest test = TestSurface(sum.normal, sum.TK, sum);
  sum.takesAlike = test.isInSurface && !test.isFlipped;
}

}  // namespace korvex
