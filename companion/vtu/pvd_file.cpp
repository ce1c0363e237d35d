#include "vtu/pvd_file.h"

namespace kvx {

namespace {

// The text of an attribute. Control characters, which XML has no way to write, become spaces.
std::string AttributeText(const std::string& text) {
  std::string attribute;
  for (const char c : text) {
    if (c == '&') {
      attribute += "&amp;";
    } else if (c == '<') {
      attribute += "&lt;";
    } else if (c == '>') {
      attribute += "&gt;";
    } else if (c == '"') {
      attribute += "&quot;";
    } else {
      attribute += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
  }
  return attribute;
}

}  // namespace

std::string PvdText(const std::vector<PvdEntry>& entries) {
  std::string text =
      "<?xml version=\"1.0\"?>\n"
      "<VTKFile type=\"Collection\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
      "  <Collection>\n";
  for (std::size_t k = 0; k < entries.size(); ++k) {
    text += "    <DataSet timestep=\"" + std::to_string(k) + "\" part=\"0\" name=\"" +
            AttributeText(entries[k].name) + "\" file=\"" + AttributeText(entries[k].file) +
            "\"/>\n";
  }
  return text + "  </Collection>\n</VTKFile>\n";
}

}  // namespace kvx
