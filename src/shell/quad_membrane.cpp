#include "shell/quad_membrane-inl.h"

namespace korvex {

template struct QuadMembraneOf<double>;
template void QuadMembraneOf<double>::MembraneStiffness<Extent::Whole>(double*);
template void QuadMembraneOf<double>::DrillingStiffness<Extent::Whole>(double*);
template void QuadMembraneOf<double>::Stiffness<Extent::Whole>();

}  // namespace korvex
