#include "audit/assemble_watched.h"

#include "skyline/solve_loads.h"
#include "system/assemble_stiffness.h"
#include "system/profile.h"

namespace kvx {

using korvex::WorkShare;

namespace {

// Units of work, as measured on plates of 10,000 to 40,000 shells: providing and clearing an entry
// of the skyline takes as long as 120 products of the factorisation, forming and adding an entry
// of an element's matrix as long as 350.
constexpr double UnitsPerStoredEntry = 120.0;
constexpr double UnitsPerElementEntry = 350.0;

// Units between two reports: less than a millisecond.
constexpr double UnitsPerReport = 2e7;

double SquareOf(std::int32_t n) { return static_cast<double>(n) * static_cast<double>(n); }

double CountElementUnits(const korvex::Model& model) {
  return UnitsPerElementEntry *
         (static_cast<double>(model.Shell4Elements.size()) * SquareOf(korvex::Shell4Dofs) +
          static_cast<double>(model.Shell3Elements.size()) * SquareOf(korvex::Shell3Dofs) +
          static_cast<double>(model.BeamElements.size()) * SquareOf(korvex::BeamDofs));
}

}  // namespace

void AssembleWatched(korvex::Model& model, std::size_t loads, WorkShare& work, int threads) {
  korvex::SkylineMatrix& K = model.Stiffness;
  korvex::BuildProfile(model);
  korvex::ComputeDiagonalAddresses(K);
  const double storing = UnitsPerStoredEntry * static_cast<double>(K.SkylineSize);
  work.rest = storing + CountElementUnits(model) + korvex::CountSolutionUnits(K, loads);
  korvex::AllocateStiffness(K);
  korvex::AddWork(storing, work);

  double unreported = 0.0;
  korvex::FormElementMatrices(
      model,
      [&](const double* ke, const std::int32_t* g, std::int32_t n) {
        korvex::ScatterElement(ke, g, n, K);
        unreported += UnitsPerElementEntry * SquareOf(n);
        if (unreported < UnitsPerReport) return;
        korvex::AddWork(unreported, work);
        unreported = 0.0;
      },
      threads);
  korvex::AddWork(unreported, work);
}

}  // namespace kvx
