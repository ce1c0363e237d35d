// The forms in which a command can give its tables.
#pragma once

namespace kvx {

enum class OutputForm {
  Text,  // for people
  Csv,   // for spreadsheets: one table, numbers with all digits
  Json,  // for programs, numbers with all digits
};

}  // namespace kvx
