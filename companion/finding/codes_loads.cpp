// K4xx: loads.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> LoadCodes{
    {"K401", Severity::Error, "A load on a node or element that does not exist",
     "The node of a force, or the element of a pressure or line load, lies outside its table. "
     "Nodes are counted from 0, and so are the elements of each kind: the first beam is beam 0 "
     "also where shells stand before it.",
     "Stops before the solution with the notice that the load refers to this node or element, "
     "exit status 1.",
     "Correct the number, or remove the row.",
     "Number of beam elements:NELEM_B=1\n...\n1:-500,-500",
     "Number of beam elements:NELEM_B=1\n...\n0:-500,-500"},
    {"K402", Severity::Error, "A force on a node of no element",
     "A force acts on a node that no element uses and that is not fixed. The structure does not "
     "feel it.",
     "Runs to the end with exit status 0. The node has infinities and NaNs; all else is solved "
     "without this force, and looks right.",
     "Load the node that was meant, or connect this node with an element.", "2<0,0,-1000,0,0,0>",
     "1<0,0,-1000,0,0,0>"},
    {"K403", Severity::Hint, "A load stands twice",
     "Two rows are equal: the same node or element, and the same values. Rows that differ are "
     "taken as meant.",
     "Adds both rows: the load acts twice.", "Remove one of the rows if the load was meant once.",
     "1<0,0,-1000,0,0,0>\n1<0,0,-1000,0,0,0>", "1<0,0,-1000,0,0,0>"},
    {"K404", Severity::Hint, "A load of zero", "All values of a load row are 0.",
     "Solves the model as without the row.", "Enter the load, or remove the row.", "1<0,0,0,0,0,0>",
     "1<0,0,-1000,0,0,0>"},
    {"K405", Severity::Error, "A prescribed displacement without its support",
     "A force is so large that it can only be a prescribed displacement: 1e20 times at least "
     "1e-9 of the model's extent, or a moment of 1e20 times at least 1e-6. But its degree of "
     "freedom is not fixed.",
     "Takes it as a force. A cantilever of 2 m bends by 8e10 m, with exit status 0.",
     "Add the restraint of this degree of freedom, or correct the force.",
     "Number of restricted nodal points:NRN=1\n0: 1 1 1 1 1 1\n"
     "Number of forces:NFOR=1\n1<0,0,-2.5e17,0,0,0>",
     "Number of restricted nodal points:NRN=2\n0: 1 1 1 1 1 1\n1: 0 0 1 0 0 0\n"
     "Number of forces:NFOR=1\n1<0,0,-2.5e17,0,0,0>"},
    {"K406", Severity::Hint, "A prescribed displacement",
     "A force of 1e20 times a displacement acts on a fixed degree of freedom: it prescribes this "
     "displacement. The hint tells the value, so that it can be compared with what was meant. A "
     "displacement larger than the model, or a rotation above 1, is a warning.",
     "Moves the degree of freedom by the force over 1e20. It counts as no load in the sums.",
     "Nothing has to be done if the value is the one meant.", "1<0,0,-2.5e23,0,0,0>",
     "1<0,0,-2.5e17,0,0,0>"},
    {"K407", Severity::Warning, "The model has no loads",
     "There are no forces, pressures and line loads, or all of them are 0. The density is read, "
     "but no weight is made from it.",
     "Runs to the end with exit status 0; all displacements and stresses are 0.",
     "Enter the loads. A weight must be entered as forces, pressures or line loads. Where the "
     "loads "
     "are the cases of a cases.toml beside the model, kvx cases solves it.",
     "Number of forces:NFOR=0", "Number of forces:NFOR=1\n1<0,0,-1000,0,0,0>"},
    {"K408", Severity::Hint, "A force acts on a support",
     "A force acts on a degree of freedom that is fixed. It goes straight into the support: the "
     "structure does not feel it. Where the degree of freedom has a prescribed displacement, "
     "which is a far larger force, the force is lost in the rounding.",
     "Solves the model; the displacements and stresses are as without the force. The support "
     "force read from Node_Dis.txt contains it.",
     "Remove the force, load another node, or release the support if it was not meant.",
     "0: 1 1 1 1 1 1\n...\n0<0,0,-1000,0,0,0>", "0: 1 1 1 1 1 1\n...\n1<0,0,-1000,0,0,0>"},
    {"K410", Severity::Warning, "A load is out of line",
     "A pressure or line load is more than 100 times as large as 95 % of the rows of its table "
     "are at most, in a table with 10 rows or more other than 0; or a pressure is above 1/100 of "
     "Young's modulus. Mostly it is another unit, Pa for MPa, or a digit too many.",
     "Takes the load as it is and runs to the end with exit status 0; displacements and stresses "
     "near the load are too large by powers of 10.",
     "Look at the unit and the decimal point of the load.",
     "0:0.02,0.02,0.02\n1:20000,20000,20000\n2:0.02,0.02,0.02",
     "0:0.02,0.02,0.02\n1:0.02,0.02,0.02\n2:0.02,0.02,0.02"},
};

}  // namespace kvx
