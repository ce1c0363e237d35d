// Elements of a solved model in words.
#pragma once

#include <string>

#include "audit/end_forces.h"
#include "audit/maxima.h"
#include "tables/model_origin.h"

namespace kvx {

// For people: "node", "four-node shell", "three-node shell", "beam".
const char* NameOf(Holder holder);
const char* NameOf(ElementKind kind);

// In CSV and JSON, as the options of `kvx forces` call them: "node", "shell", "triangle", "beam".
const char* KindWord(Holder holder);
const char* KindWord(ElementKind kind);

// "T 3", "L 0", "C 1": the table of the section and the row; "none" where the type has no table.
std::string SectionName(std::int32_t type, std::int32_t row);

// That of a beam.
std::string SectionName(const korvex::Model& model, std::int32_t beam);

// "beam 10 at (0, 0, 0) .. (1, 0, 0)"; "four-node shell 7 at (50, 50, 0)", the middle of its nodes.
// Of an imported model "beam 10 (deck CBAR 12) at ...".
std::string DescribeElement(const korvex::Model& model, const ModelOrigin& origin,
                            const ElementRef& element);
std::string DescribeElement(const korvex::Model& model, const ElementRef& element);

// "node 5 at (0, 0, 0)"; of an imported model "node 5 (deck 1017) at (0, 0, 0)".
std::string DescribeNode(const korvex::Model& model, const ModelOrigin& origin, std::int32_t node);
std::string DescribeNode(const korvex::Model& model, std::int32_t node);

}  // namespace kvx
