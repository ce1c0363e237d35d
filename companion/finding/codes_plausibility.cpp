// K6xx: units and plausibility.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> PlausibilityCodes{
    {"K601", Severity::Warning, "A thickness is out of line",
     "A thickness is alone in its table by a factor near 10, 25.4, 100 or 1000, as of a mistaken "
     "unit or digit; or it is more than 5 times its largest element, or below 1/20000 of its "
     "smallest.",
     "It takes the thickness as it is. Bending goes with its third power: a plate of 0.01 for 10 "
     "bends a thousand million times as much.",
     "Look at the unit and the decimal point.", "#0:\nTK=10\n#1:\nTK=12\n#2:\nTK=0.012",
     "#2:\nTK=12"},
    {"K602", Severity::Warning, "A section is out of line",
     "A size of a section is alone in its table by a factor near 10, 25.4, 100 or 1000; or a "
     "web, flange or wall is thinner than 1/1000 of its height, width or mean radius; or the "
     "height of the section, of a tube its diameter, is below 1/500 of its shortest beam; or its "
     "height or radius is more than 20 times its longest beam.",
     "It takes the section as it is. Bending goes with the third power of its height. A section "
     "that is much too small makes a very large detail model.",
     "Look at the unit and the decimal point.", "girder\nHw=100\nTw=0.008\nBf=60\nTf=10",
     "girder\nHw=100\nTw=8\nBf=60\nTf=10"},
    {"K603", Severity::Warning, "A node is far away from all others",
     "A node of shells stands off its neighbours by more than ten times their extent. Or a node "
     "of beams alone stands off all other nodes by more than twice their extent, and its beams "
     "are more than three times as long as all other elements. Where a shell is spoilt by it, "
     "this is an error.",
     "It takes the node where it is. Its elements are long and thin, or crossed.",
     "Mend the coordinate: a digit too many, a missing decimal point, or another unit?",
     "24:1000000,1000,0", "24:1000,1000,0"},
    {"K604", Severity::Warning, "Young's modulus does not fit the model",
     "E is that of a metal in a system of units with mm, but the model seems to be in m; or the "
     "other way round. Or another material, which more elements have, is a metal in another "
     "system of units. Said only where E is that of a metal in N or kN and m or mm, and plates "
     "would be 1.5 m thick, or foil of 0.1 mm; or where the density belongs to the same system "
     "as E, or both materials are the same metal. A rigid arm, a beam more than 100 times "
     "stiffer than most elements, is left out.",
     "Nothing is converted. Stresses under given forces are right, displacements are wrong by "
     "powers of 10: with E in Pa and lengths in mm a millionth. Elements of two systems share "
     "the load in the wrong proportions.",
     "Write E in the units of forces and lengths: steel has 206000 in N and mm, 2.06e11 in N and "
     "m.",
     "#0:\nE=2.06e11\n...\n#0:\nTK=10", "#0:\nE=206000\n...\n#0:\nTK=10"},
    {"K605", Severity::Warning, "A stiffness comes near that of the supports",
     "An element has stiffnesses above 1e17 at a support, or above 1e20 anywhere: then it is an "
     "error. Mostly it is a rigid arm with a very large E.",
     "A support is a 1e20 in place of the diagonal entry. Support forces, read as 1e20 times the "
     "displacement, are wrong by the element's stiffness over 1e20. Above that the matrix is no "
     "longer positive; detail models become NaN.",
     "Take a smaller E: a rigid arm needs no more than a thousand times the stiffness of what it "
     "joins.",
     "#1:\nE=1e18\nMu=0.3\nDensity=0", "#1:\nE=1e9\nMu=0.3\nDensity=0"},
    {"K606", Severity::Warning, "E and Density belong to different systems of units",
     "E is that of a metal in one system of units, the density is that of a metal in another. "
     "One of them is wrong by a power of 10; the message tells which value would fit for either. "
     "Where the density is that of a metal in no system, it is a hint. A rigid arm, a beam more "
     "than 100 times stiffer than most elements, is left out.",
     "It takes E as it is, and does not use the density. If E is wrong, all displacements are "
     "wrong by a power of 10. If the density is, the mass that this check reports is wrong, and "
     "so would be a self-weight: where kvx cases makes one, this is an error.",
     "Steel has 2.06e11 and 7850 in N and m, 2.06e8 and 7.85 in kN and m, 206000 and 7.85e-9 in "
     "N and mm, 206 and 7.85e-6 in kN and mm.",
     "#0:\nE=206\nMu=0.3\nDensity=7.85e-9", "#0:\nE=206000\nMu=0.3\nDensity=7.85e-9"},
    {"K607", Severity::Warning, "Poisson's ratio is negative",
     "Pulled, such a material grows thicker. There are a few, foams and lattices; in a model of "
     "plates it is mostly a sign too many.",
     "It takes the value as it is: with -0.3 for 0.3 a plate that was tried bends by a quarter "
     "less.",
     "Write a positive value, unless it is meant.", "#0:\nE=206000\nMu=-0.3\nDensity=7.85e-9",
     "#0:\nE=206000\nMu=0.3\nDensity=7.85e-9"},
    {"K608", Severity::Warning, "Young's modulus is out of line",
     "A material is more than a hundred million times softer than the one that most elements "
     "have. No rubber and no foam is so soft beside a metal. Rigid arms, whose E is large, are "
     "left out.",
     "It takes E as it is. The elements carry nothing: what hangs on them alone moves by powers "
     "of 10 too far, or its displacements lose all their digits.",
     "Write E in the unit of the other materials. Remove elements that shall carry nothing.",
     "#0:\nE=206000\nMu=0.3\nDensity=0\n#1:\nE=1e-6\nMu=0.3\nDensity=0",
     "#1:\nE=206000\nMu=0.3\nDensity=0"},
    {"K609", Severity::Warning, "An offset is much larger than its section",
     "BeamSecOz, up or down, is more than 10 times the height of the beam's section, of a tube "
     "its diameter: a digit too many, or another unit.",
     "It takes the offset as it is and joins the section to its nodes as by a rigid arm. A "
     "stiffener so far from its plate makes it stiffer by powers of 10; displacements and "
     "stresses are too small.",
     "Write the distance from the node to the section in the unit of the coordinates. A "
     "stiffener on a plate of thickness t has t / 2.",
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=7000,BeamSecMirrored=0]",
     "0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=7,BeamSecMirrored=0]"},
};

}  // namespace kvx
