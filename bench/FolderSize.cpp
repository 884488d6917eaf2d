#include "Bench.h"

namespace bench {
void AddFolderSizeCases(Suite&) {}
}  // namespace bench
