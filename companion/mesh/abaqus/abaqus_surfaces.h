// *SURFACE: what loads on surfaces act on.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// *SURFACE: what each of its lines names.
struct AbaqusSurfaceLine {
  std::string_view target;  // element set or element
  std::string_view face;    // "SPOS"
  SourcePlace place;
  const AbaqusKeyword* keyword = nullptr;
};
struct AbaqusSurface {
  std::vector<AbaqusSurfaceLine> lines;
  bool isUsed = false;
  const AbaqusKeyword* keyword = nullptr;
};
using AbaqusSurfaces = std::map<std::string, AbaqusSurface>;  // by NameKey

void TakeAbaqusSurfaces(AbaqusImport& import, AbaqusSurfaces& surfaces);

// Reports the surfaces that no load uses.
void ReportUnusedSurfaces(AbaqusImport& import, const AbaqusSurfaces& surfaces);

}  // namespace kvx
