// Rows in words, with their places: what the messages of findings begin with.
#pragma once

#include <array>
#include <string>

#include "check/checked_model.h"
#include "finding/finding.h"

namespace kvx {

// The degrees of freedom of a node in their order, as messages name them.
inline constexpr std::array<const char*, 6> DofNames{"Ux", "Uy", "Uz", "Rx", "Ry", "Rz"};

// The force or moment of each.
inline constexpr std::array<const char*, 6> ForceNames{"Fx", "Fy", "Fz", "Mx", "My", "Mz"};

// Six significant digits at most: "1500", "0.25", "1e-05".
std::string NumberText(double value);

// "(1500, 600, 0)"
std::string PointText(const korvex::Vector3& point);

// "node 5 at (1500, 600, 0)"; "node 5" where its place is not known.
std::string DescribeNode(const CheckedModel& model, std::int32_t node);

// "beam 10 at (1500, 600, 0) .. (1500, 1200, 0)"; "four-node shell 7 at (50, 50, 0)", its middle;
// without a place where its nodes are not known.
std::string DescribeElement(const CheckedModel& model, korvex::Section section, std::int32_t row);

// A finding about one row: code, line, table, row, and for nodes and elements nodes and position
// (of elements: the middle).
Finding MakeRowFinding(const char* code, const CheckedModel& model, korvex::Section section,
                       std::int32_t row);

// A finding about one node; its line is that of the node's row.
Finding MakeNodeFinding(const char* code, const CheckedModel& model, std::int32_t node);

}  // namespace kvx
