#include "support/page_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <array>
#include <utility>

#include "support/read_bytes.h"

namespace kvx::test {

namespace {

// The text between two others from `at` on; moves `at` behind it. Empty where they are not there.
std::string TakeBetween(const std::string& text, const std::string& begin, const std::string& end,
                        std::size_t& at) {
  const std::size_t first = text.find(begin, at);
  if (first == std::string::npos) return "";
  const std::size_t last = text.find(end, first + begin.size());
  EXPECT_NE(last, std::string::npos) << begin;
  at = last + end.size();
  return text.substr(first + begin.size(), last - first - begin.size());
}

std::string ResolveEscapes(std::string text) {
  const std::array<std::pair<const char*, const char*>, 4> escapes{
      {{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}};
  for (const auto& [escape, sign] : escapes) {
    const std::string from = escape;
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; ++at) {
      text.replace(at, from.size(), sign);
    }
  }
  return text;
}

// One of the four names, as PageColumn has them.
const char* EncodingOf(const std::string& name) {
  for (const char* encoding : {"integers", "decimals", "doubles", "fixed"}) {
    if (name == encoding) return encoding;
  }
  ADD_FAILURE() << name;
  return "";
}

}  // namespace

std::string DecodeBase64(const std::string& text) {
  const std::string signs = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  EXPECT_EQ(text.size() % 4, 0U);
  std::string bytes;
  unsigned bits = 0, count = 0;
  for (const char sign : text.substr(0, text.find('='))) {
    const std::size_t value = signs.find(sign);
    EXPECT_NE(value, std::string::npos) << sign;
    bits = (bits << 6U | static_cast<unsigned>(value)) & 0xFFFFFFU;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFFU);
  }
  return bytes;
}

std::string Gunzip(const std::string& bytes) {
  z_stream stream{};
  constexpr int GzipWindow = 15 + 16;  // a gzip header is demanded
  EXPECT_EQ(inflateInit2(&stream, GzipWindow), Z_OK);
  std::string packed = bytes, text;
  stream.next_in = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_in = static_cast<uInt>(packed.size());
  std::array<unsigned char, 4096> piece{};
  int state = Z_OK;
  while (state == Z_OK) {
    stream.next_out = piece.data();
    stream.avail_out = static_cast<uInt>(piece.size());
    state = inflate(&stream, Z_NO_FLUSH);
    text.append(reinterpret_cast<const char*>(piece.data()), piece.size() - stream.avail_out);
  }
  EXPECT_EQ(state, Z_STREAM_END);
  EXPECT_EQ(stream.avail_in, 0U);
  inflateEnd(&stream);
  return text;
}

PageFile ReadPage(const std::filesystem::path& file) {
  PageFile page;
  page.html = ReadBytes(file);
  std::size_t at = 0;
  page.title = ResolveEscapes(TakeBetween(page.html, "<title>", "</title>", at));
  const std::string json = TakeBetween(
      page.html, "<script type=\"application/json\" id=\"kvx-model\">", "</script>", at);
  constexpr bool Throws = false;
  page.model = nlohmann::json::parse(json, nullptr, Throws);
  if (!page.model.is_object()) {
    ADD_FAILURE() << "no JSON in " << file;
    return page;
  }
  for (const auto& [id, columns] : page.model["blocks"].items()) {
    const std::string text = TakeBetween(
        page.html, "<script type=\"text/plain\" id=\"kvx-block-" + id + "\">", "</script>", at = 0);
    PageBlock& block = page.blocks[id];
    block.id = id;
    block.bytes = Gunzip(DecodeBase64(text));
    for (const nlohmann::json& column : columns) {
      block.columns.push_back({column["name"], EncodingOf(column["encoding"]), column["count"],
                               column["at"], column.value("width", std::size_t{1}),
                               column.value("digits", 0)});
    }
  }
  return page;
}

}  // namespace kvx::test
