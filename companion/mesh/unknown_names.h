// What is said of cards and keywords that are not known: the name that may be meant.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

struct UnknownNames {
  std::map<std::string, std::string, std::less<>> reasons;  // by name
};

// "unknown card; did you mean PSHELL?", or `what` ("unknown card") alone where no name of `known`
// is near. Only the first names of a deck are compared: one of nothing but unknown names would take
// long.
std::string ReasonOfUnknown(std::string_view what, std::string_view name,
                            const std::vector<std::string>& known, UnknownNames& unknown);

}  // namespace kvx
