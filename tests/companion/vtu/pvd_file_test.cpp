#include "vtu/pvd_file.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

TEST(PvdFile, ListsFilesByTime) {
  EXPECT_EQ(PvdText({{"base", "base/model.vtu"}, {"weight", "weight/model.vtu"}}),
            "<?xml version=\"1.0\"?>\n"
            "<VTKFile type=\"Collection\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
            "  <Collection>\n"
            "    <DataSet timestep=\"0\" part=\"0\" name=\"base\" file=\"base/model.vtu\"/>\n"
            "    <DataSet timestep=\"1\" part=\"0\" name=\"weight\" file=\"weight/model.vtu\"/>\n"
            "  </Collection>\n"
            "</VTKFile>\n");
}

// Names of cases may hold what XML keeps for itself.
TEST(PvdFile, KeepsNamesText) {
  const std::string text = PvdText({{"1 < 2 & \"3\" > '\t", "a&b/model.vtu"}});
  EXPECT_NE(text.find("name=\"1 &lt; 2 &amp; &quot;3&quot; &gt; ' \" file=\"a&amp;b/model.vtu\""),
            std::string::npos)
      << text;
}

}  // namespace
}  // namespace kvx::test
