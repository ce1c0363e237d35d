#include "beam/beam_frame.h"

#include <algorithm>

namespace korvex {

double BeamLength(const BeamElement& beam) { return Length(Subtract(beam.NodeJ, beam.NodeI)); }

void ComputeBeamFrame(const Vector3& d, const Vector3& v, BeamFrame& frame) {
  const Vector3 c = Cross(v, d);
  const Vector3 x = Normalise(d);
  const Vector3 y = Normalise(c);
  const Vector3 z = Normalise(Cross(d, c));
  std::copy(x.begin(), x.end(), frame.begin());
  std::copy(y.begin(), y.end(), frame.begin() + 3);
  std::copy(z.begin(), z.end(), frame.begin() + 6);
}

void ComputeBeamFrame(const BeamElement& beam, BeamFrame& frame) {
  ComputeBeamFrame(Subtract(beam.NodeJ, beam.NodeI), Subtract(beam.RefPoint, beam.NodeI), frame);
}

void BuildBeamRotation(const BeamFrame& frame, BeamMatrix& T) {
  T.fill(0.0);
  for (std::size_t block = 0; block < 4; ++block) {
    for (std::size_t r = 0; r < 3; ++r) {
      for (std::size_t c = 0; c < 3; ++c)
        T[(3 * block + r) * 12 + 3 * block + c] = frame[3 * r + c];
    }
  }
}

}  // namespace korvex
