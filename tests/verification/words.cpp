// The parts of the book that are words alone.
#include "verification/chapters.h"

namespace korvex::book {

std::string WriteIntroduction() {
  return R"(# Verification

What the program computes beside what others have published, weaknesses included. The tests write
the models of this page, run the program on them, read its result files and compare them with this
page, figure by figure. Each equivalent stress in the files is held to its six components.

- `./run-tests` computes everything but the columns marked \*, chapter by chapter (the tests
  `verification.*`). It fails where a figure changes in its last digit, and where a word differs
  from what the verification program prints.
- The fine meshes take half a minute more: `ctest --preset release -C long -L long`, after
  `./run-tests`.
- `build/release/tests/verification/korvex_verification --write` computes everything and writes
  this page. `--print CHAPTER` shows one chapter; without arguments it lists them. The text between
  the tables stands in `tests/verification/`. Numbers in it are words: where a table has changed,
  read its comment again. What it says of other drilling stiffnesses comes from a program altered
  for that purpose.

Each table gives the result on finer and finer meshes and, below it, result / reference. Rows
called published are those of another element on the same meshes. Units are consistent; where none
are named, the problem was published without.

)";
}

std::string WriteAdvice(Extent /*extent*/) {
  return R"(What the tables above say to someone who has to size a structure.

**Plates under pressure** are safe ground: eight elements to a span give the deflection to a good
percent, sixteen to a third of a percent; meshes as distorted as those above miss about three times
as much. Use quads. Stresses at a clamped edge are those of the middle of the elements
beside it: halve the mesh there, or extrapolate.

**Webs and girders of shells**, and all else that bends within its own plane, need elements that
are nearly square: four over the height miss 8 percent of the deflection, eight 2 percent. One
element over the height is worth nothing: 41 percent of the deflection with squares, 3 percent
with elements of 5 : 1. Stresses suffer alike (the flanges of the Z-section). And what is too
stiff attracts load: it relieves its neighbours on paper.

**Curved shells** need small folds between neighbouring elements. A fold of three degrees leaves 2
to 3 percent in the roof, the cylinder and the hemisphere, one of six degrees 10 to 23. Coarse
curved meshes err to the stiff side by tens of percent, without any sign in the results: halve the
mesh once, and look.

**Warped quadrilaterals** are to be avoided: they are projected flat, which strains them under a
rigid rotation and does not balance moments (15 percent in the twisted beam of 4 x 24, whose
deflection is a third of what it should be). Where four nodes do not lie in a plane, use two
triangles; on the twisted beam these reach 2 percent on 4 x 24 in plane, 14 out of plane.

**Triangles** are for transitions, corners and warped places: their membrane has one constant
strain and needs finer meshes than the quads, their plate does not shear (the hook stays at 94
percent). Cut skew cells along the shorter diagonal. Keep triangles out of regions that bend in
their own plane.

**Stiffeners as offset beams** are the better model for their effort: as stiff as a web of sixteen
quads to about one percent. Divide the span into eight elements or more: the parts of an offset
section slip between the nodes, so coarse divisions are too soft, 5 percent with four elements on
a linear moment, 1 percent with eight. One element a member is enough only for frames without
offsets between the members on the same nodes.

**Detail models** repeat the beam's own deformation, with its ends held rigid in their outline: at
the ends, and along beams that are shorter than three widths of the flange, plates in tension
carry up to a tenth too much. They do not know the loads between the ends of the beam, nor the
shear lag of the structure round it.

**Supports** are springs of 1e20, and support forces are -1e20 times the displacements of
`Node_Dis.txt` at the fixed nodes. Sum them up: where their forces do not balance the loads, a
support is missing or too soft in the model's units; where the forces do and the moments do not,
elements are warped.

)";
}

std::string WriteSources(Extent /*extent*/) {
  return R"(- Batoz, Bathe & Ho (1980): A study of three-node triangular plate bending elements. Int. J.
  Numer. Meth. Engng 15.
- Belytschko, Stolarski, Liu, Carpenter & Ong (1985): Stress projection for membrane and shear
  locking in shell finite elements. Comput. Methods Appl. Mech. Engng 51.
- Knight (1997): The Raasch challenge for shell elements. AIAA J. 35.
- Ko, Lee, Lee & Bathe (2017): Performance of the MITC3+ and MITC4+ shell elements in widely-used
  benchmark problems. Computers & Structures 193.
- MacNeal & Harder (1985): A proposed standard set of problems to test finite element accuracy.
  Finite Elem. Anal. Des. 1.
- Morley (1963): Skew Plates and Structures. Pergamon.
- NAFEMS (1990): The Standard NAFEMS Benchmarks.
- Roark & Young (1989): Formulas for Stress and Strain, 6th ed.
- Scordelis & Lo (1964): Computer analysis of cylindrical shells. ACI J. 61.
- Simo, Fox & Rifai (1989): On a stress resultant geometrically exact shell model, part II.
  Comput. Methods Appl. Mech. Engng 73.
- Taylor & Govindjee (2004): Solution of clamped rectangular plate problems. Commun. Numer. Meth.
  Engng 20.
- Timoshenko & Gere (1972): Mechanics of Materials.
- Timoshenko & Woinowsky-Krieger (1959): Theory of Plates and Shells, 2nd ed.
)";
}

}  // namespace korvex::book
