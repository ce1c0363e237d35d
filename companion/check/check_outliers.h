// K601, K602: thicknesses and sections out of line with their table, or with their elements, as by
// a mistaken unit (find_outlier.h).
#pragma once

#include "check/checked_model.h"
#include "check/element_sizes.h"
#include "check/table_rows.h"
#include "finding/finding.h"

namespace kvx {

// A shell much thicker than its largest element is long, or a section much deeper than its longest
// beam, is none. Meshes around a detail go down to elements as long as the plate is thick.
inline constexpr double ThickestShare = 5.0;
inline constexpr double DeepestShare = 20.0;

// The thinnest plates of structures are 1/500 of the smallest element of a coarse mesh; test cases
// for the limit of thin plates go down to 1/10000.
inline constexpr double ThinnestShare = 1.0 / 20000.0;

// The height of a T or L section, or a tube's diameter, over its shortest beam. The slimmest rods
// and stays that are meant to carry are 1/200 to 1/400; a section in m in a model in mm comes to
// 1/1000 and below, as beams are longer than their sections are high.
inline constexpr double SlimmestShare = 1.0 / 500.0;

// No web, flange or wall is that thin beside its height, width or mean radius: the thinnest tanks
// come to 1/1000. Above the bound one of both sizes is in another unit.
inline constexpr double ThinnestWall = 1.0 / 1000.0;

// The factor of 10 between sections counts only where it also puts the proportions of web or tube
// out of line with the others, nearly as much: a deep girder has a thicker web than a stiffener.
inline constexpr double ProportionGap = 7.0;

void CheckThicknessOutliers(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                            FindingList& list);
void CheckSectionOutliers(const TableUse& use, const ElementSizes& sizes, CheckedModel& model,
                          FindingList& list);

}  // namespace kvx
