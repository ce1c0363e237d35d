// K5xx: size and order.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> SizeCodes{
    {"K501", Severity::Hint, "Memory, time, and the order of the nodes",
     "The solver stores each column of the stiffness matrix from its first entry down to the "
     "diagonal. How much that is depends on the order of the nodes in the file: it is little "
     "where the nodes of each element stand close together in the table. The finding tells "
     "memory and time of the file's order, and of the best of several other orders where that "
     "saves more than half of the time.",
     "It solves the model in the order of the file and renumbers nothing. The time is an "
     "estimate for one core of about 3 GHz.",
     "Call kvx renumber: it writes the model with its nodes in the best order found, and gives the "
     "old numbers back with --undo, also to results. Or let the pre-processor number the nodes for "
     "a small profile.",
     "Number of nodal points:NPOIN=4\n0:0,0,0\n1:3,0,0\n2:1,0,0\n3:2,0,0",
     "Number of nodal points:NPOIN=4\n0:0,0,0\n1:1,0,0\n2:2,0,0\n3:3,0,0"},
    {"K502", Severity::Error, "The matrix does not fit into the memory",
     "The stiffness matrix in the order of the file takes more memory than is free: in the "
     "machine, in its container, or within a limit of addresses (ulimit -v). That keeps korvex, "
     "and the skyline of kvx, from solving the model. Where kvx has its sparse engine, which takes "
     "a fraction of the memory, kvx run may solve the model all the same, and this is a "
     "warning; without it, it is an error.",
     "The run stops with a notice that names the matrix and its size, before it fills the memory.",
     "Call kvx run, which takes an engine that fits; kvx run --dry-run tells what each takes, see "
     "docs/large-models.md. For korvex itself call kvx renumber where a better order was found, "
     "see K501. Otherwise use a coarser mesh, or a machine with more memory.",
     "Number of nodal points:NPOIN=4\n0:0,0,0\n1:3,0,0\n2:1,0,0\n3:2,0,0",
     "Number of nodal points:NPOIN=4\n0:0,0,0\n1:1,0,0\n2:2,0,0\n3:3,0,0"},
    {"K503", Severity::Warning, "A detail model is very large",
     "After the solution each beam is rebuilt as shells, in rows about as long as the widest "
     "strip of its section. A beam thousands of times as long as that strip gets thousands of "
     "rows. Real beams do not have such proportions: nearly always the section is in another "
     "unit than the coordinates.",
     "It builds and solves the detail model all the same, which takes memory and time.",
     "Give the sizes of the section in the units of the coordinates.",
     "T_beam stiffener, coordinates in mm\nHw=0.3\nTw=0.01\nBf=0.1\nTf=0.012",
     "T_beam stiffener, coordinates in mm\nHw=300\nTw=10\nBf=100\nTf=12"},
    {"K504", Severity::Error, "The detail models do not fit into the memory",
     "The detail models of beams take more memory than is free: in the machine, in its container, "
     "or within a limit of addresses (ulimit -v). The finding names the largest. Where kvx can "
     "make them in blocks, of as many beams as the memory holds, this is a warning: only korvex, "
     "which makes all of them together, stops. A block is at least a beam with all that share an "
     "end with it, and the solution of one of them.",
     "korvex solves the structure, writes its displacements and shell stresses, and then stops "
     "with a notice. kvx run stops where not even the smallest blocks fit.",
     "Give the sizes of the section in the units of the coordinates. If they are right, call kvx "
     "run; where even a block is too large, divide its beams.",
     "T_beam stiffener, coordinates in mm\nHw=0.003\nTw=0.0001\nBf=0.001\nTf=0.0001",
     "T_beam stiffener, coordinates in mm\nHw=300\nTw=10\nBf=100\nTf=10"},
};

}  // namespace kvx
