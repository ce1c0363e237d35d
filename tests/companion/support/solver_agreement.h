// Whether the checks and the solver agree about a model file: where the checks have no error, the
// solver must read what the checks have read, run to its end, and write finite numbers.
#pragma once

#include <string>

namespace kvx::test {

// Empty where they agree; otherwise what differs. folder: an existing folder, with a slash at its
// end, for the files of the run.
std::string FindDisagreement(const std::string& text, const std::string& folder);

}  // namespace kvx::test
