// The stiffness of the free dofs, formed by all ranks together: each gets its rows (row_part.h).
#pragma once

#include <cstdint>
#include <vector>

#include "sparse/free_matrix.h"
#include "sparse/row_part.h"

namespace kvx {

// As AssembleFree, where there is more than one rank: A becomes the part of rank 0, C is whole.
// owners: of the nodes, from ShareNodes. elements: how many each rank has formed.
// Also throws a Stop that names another rank which could not form its rows.
void AssembleShared(const korvex::Model& model, const FreeDofs& dofs,
                    const std::vector<std::int32_t>& owners, const korvex::ShareCallback& report,
                    UpperMatrix& A, FixedRows& C, int threads,
                    std::vector<std::uint64_t>& elements);

// The rows of a part. n: of all rows. C: whole on rank 0, with equations of the whole model; of
// others empty. Arguments else and errors as AssembleFree's.
void AssembleRows(RowPart& part, std::int32_t n, const korvex::ShareCallback& report,
                  UpperMatrix& A, FixedRows& C, int threads);

// What another rank does for AssembleShared. work: room for its products (multiply.h).
void HelpAssemble(UpperMatrix& A, std::vector<double>& work);

}  // namespace kvx
