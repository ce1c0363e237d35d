#include "shell/quad_plate-inl.h"

namespace korvex {

template struct QuadPlateOf<double>;
template void QuadPlateOf<double>::Stiffness<Extent::Whole>();

}  // namespace korvex
