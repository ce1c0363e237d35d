// What `kvx top --of` can rank: the names of its quantities, and what stands for them in texts.
#pragma once

#include <string>
#include <vector>

#include "audit/maxima.h"

namespace kvx {

// All names that --of takes, in the order of the help.
std::vector<std::string> ListQuantityNames();

// Fills the quantities that a name stands for, in their order: "stress" those of shells and beams,
// of these by detail model and by section forces.
// Capitals do not matter. Returns false where there is no such name.
bool FindQuantities(std::string name, std::vector<Quantity>& quantities);

// The name of a single quantity, as --of takes it: "shells", "ux".
const char* QuantityName(Quantity quantity);

// What the numbers are: "von Mises stress, upper or lower face".
const char* DescribeQuantity(Quantity quantity);

// What has the quantity. Stresses are of shells or of beams, all else is of nodes.
bool IsOfBeams(Quantity quantity);
bool IsOfNodes(Quantity quantity);
bool IsOfShells(Quantity quantity);

}  // namespace kvx
