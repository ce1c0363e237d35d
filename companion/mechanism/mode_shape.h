// What a mode moves, and how: nodes, rigid-body motion where it is one, elements beside.
#pragma once

#include <vector>

#include "check/checked_model.h"
#include "mechanism/find_mechanisms.h"
#include "model/model.h"

namespace kvx {

// Calls visit(element, nodes) for all elements, in the order in which FormElementMatrices forms
// their matrices.
template <typename Visit>
void ForAllElements(const korvex::ModelTables& tables, const Visit& visit) {
  for (const korvex::Section section : ElementSections) {
    const std::int32_t rows = CountRows(tables, section);
    for (std::int32_t row = 0; row < rows; ++row) {
      visit(ElementRef{section, row}, NodesOf(tables, section, row));
    }
  }
}

// Fills nodes, displacements, body and motions of the mechanism from the displacements v, NEQ.
void DescribeMode(const korvex::Model& model, const std::vector<double>& v, Mechanism& mechanism);

// Where all that moves does so nearly as one rigid body, makes it so exactly and returns true.
bool MakeRigid(const korvex::Model& model, std::vector<double>& v);

// Fills `elements` from `nodes`: those that connect nodes that move with others, or else those at
// the mechanism's node.
void ListElementsBeside(const korvex::Model& model, Mechanism& mechanism);

}  // namespace kvx
