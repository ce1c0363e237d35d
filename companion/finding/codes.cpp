#include "finding/codes.h"

#include <array>

namespace kvx {

namespace {

std::array<const std::vector<CodeText>*, 8> Groups() {
  return {&TextCodes, &ElementCodes, &MeshCodes,         &SupportCodes,
          &LoadCodes, &SizeCodes,    &PlausibilityCodes, &ResultCodes};
}

}  // namespace

std::vector<const CodeText*> ListCodes() {
  std::vector<const CodeText*> all;
  for (const std::vector<CodeText>* group : Groups()) {
    for (const CodeText& text : *group) all.push_back(&text);
  }
  return all;
}

const CodeText* FindCode(std::string_view code) {
  for (const std::vector<CodeText>* group : Groups()) {
    for (const CodeText& text : *group) {
      if (code == text.code) return &text;
    }
  }
  return nullptr;
}

}  // namespace kvx
