// K2xx: the mesh.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> MeshCodes{
    {"K201", Severity::Warning, "A seam of nodes that are not merged",
     "Along a line two rows of nodes lie at the same places. The elements on one side of the "
     "line use the one row, those on the other side the other. Nothing connects the two sides: "
     "the structure has a slit there. Usually a pre-processor has joined two meshes and did not "
     "merge their nodes. Where whole shells stand at the same place, a patch stands twice. Nodes "
     "count as being at the same place if they are closer than the tolerance (--tolerance; "
     "without it 1e-6 of the model's extent).",
     "The results look plausible and are wrong. A clamped plate under pressure, slit along its "
     "middle, bends by 1.04 mm in place of 0.66 mm. The stresses at the slit are those of a free "
     "edge. If the slit cuts a part off from all supports, the displacements become huge or NaN.",
     "Merge each pair into one node: let the elements of both sides use the same number, and "
     "remove the other node. Pre-processors have a command for it, such as \"merge nodes\" or "
     "\"equivalence\". If the slit is meant, such as an expansion joint, nothing is to be done.",
     "Number of nodal points:NPOIN=8\n"
     "0:0,0,0\n"
     "1:100,0,0\n"
     "2:100,100,0\n"
     "3:0,100,0\n"
     "4:0,100,0\n"
     "5:100,100,0\n"
     "6:100,200,0\n"
     "7:0,200,0\n"
     "Number of four-nodes shell elements:NELEM_S_4ND=2\n"
     "0:0,1,2,3[0,0]\n"
     "1:4,5,6,7[0,0]",
     "Number of nodal points:NPOIN=6\n"
     "0:0,0,0\n"
     "1:100,0,0\n"
     "2:100,100,0\n"
     "3:0,100,0\n"
     "4:100,200,0\n"
     "5:0,200,0\n"
     "Number of four-nodes shell elements:NELEM_S_4ND=2\n"
     "0:0,1,2,3[0,0]\n"
     "1:3,2,4,5[0,0]"},
    {"K202", Severity::Warning, "Nodes at the same place",
     "Two or more nodes lie at the same place, and no element joins them. The elements of one "
     "node are not connected with those of the other.",
     "The results look plausible and are wrong: forces do not pass from the elements of one node "
     "to those of the other, and the two nodes move apart. A clamped plate under pressure with "
     "one such pair in its middle bends by 0.71 mm in place of 0.66 mm. A column whose head is "
     "not the plate's node does not carry the plate at all.",
     "Merge the nodes: write the number of the one in place of the other in all rows. The model "
     "file knows no hinges and no couplings; two nodes at one place are never connected.",
     "1:100,0,0\n"
     "2:100,0,0\n"
     "3:200,0,0\n"
     "Number of beam elements:NELEM_B=2\n"
     "0:0,1<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n"
     "1:2,3<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "1:100,0,0\n"
     "2:200,0,0\n"
     "Number of beam elements:NELEM_B=2\n"
     "0:0,1<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n"
     "1:1,2<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K203", Severity::Error, "A node belongs to no element",
     "No element uses the node, so nothing gives it a stiffness. Such nodes are often left over "
     "from the geometry, such as the middle of a circle, or from elements that were removed.",
     "Its six equations are 0 = 0, and its displacements are NaN. If its number lies between "
     "those of an element, which is usual, the NaN spreads: all displacements and all stresses "
     "are NaN. The run ends with \"Post-processing completed.\" and the exit status 0. Only a "
     "node at the very beginning or end of the table leaves the others alone.",
     "Remove the node, and lower all numbers behind it by one. Or fix all its six degrees of "
     "freedom: then it stays where it is and disturbs nothing.",
     "Number of restricted nodal points:NRN=1\n"
     "0: 1 1 1 1 1 1",
     "Number of restricted nodal points:NRN=2\n"
     "0: 1 1 1 1 1 1\n"
     "7: 1 1 1 1 1 1"},
    {"K204", Severity::Warning, "A free edge lies on another shell",
     "Edges of shells lie on the edges or on the surface of other shells, but the two have no "
     "common nodes there. So they touch and are not connected: the two sides of a seam are "
     "divided differently, or a web stands on a deck between the deck's nodes.",
     "The results look plausible and are wrong: the shells do not carry each other. A web below "
     "a clamped plate, half a cell beside its line of nodes, leaves the plate's deflection at "
     "0.664 mm, as without a web. On the line of nodes it is 0.079 mm.",
     "Divide both sides alike along the line and let them use the same nodes. A transition from "
     "a fine to a coarse mesh takes triangles.",
     "0:0,1,2,3[0,0]\n"
     "1:4,5,6,7[0,0]",
     "0:0,1,2,3[0,0]\n"
     "1:3,2,6,7[0,0]"},
    {"K205", Severity::Warning, "A node lies on an element that it does not belong to",
     "A node of one element lies on the edge of a shell, inside a shell, or on the axis of a "
     "beam between its ends, and is not one of its nodes. They touch and are not connected: a "
     "column stands on a plate between its nodes, an edge is divided on one side only, a "
     "stiffener is one long beam over a plate of many cells. Beams that cross without a node at "
     "the crossing are not named, and no arms of stiff beams that start from one node.",
     "The results look plausible and are wrong: no force passes at the node. A column below a "
     "plate between its nodes carries nothing. A stiffener that is one beam from edge to edge of "
     "a clamped plate leaves its deflection at 0.664 mm, as without a stiffener; divided at each "
     "node of the plate it gives 0.083 mm.",
     "Divide the shell or the beam so that the node is one of its nodes. If the two shall not "
     "meet, such as beams that pass each other, move one of them away by its real distance.",
     "0:0,8<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]",
     "0:0,4<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]\n"
     "1:4,8<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=5,BeamSecMirrored=0]"},
    {"K206", Severity::Warning, "Neighbouring shells have opposite normals",
     "The nodes of a shell go round it in one of two directions, and its normal follows from it. "
     "Two neighbours have their normals on the same side if they run through their common edge "
     "in opposite directions. In the patch that is named some shells have it otherwise; the "
     "smaller number is listed. Where three or more shells meet, such as a plate and a girder, a "
     "shell is compared with the one that runs on in its plane. Where the two sides meet at such "
     "edges alone and carry no pressure, it is a hint only. Plates that meet at a sharp fold, of "
     "more than 60 degrees, are not compared: there any normals may be meant. One hint says "
     "where pressure acts on one of two such plates from inside the corner and on the other one "
     "from outside.",
     "Pressure acts along the normal, so on the reversed shells it acts the other way, silently. "
     "A clamped plate under pressure with every third shell reversed bends by 0.22 mm in place "
     "of 0.66 mm. The upper and the lower face are swapped, too, against those of the neighbours.",
     "Write the nodes of the listed shells in the opposite order, such as 3,2,1,0 for 0,1,2,3. "
     "The pressure at nodes 1, 2 and 3 then belongs to other corners, and acts the other way. So "
     "where only the listed shells carry pressure, and it acts as meant, reverse the others. At "
     "a sharp fold only look whether the pressures act as meant.",
     "0:0,1,4,3[0,0]\n"
     "1:1,4,5,2[0,0]",
     "0:0,1,4,3[0,0]\n"
     "1:1,2,5,4[0,0]"},
    {"K207", Severity::Hint, "The model has separate parts",
     "The model consists of several parts that no element connects. That may be meant. If not, "
     "an element or a common node is missing between them.",
     "Each part is solved for itself. A part without enough supports gives NaN or huge numbers; "
     "the others are not touched.",
     "Connect the parts that belong together. Give each of the others its own supports.",
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n"
     "1:2,3<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n"
     "1:1,2<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
};

}  // namespace kvx
