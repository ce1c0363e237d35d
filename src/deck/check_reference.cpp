#include "deck/check_reference.h"

#include <string>

#include "report/stop.h"

namespace korvex {

void CheckReference(const char* rowKind, std::int32_t row, const char* field, std::int32_t value,
                    const TableSize& table) {
  if (value >= 0 && value < table.count) return;
  throw Stop{StopKind::Notice, std::string(rowKind) + " " + std::to_string(row) + " refers to " +
                                   field + " " + std::to_string(value) + "; there are " +
                                   std::to_string(table.count) + " " + table.name + "."};
}

void CheckCount(const char* key, std::int32_t count) {
  if (count >= 0) return;
  throw Stop{StopKind::Notice,
             std::string("The count ") + key + " is negative: " + std::to_string(count) + "."};
}

}  // namespace korvex
