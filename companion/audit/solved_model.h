// A solved model: what all audits of results begin with.
//
// The elements, the displacements at full precision, the loads, and which degrees of freedom are
// held. A nodal force on a held dof that is so large that it can only be 1e20 u prescribes the
// displacement u (docs/model-file.md, Prescribed displacements). It is not a load: it stands apart.
// The smallest displacement that counts is 1e-9 of the model's extent, the smallest rotation 1e-6.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "audit/detail_peaks.h"
#include "model/model.h"
#include "skyline/work_share.h"

namespace kvx {

// What a model file is recognised by. Two files with the same are taken for the same.
struct ModelFileId {
  std::uint64_t size = 0;  // bytes
  std::uint64_t hash = 0;  // HashBytes of them
};
inline bool operator==(const ModelFileId& a, const ModelFileId& b) {
  return a.size == b.size && a.hash == b.hash;
}
inline bool operator!=(const ModelFileId& a, const ModelFileId& b) { return !(a == b); }

// FNV-1a with 64 bits (Fowler, Noll & Vo 1991): for mistakes, not against forgery.
std::uint64_t HashBytes(std::string_view bytes);

ModelFileId IdentifyModelFile(std::string_view modelText);

// A displacement that a force of 1e20 u imposes on a held dof.
struct PrescribedMotion {
  std::int32_t row = 0;   // of the force, 0-based in NFOR
  std::int32_t node = 0;  // 0-based
  std::int32_t dof = 0;   // 0 .. 5: ux, uy, uz, rx, ry, rz, global
  double value = 0.0;     // force / 1e20: length in model units, or radians
};

struct SolvedModel {
  ModelFileId file;

  // Tables, elements and NEQ; Displacements: NPOIN x 6, global, at full precision; LoadVector: the
  // loads before any reduction, NPOIN x 6, global, without the forces that prescribe displacements.
  // Stiffness is empty.
  korvex::Model model;

  std::vector<std::uint8_t> isHeld;          // [NEQ] 1: a restraint holds the dof; 0: it is free
  std::vector<PrescribedMotion> prescribed;  // in the order of the forces

  DetailPeaks details;  // of the beams' detail models; empty where these were not made
};

// Solves the model with the solver's own routines, without any file: the displacements have the
// bits of a run. share: receives the share of the work that is done, 0 .. 1, at least some hundred
// times during long work; may be empty, may throw to end it. Throws a Stop where a run would stop
// before its results. A model that can move gives NaNs or huge numbers without a word.
// threads: for assembly and solution.
void SolveInMemory(std::string_view modelText, const korvex::ShareCallback& share,
                   SolvedModel& solved, int threads = 1);

// The same from displacements that are known, as from their file (displacement_file.h).
// displacements: NPOIN x 6. Throws a Stop where a run would, and where their number differs.
void CompleteFromDisplacements(std::string_view modelText, std::vector<double> displacements,
                               SolvedModel& solved);

// Fills what the solution leaves open: LoadVector, isHeld, prescribed; frees the matrix.
// solved: file and model, with the tables, elements, NEQ and Displacements of a run. Throws a Stop
// where a load, a restraint or an element refers to nothing, or the number of displacements is not
// NPOIN x 6.
void CompleteSolvedModel(SolvedModel& solved);

}  // namespace kvx
