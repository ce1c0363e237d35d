// Windows has no name for a pipe that is opened as a file is.
#include "audit/written_bytes.h"

namespace kvx {

bool TakeWrittenBytes(const FileWriter& write, const TakeBytes& take) {
  return TakeBytesOfTemporaryFile(write, take);
}

}  // namespace kvx
