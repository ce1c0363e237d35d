// Where an imported model comes from, as columns of the page: the deck's numbers, types and groups.
//
//   origin.node                             the number of each node
//   origin.shell, .triangle, .beam          of each element
//   origin.shell.type, ...                  its type, a row of the page's list of types; -1: none
//   origin.shell.groups, ..., node.groups   the rows of all groups, one group after the other; how
//                                           many each has stands in the page's list of groups
#pragma once

#include "tables/model_origin.h"
#include "view/page_block.h"

namespace kvx {

// Adds nothing where the model was not imported. origin: fits the model.
void AddOrigin(const ModelOrigin& origin, PageBlock& block);

}  // namespace kvx
