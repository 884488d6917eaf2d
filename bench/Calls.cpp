#include "Bench.h"

namespace bench {
void AddCallCases(Suite&) {}
}  // namespace bench
