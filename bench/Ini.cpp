#include "Bench.h"

namespace bench {
void AddIniCases(Suite&) {}
}  // namespace bench
