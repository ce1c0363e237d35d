// Times the averaging of corner stresses over the detail models of 5,000 and of 20,000 beams.
//
// The larger grillage has four times the beams and the same width. A time that grows with the
// number of beams makes a ratio of about 4; comparing all pairs would make 16.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "beamshell/average_corners.h"
#include "beamshell/extrude_outline.h"

namespace {

using korvex::BeamShellModel;
using korvex::Vector3;

constexpr std::int32_t Columns = 50;
constexpr double Span = 2000.0;  // of a beam, and the distance between parallel ones
constexpr int Runs = 5;

// Half a flange is 100 wide, and so is the topmost part of the web: 20 steps to a span, of five
// shells each.
constexpr korvex::BeamSection Section{270.0, 12.0, 200.0, 20.0};

// Appends the detail model of the beam from `end1` along `axis`, with stresses that differ from
// corner to corner.
void AddBeam(const Vector3& end1, const Vector3& axis, std::vector<BeamShellModel>& models) {
  BeamShellModel& model = models.emplace_back();
  model.E = 2e11;
  model.Mu = 0.3;
  model.EndPoint1 = end1;
  for (std::size_t i = 0; i < 3; ++i) model.EndPoint2[i] = end1[i] + Span * axis[i];
  model.OrientVector = {0.0, 0.0, 1.0};
  korvex::SectionOutline outline;
  BuildTOutline(Section, model.MeshLevel, outline);
  ExtrudeOutline(outline, 0, model);
  for (std::size_t e = 0; e < model.Shells.size(); ++e) {
    for (std::size_t k = 0; k < 4; ++k) {
      const auto stress = static_cast<double>((models.size() + e + k) % 1000);
      model.Shells[e].NodeStressTop[k].fill(stress);
      model.Shells[e].NodeStressBottom[k].fill(-stress);
    }
  }
  model.LinkNodes = {};  // as the solution leaves it
  model.Links = {};
}

// A grillage of `count` beams: at each node one begins along x and one along y, so that four meet
// there.
void MakeGrillage(std::int32_t count, std::vector<BeamShellModel>& models) {
  models.reserve(static_cast<std::size_t>(count));
  for (std::int32_t node = 0; node < count / 2; ++node) {
    const std::int32_t column = node % Columns, row = node / Columns;
    const Vector3 end1{column * Span, row * Span, 0.0};
    AddBeam(end1, {1.0, 0.0, 0.0}, models);
    AddBeam(end1, {0.0, 1.0, 0.0}, models);
  }
}

// The median time of several runs, in seconds. A first one, not counted, touches the memory.
double TimeAveraging(std::int32_t count) {
  std::vector<BeamShellModel> models;
  MakeGrillage(count, models);
  AverageBeamShellStresses(models);
  std::vector<double> seconds;
  for (int run = 0; run < Runs; ++run) {
    const auto start = std::chrono::steady_clock::now();
    AverageBeamShellStresses(models);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    seconds.push_back(time.count());
  }
  std::sort(seconds.begin(), seconds.end());
  const double median = seconds[Runs / 2];
  std::printf("%d beams of %d shells: %.2f seconds\n", count, models[0].ShellCount, median);
  return median;
}

}  // namespace

int main() {
  const double small = TimeAveraging(5000);
  const double large = TimeAveraging(20000);
  std::printf("ratio: %.1f\n", large / small);
  return 0;
}
