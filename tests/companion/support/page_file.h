// A page as a browser reads it: its title, its JSON and its blocks.
#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "view/page_block.h"

namespace kvx::test {

struct PageFile {
  std::string html;   // the whole file
  std::string title;  // of the window, its escapes resolved
  nlohmann::json model;
  std::map<std::string, PageBlock> blocks;  // by id, with their columns and bytes
};

// The test fails where the file is no page.
PageFile ReadPage(const std::filesystem::path& file);

// RFC 4648 and RFC 1952. The test fails where the text is not whole.
std::string DecodeBase64(const std::string& text);
std::string Gunzip(const std::string& bytes);

}  // namespace kvx::test
