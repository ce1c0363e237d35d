// Converts with the C library.
#include <gtest/gtest.h>
#include <iconv.h>

#include "support/gbk.h"

namespace korvex::test {

std::string ConvertToGbk(const std::string& utf8) {
  const iconv_t converter = iconv_open("GBK", "UTF-8");
  std::string text = utf8;
  std::string gbk(utf8.size(), '\0');
  char* in = text.data();
  char* out = gbk.data();
  std::size_t inLeft = utf8.size(), outLeft = gbk.size();
  EXPECT_EQ(iconv(converter, &in, &inLeft, &out, &outLeft), 0U);
  iconv_close(converter);
  gbk.resize(gbk.size() - outLeft);
  return gbk;
}

}  // namespace korvex::test
