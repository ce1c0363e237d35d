// K3xx: supports and mechanisms.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> SupportCodes{
    {"K301", Severity::Error, "A part can move as a rigid body",
     "A part is everything that elements connect by common nodes. The restraints of this part "
     "leave at least one of its six rigid-body motions free: it can move along a direction, or "
     "turn about a line, without any deformation. The message names all free motions. Nodes at "
     "the same place do not connect parts; only a common node does.",
     "Runs to the end with exit status 0. Depending on rounding, the displacements are NaN, or "
     "numbers of any size: a T beam whose turn about y is free moves by 8e11 m, and without a "
     "restraint of its torsion it has NaNs everywhere. Where the loads happen to balance, or "
     "push little in the free direction, the numbers look right and are not.",
     "Fix at least one displacement in each free direction. Against a turn, fix a displacement "
     "square to the lever arm at a node off the line, or the rotation about the line. If the "
     "part was meant to be connected with another, give them common nodes.",
     "0: 1 1 1 1 0 1", "0: 1 1 1 1 1 1"},
    {"K302", Severity::Warning, "A restraint flag is neither 0 nor 1",
     "A flag fixes its degree of freedom if it is 1. Any other number, also 2 or -1, leaves it "
     "free. If the part can move for that reason, the finding is an error.",
     "Leaves the degree of freedom free, without a message. If nothing else holds the part, the "
     "displacements are meaningless (8e11 m of a beam of 2 m) or NaN.",
     "Write 1 to fix the degree of freedom, 0 to leave it free.", "0: 1 1 1 1 2 1",
     "0: 1 1 1 1 1 1"},
    {"K303", Severity::Hint, "A node has two restraint rows",
     "A node stands in several rows of the restraints. This is allowed; a later row cannot "
     "release what an earlier one fixes.",
     "Fixes every degree of freedom whose flag is 1 in any of the rows.",
     "Nothing has to be done. If the later row was meant to replace the earlier one, remove the "
     "earlier one.",
     "0: 1 1 1 0 0 0\n0: 0 0 0 1 1 1", "0: 1 1 1 1 1 1"},
    {"K304", Severity::Warning, "A support on a node of no element",
     "All six degrees of freedom of a node are fixed that no element uses. The support holds "
     "nothing. Often a node number has slipped, and the node that was meant is not supported.",
     "Solves the model; this node does not move, and all else is as without the row.",
     "Support the node that was meant. A node that only marks a place, such as the centre of an "
     "arc, can be removed from the table or stay as it is.",
     "99: 1 1 1 1 1 1", "9: 1 1 1 1 1 1"},
    {"K305", Severity::Error, "A support on a node that does not exist",
     "The node number of a restraint lies outside the table of nodes. Nodes are counted from 0.",
     "Stops before the solution with the notice that the restraint refers to this node, exit "
     "status 1. A row without a 1 is read and has no effect; then the finding is a warning.",
     "Correct the node number. The last node has the number NPOIN - 1.",
     "Number of nodal points:NPOIN=2\n...\n2: 1 1 1 1 1 1",
     "Number of nodal points:NPOIN=2\n...\n1: 1 1 1 1 1 1"},
    {"K306", Severity::Warning, "A part is hardly held",
     "The supports exclude all rigid-body motions of the part, but one of them only just: the "
     "supports see less than 1e-5 of it. So three pins that were meant to lie in a line, but are "
     "off it by rounded coordinates, resist a turn about this line with a lever arm of nearly 0.",
     "Solves the model. Small loads turn the part far: a beam of 2 m with pins that are 1e-7 m "
     "off their line turns by 2e9 rad under a moment of 10 Nm. The digits lost spoil all else.",
     "Add a support with a lever arm that counts: a displacement at a node far from the line, or "
     "the rotation about it.",
     "0: 1 1 1 0 0 0\n1: 1 1 1 0 0 0\n2: 1 1 1 0 0 0",
     "0: 1 1 1 1 0 0\n1: 1 1 1 0 0 0\n2: 1 1 1 0 0 0"},
    {"K310", Severity::Error, "A mechanism within a part",
     "Nodes can move although their part is supported: nothing between them and the supports "
     "resists. A node may hang on a beam or shell whose E or thickness is 0, or a region may "
     "turn about a line because all that holds it besides has no stiffness. The message names a "
     "node, how it moves, how many nodes move with it, and the elements beside them. Found by "
     "kvx check --deep, and without this option in models that are solved in a second.",
     "Runs to the end with exit status 0. The nodes that move have NaNs, infinities or numbers "
     "of any size, mostly together with everything that is connected with them.",
     "Look at E, thickness and section of the elements that the message names. Connect the nodes "
     "with elements that have stiffness, or support them.",
     "#1:\nTK=0", "#1:\nTK=0.01"},
    {"K311", Severity::Warning, "Nearly a mechanism",
     "Nodes can move with so little resistance, measured by the stiffness of the elements at "
     "them, that the rounding errors of the solution are seen in the results. So does a stiff "
     "region on a far softer one: thin shells under others whose E is 1e8 times as large, or a "
     "number with a wrong unit. The message estimates the error. Found as K310 is.",
     "Runs to the end; the displacements of these nodes are wrong by about the percentage in the "
     "message, although six digits are printed.",
     "Compare E, thickness and section sizes of the elements named with those of their "
     "neighbours, also their units. Model what is as good as rigid with a stiffness that is 1000 "
     "times that of its neighbours, not more.",
     "E=2.06e22", "E=2.06e11"},
    {"K312", Severity::Error, "An element's stiffness is not a number",
     "The stiffness matrix of an element holds an infinity or a NaN, and no other finding says "
     "why. E, sizes or coordinates may be so large or small that products leave the range of "
     "numbers.",
     "Runs to the end with exit status 0. One such element makes NaNs of the displacements of "
     "everything that is connected with it.",
     "Look at the element's nodes, E, thickness or section, and at their units.", "E=2.06e311",
     "E=2.06e11"},
};

}  // namespace kvx
