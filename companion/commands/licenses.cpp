// kvx licenses: the licences of the libraries that are part of the program.
#include "commands/commands.h"
#include "commands/license_texts.h"
#include "view/page_template.h"

namespace kvx {

ExitStatus RunLicenses() {
  std::string text = "kvx contains parts of these libraries.\n";
  for (const char* const* each = LicenseTexts; *each != nullptr; ++each) text += *each;
  return WriteOutput(text + "\n---- three.js, in the pages of kvx view ----\n\n" + PageLicense);
}

}  // namespace kvx
