// A file of VTK's XML format for unstructured grids (.vtu): points, cells between them, and arrays
// of numbers at both. ParaView opens it.
//
// The head is XML. The numbers stand behind it as appended raw data, little-endian, array by array,
// in blocks of 32 KiB that zlib compresses one by one. Before the blocks of an array stand 64-bit
// integers: how many blocks, the bytes of a block, the bytes of the last one (0 where that is full,
// or where there is none), and of each block its bytes when compressed. Source: Kitware, VTK XML
// Formats; vtkXMLDataParser of VTK 9 reads it so. Doubles keep their bits, those of NaN included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "skyline/work_share.h"

namespace kvx {

// Writes the numbers of one tuple: those of a point or a cell. They are asked for one tuple after
// the other, ascending, each once.
using FillDoubles = std::function<void(std::size_t tuple, double* values)>;
using FillIntegers = std::function<void(std::size_t tuple, std::int64_t* values)>;
using FillBytes = std::function<void(std::size_t tuple, std::uint8_t* values)>;

// An array that is made while it is written: it never stands in memory as a whole.
struct VtuArray {
  std::string name;                     // ASCII, without characters that XML reserves; "": none
  std::vector<std::string> components;  // their names, likewise; empty: they have none
  std::size_t width = 1;                // numbers in a tuple; at most MostWidth
  std::size_t tuples = 0;
  std::variant<FillDoubles, FillIntegers, FillBytes> fill;  // Float64, Int64 or UInt8
};

inline constexpr std::size_t MostWidth = 16;

// The types of cells that are used here (vtkCellType.h).
inline constexpr std::uint8_t VtkLine = 3, VtkTriangle = 5, VtkQuad = 9;

struct VtuGrid {
  VtuArray points;        // width 3: coordinates
  VtuArray connectivity;  // integers: the points of all cells, one cell after the other
  VtuArray offsets;       // integers, by cell: where its points end in `connectivity`
  VtuArray types;         // bytes, by cell: VtkLine ...
  std::vector<VtuArray> pointData, cellData;
};

// Writes the file. stream: binary, and one in which positions can be sought: sizes that are known
// only behind an array are put in at the end. share: may be empty. Stops without a word where the
// stream fails. Throws std::bad_alloc, and what `share` and the arrays throw.
void WriteVtu(const VtuGrid& grid, const korvex::ShareCallback& share, std::ostream& stream);

// The bytes of one array alone, its integers and its blocks. before: called before each block; may
// be empty, may throw.
void WriteVtuArray(const VtuArray& array, const std::function<void()>& before,
                   std::ostream& stream);

}  // namespace kvx
