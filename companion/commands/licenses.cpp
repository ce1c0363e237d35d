// kvx licenses: the licences of the libraries that are part of the program.
#include "commands/commands.h"
#include "commands/license_texts.h"
#include "view/page_template.h"

namespace kvx {

ExitStatus RunLicenses() {
  return WriteOutput(std::string("kvx contains parts of these libraries.\n") + LicenseTexts +
                     "\n---- three.js, in the pages of kvx view ----\n\n" + PageLicense);
}

}  // namespace kvx
