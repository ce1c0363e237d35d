// What a page says of its model besides the arrays of numbers: the JSON of the page, as
// view/page/src/data/load_model.ts reads it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "deck/model_tables.h"
#include "finding/finding.h"
#include "tables/model_origin.h"
#include "view/page_block.h"
#include "view/section_profile.h"
#include "view/structure_block.h"

namespace kvx {

struct PageCase {
  std::string name;  // empty: the only one
  bool isSolved = false;
  std::string note;  // why there are no results, or that they are to be read with care
  std::string loads, results, corners, details;  // ids of blocks; empty: none
};

struct PageHeader {
  std::string title;                 // of the model's folder
  std::string file;                  // name of the model file
  std::vector<std::string> notices;  // what a reader has to know first
  std::size_t parts = 0;
  std::vector<SectionProfile> sections;
  std::vector<Finding> findings;  // in the order in which they are listed
  std::vector<PageCase> cases;
  std::array<std::uint32_t, PageKinds> firstLines{};
  std::vector<PageBlock> blocks;  // their bytes are not used
  ModelOrigin origin;             // of the model, where it was imported
};

// One JSON object, UTF-8. Numbers that are not finite are null; bytes that are no UTF-8 become
// U+FFFD. tables: the structure; its loads are those to which findings about loads belong.
std::string PageHeaderJson(const PageHeader& header, const korvex::ModelTables& tables);

}  // namespace kvx
