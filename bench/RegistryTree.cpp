#include "Bench.h"

namespace bench {
void AddRegistryTreeCases(Suite&) {}
}  // namespace bench
