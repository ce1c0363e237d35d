// K7xx: results.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> ResultCodes{
    {"K701", Severity::Error, "The model has errors",
     "kvx check finds errors in the model file. The finding tells the first of them. What the "
     "audit says holds for the model as the solver reads it, which is not the model that was "
     "meant.",
     "It solves such a model without a word, unless it stops.",
     "Call kvx check, mend the model, and solve it anew.",
     "0:0,0,0\n1:500,0,0\n...\n"
     "0:0,1<1,0,0>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]",
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]"},
    {"K702", Severity::Error, "Displacements are not numbers",
     "Displacements are NaN or infinite. The finding names the cause, if it is a single one: the "
     "first element whose stiffness is not a number, the first load that is none, or a node that "
     "no element holds. Otherwise the structure can move, or numbers are out of range.",
     "Writes nan or inf into the result files, exit status 0. Parts of the structure that are not "
     "connected with the cause may look right.",
     "Mend what the finding names. What can move is named by kvx check --deep.", "24:1000,1000,nan",
     "24:1000,1000,0"},
    {"K703", Severity::Error, "Loads and reactions do not balance",
     "The support forces and the loads must add up to zero, in every direction and about every "
     "point. Here more than a millionth of the loads is left over, and more than rounding can "
     "explain. The couples of elements that are not in equilibrium by themselves (K707) have been "
     "taken off before. The finding also names the node that is least in equilibrium.",
     "Does not look at the balance. It writes the results, exit status 0.",
     "Look for a structure that can move (kvx check --deep), and for neighbours of very different "
     "stiffness. If the displacements are those of displacements.bin, remove this file and try "
     "again.",
     "Number of restricted nodal points:NRN=0",
     "Number of restricted nodal points:NRN=1\n"
     "0: 1 1 1 1 1 1"},
    {"K704", Severity::Error, "A node is not in equilibrium",
     "At a node that is free to move, the forces of its elements and its loads must add up to "
     "zero. Here more than a millionth of the largest force of any element is left over: the "
     "displacements there have few correct digits, or none.",
     "Does not look at the balance. It writes the results, exit status 0.",
     "Look for neighbours of very different stiffness at this node, such as a short beam of a "
     "thick section at a thin plate. If the displacements are those of displacements.bin, remove "
     "this file and try again.",
     "0:1e19,0.3,0", "0:206000,0.3,0"},
    {"K705", Severity::Warning, "Displacements are large beside the structure",
     "Linear statics writes equilibrium for the structure as it was before the loads. That holds "
     "for small displacements. Here the largest is more than a tenth of the model's extent, the "
     "diagonal of the box around its nodes. From a fiftieth on it is a hint: rules for structures "
     "allow a hundred and fiftieth of a span or less.",
     "Solves the linear equations, whatever comes out. Twice the load gives twice the "
     "displacement, also where the structure would have broken long before.",
     "Look at the units of loads, Young's moduli, thicknesses and sections. If the loads are unit "
     "loads, only ratios of results mean anything.",
     "1<0,0,-1000000,0,0,0>", "1<0,0,-1000,0,0,0>"},
    {"K706", Severity::Warning, "Rotations are large",
     "The solver takes a rotation for its sine. Above 0.5 that is wrong by 4 % and more. From 0.1 "
     "on it is a hint: there the difference is 0.2 %, and the part of a length that turns away is "
     "0.5 %.",
     "Solves the linear equations, whatever comes out.",
     "Look at the units of loads and sections, and at parts that can turn. If the loads are unit "
     "loads, only ratios of results mean anything.",
     "1<0,0,0,1000000,0,0>", "1<0,0,0,1000,0,0>"},
    {"K707", Severity::Warning, "Elements are not in equilibrium by themselves",
     "Node 3 of a warped quadrilateral stands off the plane of its other nodes. The solver lays "
     "the element flat, and its forces then act at nodes that are somewhere else: a couple is "
     "left over. An element with the same node twice leaves a force over, too. The supports do "
     "not get it. The finding tells how much it is: a hint up to a hundredth of the moments of "
     "the loads.",
     "Projects node 3 onto the plane of nodes 1, 2 and 4.",
     "Refine the mesh: with half the element size the couple is about a third. Or divide the "
     "quadrilaterals into triangles.",
     "6:750,0,0\n7:1000,0,0\n12:1000,250,60\n11:750,250,0\n...\n5:6,7,12,11[0,0]", "12:1000,250,0"},
    {"K708", Severity::Warning, "A prescribed displacement is not reached",
     "A support should move by the prescribed value, and moves by another one: more than a "
     "thousandth is missing. The structure is nearly as stiff as the supports, whose stiffness is "
     "1e20.",
     "Sets the force over 1e20 as the displacement. The structure's own stiffness is not "
     "considered in it, and the forces of the structure change it.",
     "Look at the unit of Young's modulus and of lengths. N and mm, or N and m, stay far below.",
     "0:2.06e19,0.3,0", "0:206000,0.3,0"},
    {"K709", Severity::Warning, "Few digits of the displacements are right",
     "Numbers have about 16 digits. A solution loses some of them, more where the stiffness of "
     "neighbours is very different and where something is hardly held. kvx run estimates how many, "
     "with the backward error and the condition of the equations (docs/large-models.md). Here "
     "fewer "
     "than 6 are left of the largest displacements: stresses, support forces and section forces, "
     "which are made of differences, have fewer still. With fewer than 3 it is an error. The bound "
     "is on the safe side: often a digit or two more are right.",
     "Solves the equations, whatever comes out, and does not estimate what it loses.",
     "Look for neighbours of very different stiffness (a thickness or a section in a wrong unit, "
     "very short beams), and for parts that are hardly held: kvx check --deep names what can move. "
     "Fine meshes lose digits, too: twice as many elements along a span, about one digit more. "
     "If the model is meant so, solve it with the nodes in another order, too (kvx renumber): the "
     "digits that stay are those to trust.",
     "#0:\nTK=0.001", "#0:\nTK=10"},
    {"K711", Severity::Error, "Result files are not those of this model",
     "Files of results are in the folder which differ from what this model gives. They are of an "
     "earlier state of the model, or of another one. The finding tells for each file the first "
     "line that differs. All result files are compared byte for byte; the log is not looked at.",
     "Overwrites the files with the next run. A run that stops early leaves old files where they "
     "are.",
     "Solve the model anew with kvx run.", "", ""},
    {"K712", Severity::Error, "Result files are not whole",
     "Files of results end before their last line; what they hold is right. A run has been broken "
     "off, a disk was full, or a copy was not complete.",
     "Writes its files from the beginning to the end; it does not look at what is there.",
     "Solve the model anew with kvx run.", "", ""},
    {"K713", Severity::Warning, "Result files are missing",
     "Some files of results are in the folder and others are not. They have been deleted, or the "
     "run has stopped before it wrote them.",
     "Writes six files, in this order: structure.dxf, Node_Dis.txt, deformation.dxf and three with "
     "stresses. Where it stops, those behind are missing, or those of an earlier run are left.",
     "Solve the model anew with kvx run, and read what it says.", "", ""},
    {"K714", Severity::Warning, "A result file could not be compared",
     "A file of results cannot be read, or the model cannot give such a file; or the sparse engine "
     "has written it, and displacements.bin is missing: what the skyline gives instead may differ "
     "in last digits, so that nothing is known of the file. The finding tells why.",
     "Stops where a file cannot be made.",
     "Mend what the finding names, and try again. Where displacements.bin is missing, call kvx run "
     "again: it leaves it.",
     "", ""},
    {"K715", Severity::Warning, "displacements.bin cannot be used",
     "The file displacements.bin belongs to another state of the model, or is damaged. It holds "
     "the displacements at full precision and is left by kvx run.",
     "Neither reads nor writes this file.",
     "Solve the model anew with kvx run, or remove the file. The audit has solved the model in "
     "memory and does not need it.",
     "", ""},
    {"K716", Severity::Warning, "The model was made from files that have changed",
     "kvx cases has written the model of a load case, and case.json beside it, which tells what it "
     "was made from: the structure, the case file, files of loads. One of these is another one "
     "since, or is no longer there. The results are right for the model in the folder, but this "
     "is the structure or the load of before.",
     "Does not know where a model comes from: it solves the one in the folder.",
     "Run kvx cases again. If the folder shall stay as it is, remove case.json.", "", ""},
    {"K717", Severity::Warning, "solution.json cannot be used",
     "The file solution.json is damaged, or belongs to another state of the model. kvx run leaves "
     "it: it tells which engine has found the displacements, and how many of their digits are "
     "right. The audit does without it, and cannot say either.",
     "Neither reads nor writes this file.",
     "Solve the model anew with kvx run, or remove the file.", "", ""},
    {"K721", Severity::Hint, "A beam under line load should be divided",
     "The detail model of a beam is driven by the ends of the beam and does not see the line load "
     "between them. At mid-length it lacks the bending moment of a clamped beam, (q1 + q2) L^2 / "
     "48, here more than 5 % of the largest moment of its girder. Displacements, reactions and "
     "section forces do have the line load.",
     "Writes the stresses of the detail model without this part into Korvex_AverageStrs.txt.",
     "Divide the beam into as many pieces as the finding says. Or take the stress from the section "
     "forces: kvx forces.",

     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n...\n0:-5,-5",
     "0:0,2<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n"
     "1:2,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]\n...\n"
     "0:-5,-5\n1:-5,-5"},
    {"K722", Severity::Hint, "The detail model of a beam is short",
     "The beam is shorter than three times the widest strip of its section: the web has three "
     "strips, a T flange two. Its detail model then has one or two rows of shells along it. Both "
     "ends are held rigid, and this reaches the middle: there is no place where its stresses are "
     "those of a beam.",
     "Makes a detail model of one or two rows of shells, and writes its stresses.",
     "Take the stress from the section forces: kvx forces. Or use longer beams.",
     "0:0,0,0\n1:100,0,0\n...\nHw=300", "0:0,0,0\n1:1000,0,0\n...\nHw=300"},
    {"K723", Severity::Warning, "Stresses are above the yield stress",
     "The von Mises stress is larger than the yield stress given with --yield: of shells on the "
     "upper or lower face, averaged at the nodes; of beams by their detail models at mid-length, "
     "or from their section forces anywhere. Above yield the material does not follow the linear "
     "law, and stresses, displacements and the distribution of forces are others.",
     "Knows no yield stress.",
     "Strengthen the structure there. Where a force acts at one point, or a corner is sharp, a "
     "finer mesh gives ever higher stresses: there the number says little.",
     "0:5", "0:8"},
};

}  // namespace kvx
