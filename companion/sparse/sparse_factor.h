// The factorisation A = L D L^T of the free dofs' stiffness by MUMPS (Amestoy, Duff, Koster &
// L'Excellent 2001), in an order of ours, in memory or with the factors on a disk.
//
// No pivots are exchanged: A is positive definite but for a structure that can move. A is scaled to
// a diagonal of 1, so that a pivot shows what is left of its dof's own stiffness; where that is not
// more than roundings the pivot is left out and told.
//
// MUMPS keeps no two factors at a time: one thread alone may use it.
//
// Where A is a part, other ranks have its other rows (ranks/ranks.h). What rank 0 calls, it tells
// them, and they call it, too, each with its own part; right sides and solutions are on rank 0.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sparse/free_matrix.h"

namespace kvx {

// Whether this program was built with MUMPS and METIS.
bool HasSparseEngine();

// Why it cannot be had all the same, in the system's words: its libraries are not where the program
// runs. Empty: they are loaded.
std::string WhyNotLoaded();

// What to say where it was not built with them.
inline constexpr const char* NoSparseEngine = "this program was built without the sparse engine";

// A pivot is left out as 0 where no entry of its row, when it is eliminated, is larger than this
// share of the norm of the scaled matrix: of the largest sum of a row (CNTL(3) of MUMPS). The
// scaled diagonal is 1 but for a factor of 2, and the sums are some units: so it is, within some
// units, a share of the pivot's own diagonal. What should be 0 has 1e-15 from roundings mostly; and
// with a sound pivot of this size no digit of the displacements would be left.
inline constexpr double NullPivot = 1e-13;

// Files of factors out of core begin so.
inline constexpr const char* FactorFilePrefix = "factors";

struct FactorSettings {
  std::uint64_t memory = 0;  // bytes that the whole solution may take; 0: what is free
  std::uint64_t beside = 0;  // of them, what stands beside the factor: matrix, loads, work columns
  std::uint64_t coming = 0;  // of that, what is not taken yet
  std::string outOfCore;     // an existing folder for the factors, UTF-8; empty: in memory
};

// What a rank has of the work. Before the factorisation flops and bytes are foreseen.
struct RankShare {
  std::uint64_t elements = 0;  // whose matrices it forms
  std::uint64_t entries = 0;   // of A
  double flops = 0.0;          // of the factorisation
  std::uint64_t bytes = 0;     // that MUMPS takes at its peak
};

struct SparseFactor {
  std::shared_ptr<void> job;  // of MUMPS; ended with the last copy, by all ranks together
  std::int32_t n = 0;
  std::uint64_t bytes = 0;               // that MUMPS took at its peak, on all ranks
  std::uint64_t diskBytes = 0;           // of the factors
  double flops = 0.0;                    // of the factorisation
  std::vector<std::int32_t> nullPivots;  // rows of A; not empty: A is singular
  std::vector<RankShare> ranks;          // on rank 0, where A is a part; without elements
};

// Finds out what the factor of A will look like. places[i]: the place of row i in the order; on
// other ranks it may be empty. settings: each rank has a folder of its own; the memory that rank 0
// says is that of each.
// Throws a Stop where the memory that it will take is not allowed or not there; the text names
// both, and what helps. A stays in use until FactorMatrix has returned.
void AnalyseMatrix(const UpperMatrix& A, const std::vector<std::int32_t>& places,
                   const FactorSettings& settings, SparseFactor& factor);

// It stays within the memory that is allowed. Throws a Stop where memory or disk do not hold the
// factor.
void FactorMatrix(const UpperMatrix& A, const FactorSettings& settings, SparseFactor& factor);

// Solves A x = b. x: n x columns, a column after the other; holds b, gets x; of other ranks null.
void SolveColumns(SparseFactor& factor, std::int32_t columns, double* x);

// A vector v with A v = 0 for the null pivot of this rank, the first is 0. v: n.
void FindNullVector(SparseFactor& factor, std::size_t rank, std::vector<double>& v);

}  // namespace kvx
