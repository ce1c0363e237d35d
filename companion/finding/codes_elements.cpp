// K1xx: elements and the tables that they refer to.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> ElementCodes{
    {"K101", Severity::Error, "A reference leads outside its table",
     "An element names a node, material, thickness or section that does not exist. All tables "
     "are counted from 0: the last of 800 nodes is 799.",
     "The run stops with a notice at the first such element. Nothing is solved.",
     "Mend the number, or add the missing row. Where all numbers are one too large, the file was "
     "written by a program that counts from 1.",
     "Number of shell thicknesses:NTK=1\n#0:\nTK=10\n...\n5:6,7,12,11[0,1]", "5:6,7,12,11[0,0]"},
    {"K102", Severity::Error, "A beam has no length",
     "The two nodes of a beam are at the same place, or so near that rounding leaves nothing of "
     "the distance.",
     "It divides by the length. All displacements of everything that is connected with the beam "
     "are NaN. The run ends as usual, with the exit status 0.",
     "Merge the two nodes and remove the beam, or mend the coordinate of one of them.",
     "12:500,500,0\n13:500,500,0\n...\n4:12,13<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,"
     "BeamSecMirrored=0]",
     "12:500,500,0\n13:750,500,0"},
    {"K103", Severity::Error, "An orientation vector is zero",
     "The orientation vector gives the direction of a beam's web. A zero vector gives none; nor "
     "does one that is so short that its digits are lost beside the coordinates.",
     "It divides by the vector's length. All displacements of everything that is connected with "
     "the beam are NaN, with the exit status 0. Of a vector that has lost some of its digits it "
     "takes what is left, and the web stands in another direction. Also a tube needs a vector.",
     "Write the direction of the web, from its free edge to the flange. Its length does not "
     "matter.",
     "4:12,13<0,0,0>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "4:12,13<0,0,1>[0,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K104", Severity::Error, "An orientation vector is parallel to its beam",
     "The part of the orientation vector across the beam's axis is the direction of the web. A "
     "vector along the axis has no such part.",
     "All displacements of everything that is connected with the beam are NaN, with the exit "
     "status 0.",
     "Write a vector across the axis: the finding proposes a global one.",
     "7:1500,600,0\n12:1500,1200,0\n...\n10:7,12<0,1,0>[0,BeamSecType=0,"
     "BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "10:7,12<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K105", Severity::Warning, "An orientation vector is nearly parallel to its beam",
     "The angle between the orientation vector and the beam's axis is below 0.06 degrees. The "
     "direction of the web hangs on the last digits of the coordinates.",
     "It takes the small part across the axis. The web may stand in any direction.",
     "Write a vector across the axis.",
     "10:7,12<0,1,0.00001>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "10:7,12<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K106", Severity::Error, "Young's modulus is not positive",
     "A material that elements use has E = 0 or a negative one. If no element uses it, this is a "
     "hint.",
     "With E = 0 its elements have no stiffness: a few of them within others leave a hole, all "
     "of them, or a beam at the edge, give NaN. With a negative E elements push where they "
     "should hold: displacements have the wrong sign or size.",
     "Write Young's modulus in the units of the model: steel has 206000 in N and mm, 2.06e11 in "
     "N and m, 2.06e8 in kN and m.",
     "#0:\nE=0\nMu=0.3\nDensity=7.85e-9", "#0:\nE=206000\nMu=0.3\nDensity=7.85e-9"},
    {"K107", Severity::Error, "Poisson's ratio is impossible",
     "A stable material has a ratio between -1 and 0.5. At 0.5 itself its volume cannot change, "
     "as with rubber: that is a hint, because shells and beams can be solved with it.",
     "With -1 and 1 all displacements are NaN. With other values it calculates: at 0.6 a plate "
     "is 3 % stiffer than with 0.3, at 1.5 a quarter, and stresses are wrong.",
     "Write Poisson's ratio: 0.3 for steel, 0.33 for aluminium.",
     "#0:\nE=206000\nMu=3\nDensity=7.85e-9", "#0:\nE=206000\nMu=0.3\nDensity=7.85e-9"},
    {"K108", Severity::Error, "A thickness is not positive",
     "A thickness that shells use is 0 or negative. If no shell uses it, this is a hint.",
     "A shell with the thickness 0 leaves a hole and has NaN for stresses; where it alone holds "
     "a node, all displacements are NaN. A negative thickness gives numbers that are wrong: "
     "shells push where they should hold.",
     "Write the thickness of the plate.", "#0:\nTK=0", "#0:\nTK=10"},
    {"K109", Severity::Error, "A size of a section is not positive",
     "Hw and Tw of a T or L section, R and T of a tube must be above 0; Bf and Tf too, or both 0 "
     "for a flat bar. If no beam uses the section, this is a hint.",
     "With a web or tube of 0 all displacements are NaN. With negative sizes areas and "
     "stiffnesses are negative, and displacements are wrong without a sign of it.",
     "Write the sizes of the section.", "girder\nHw=0\nTw=8\nBf=60\nTf=10",
     "girder\nHw=100\nTw=8\nBf=60\nTf=10"},
    {"K110", Severity::Error, "A section cannot be built",
     "The wall of a tube is thicker than its diameter, so that the inner radius R - T/2 is "
     "negative; or the sizes of a section differ by a factor of a million or more, among each "
     "other or from the coordinates.",
     "It takes off a hole that cannot be there: the tube is too soft, and its detail model is "
     "meaningless. Of sizes too different nothing is left by rounding; results may be NaN.",
     "R is the mean radius of the wall, T its thickness. Look whether they are exchanged, and "
     "write all sizes in one unit.",
     "leg\nR=5\nT=50", "leg\nR=50\nT=5"},
    {"K111", Severity::Warning, "A section has unusual proportions",
     "The flange of a T or L section is narrower than its web is thick, or the wall of a tube is "
     "thicker than its mean radius.",
     "It takes the section as it is. The detail model is made of thin plates and says little "
     "about such a section.",
     "Look whether the sizes stand in their order, Hw, Tw, Bf, Tf, and have one unit. R of a "
     "tube is its mean radius.",
     "girder\nHw=100\nTw=60\nBf=8\nTf=10", "girder\nHw=100\nTw=8\nBf=60\nTf=10"},
    {"K112", Severity::Warning, "A flange has only one of its sizes",
     "One of Bf and Tf is 0, the other is not. For a flat bar both are 0.",
     "It leaves the flange out and takes a flat bar Hw x Tw.",
     "Write both sizes of the flange, or 0 for both.", "girder\nHw=100\nTw=8\nBf=60\nTf=0",
     "girder\nHw=100\nTw=8\nBf=60\nTf=10"},
    {"K113", Severity::Error, "A beam has a section type that does not exist",
     "BeamSecType is 0 for T sections, 1 for L sections, 2 for tubes. There are no others.",
     "The beam's stiffness is meaningless, all displacements are NaN. The files of displacements "
     "and stresses are written, then the run stops with a notice and the exit status 1.",
     "Write 0, 1 or 2. A flat bar is a T section with Bf=0 and Tf=0.",
     "4:12,13<0,0,1>[0,BeamSecType=3,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "4:12,13<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K114", Severity::Error, "An element has the same node twice",
     "A node number stands twice in the row of an element.",
     "A beam, a triangle, or a quadrilateral with one node at opposite corners makes all "
     "displacements NaN. A quadrilateral with one node at neighbouring corners is stiffened "
     "wrongly, and its stresses at that corner are NaN.",
     "Write the missing node. A triangle belongs into the table of three-node shells.",
     "5:6,7,12,12[0,0]", "5:6,7,12,11[0,0]"},
    {"K115", Severity::Error, "The edges of a quadrilateral cross",
     "The nodes do not go round the element: two of them are exchanged, and it looks like a bow "
     "tie.",
     "Half of the area counts against the other half. One such element is enough for NaN in all "
     "displacements, with the exit status 0.",
     "Write the nodes in order round the element.", "5:6,12,7,11[0,0]", "5:6,7,12,11[0,0]"},
    {"K116", Severity::Error, "A quadrilateral is concave",
     "A corner is re-entrant, or its two edges lie on one line (180 degrees).",
     "It takes the absolute value of the area at each point, so stiffness and stresses are wrong "
     "without a sign of it. With a corner of 180 degrees its stresses there are NaN; if that is "
     "node 1, all displacements are.",
     "Move a node, or divide the element into triangles. Where three nodes lie on a line, write "
     "a triangle of the other three corners and divide its neighbour.",
     "6:750,0,0\n7:1000,0,0\n12:825,175,0\n11:750,250,0\n...\n5:6,7,12,11[0,0]", "12:1000,250,0"},
    {"K117", Severity::Error, "A shell has no area",
     "The nodes of a shell lie on one line, or nearly, or two neighbouring ones are at the same "
     "place.",
     "It divides by the area. All displacements of everything that is connected with the shell "
     "are NaN, or have no correct digits.",
     "Mend a coordinate. Or remove the element and merge its nodes.",
     "0:0,0,0\n1:250,0,0\n2:500,0,0\n...\n0:0,1,2[0,0]", "2:250,250,0"},
    {"K118", Severity::Warning, "A shell is strongly skewed",
     "An angle of a quadrilateral is below 10 or above 170 degrees, or one of a triangle above "
     "170.",
     "It calculates. The element is much too stiff, and its stresses are poor.",
     "Move a node, or divide the mesh differently here.",
     "7:1000,0,0\n12:878,128,0\n11:750,250,0\n...\n5:6,7,12,11[0,0]", "12:1000,250,0"},
    {"K119", Severity::Warning, "A shell is strongly elongated",
     "A shell is more than 100 times as long as it is wide. Meshes are usually held below 10.",
     "It calculates. Stresses that change along the element are poor, and digits are lost.",
     "Divide it along its length, or mend a coordinate.",
     "0:0,0,0\n1:5000,0,0\n2:5000,20,0\n3:0,20,0\n...\n0:0,1,2,3[0,0]",
     "0:0,0,0\n1:100,0,0\n2:100,20,0\n3:0,20,0\n...\n0:0,1,2,3[0,0]"},
    {"K120", Severity::Warning, "A quadrilateral is warped",
     "Node 3 stands off the plane of nodes 1, 2 and 4 by more than 15 % of the element's size, "
     "and by more than its thickness.",
     "It lays the element flat on that plane. Its edges no longer meet those of its neighbours, "
     "and forces in the plane are not in balance there.",
     "Mend a coordinate, divide the element into two triangles, or refine the mesh.",
     "6:750,0,0\n7:1000,0,0\n12:1000,250,60\n11:750,250,0\n...\n5:6,7,12,11[0,0]", "12:1000,250,0"},
    {"K121", Severity::Warning, "An element stands twice",
     "Two shells have the same nodes, in any order; or two beams have the same nodes, section, "
     "offset, material and orientation. Different beams on the same nodes are not named.",
     "Both count: stiffness is twice as high there, a whole plate that stands twice bends half "
     "as much, and its stresses are half.",
     "Remove one of them. Its loads, too: elements behind it move up by one number.",
     "5:6,7,12,11[0,0]\n6:6,7,12,11[0,0]", "5:6,7,12,11[0,0]"},
    {"K122", Severity::Error, "A value is not a number, or out of range",
     "A coordinate, size, modulus, vector, offset or load is NaN or infinite, or so large or "
     "small that products of it leave the range of numbers. Lengths may have 1e-12 to 1e12, "
     "moduli 1e-12 to 1e25, loads 1e40 at most.",
     "NaN spreads: mostly all displacements are NaN, with the exit status 0. A density is not "
     "used: there it is a warning.",
     "Write a number, in the units of the model.", "24:1000,1000,nan", "24:1000,1000,0"},
    {"K123", Severity::Error, "The model has no nodes or no elements",
     "A table that every model needs is empty.",
     "Without nodes it writes empty files. Without elements the displacements are NaN. The exit "
     "status is 0 in both cases.",
     "Write the rows and their count, or look whether this is the right file.",
     "Number of nodal points:NPOIN=0", "Number of nodal points:NPOIN=4\n0:0,0,0\n..."},
    {"K124", Severity::Error, "The file counts nodes from 1",
     "No row of the file refers to node 0, and the largest reference is one beyond the last "
     "node. The program that wrote the file counts from 1. All references are one too large.",
     "It takes the numbers as rows counted from 0. Every element gets the nodes behind those "
     "that were meant; at the last one the run stops with a notice.",
     "Subtract 1 from all node numbers of elements, restraints and forces. Look whether "
     "materials, thicknesses, sections and the elements of loads are counted from 1, too.",
     "Number of nodal points:NPOIN=2\n1:0,0,0\n2:2,0,0\n...\n"
     "1:1,2<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "Number of nodal points:NPOIN=2\n0:0,0,0\n1:2,0,0\n...\n"
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
};

}  // namespace kvx
