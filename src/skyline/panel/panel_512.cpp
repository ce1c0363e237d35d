// The routines of panels, lanes and systems in vectors of 512 bits, eight doubles each. This file
// is compiled for processors that have these vectors and must not be called on others.
//
// Of the 32 vector registers, a tile of 6 x 24 entries takes 18, a row of the slice 3, products and
// masks the rest.
#include "skyline/panel/lane_kernel-inl.h"
#include "skyline/panel/panel_kernel-inl.h"
#include "skyline/panel/system_kernel-inl.h"

namespace korvex {

namespace {

struct Width512 {
  static constexpr int Lanes = 8;
  static constexpr int WideVectors = 3;    // of a strip of a panel with similar top rows
  static constexpr int NarrowVectors = 1;  // of a strip of a ragged panel
  static constexpr int SquareRows = 8;     // a square of 8 x 8 entries takes eight registers
  static constexpr int GroupColumns = 6;   // a tile of 3 x 6 entries takes 18 registers
  static constexpr int TileHeight = 3;
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));

  // v * factor. The instruction broadcasts the factor from memory to all lanes. Compilers would use
  // a separate broadcast for three products, which costs a third of the speed on Zen 4.
  static Vector Multiply(const Vector& v, const double* factor) {
    Vector product;
    asm("vmulpd %2%{1to8%}, %1, %0" : "=v"(product) : "v"(v), "m"(*factor));
    return product;
  }
};

}  // namespace

void BeginPanel512(const SkylineArrays& K, std::int64_t first, const PanelRows& memory,
                   Panel& panel) {
  BeginPanel<Width512>(K, first, memory, panel);
}

void ReducePanel512(const SkylineArrays& K, std::int64_t end, Panel& panel) {
  ReducePanel<Width512>(K, end, panel);
}

void FinishPanel512(const SkylineArrays& K, Panel& panel) { FinishPanel<Width512>(K, panel); }

double SumValues512(const double* values, std::int64_t count) {
  return SumValues<Width512>(values, count);
}

void ReduceLanes512(const LaneArrays& arrays, std::int64_t first, std::int64_t end) {
  ReduceLanes<Width512>(arrays, first, end);
}

void SubstituteLanes512(const LaneArrays& arrays, const BlockColumns& block) {
  SubstituteLanes<Width512>(arrays, block);
}

void FactorSystems512(const SystemLanes& systems, std::int64_t first, std::int64_t end) {
  FactorSystems<Width512>(systems, first, end);
}

void SubstituteSystems512(const SystemLanes& systems, const std::int64_t* reach) {
  SubstituteSystems<Width512>(systems, reach);
}

}  // namespace korvex
