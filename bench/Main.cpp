// orbex_bench ROUNDS DATAFOLDER [CASE-SUBSTRING]
// Prepares every case's data, runs ROUNDS rounds and prints one line per timing:
//   case <TAB> contender <TAB> round <TAB> seconds
// then removes its data. Lines starting with '#' are notes for the report.
#include "Bench.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

double Now() {
    static const double frequency = [] {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return static_cast<double>(f.QuadPart);
    }();
    LARGE_INTEGER t;
    QueryPerformanceCounter(&t);
    return static_cast<double>(t.QuadPart) / frequency;
}

constexpr DWORD SettleMilliseconds = 300;

void RunRound(const Case& c, int round) {
    const size_t count = c.contenders.size();
    for (size_t k = 0; k < count; ++k) {
        const Contender& contender = c.contenders[(k + static_cast<size_t>(round)) % count];
        if (contender.before) contender.before();
        const double start = Now();
        contender.run();
        const double seconds = Now() - start;
        if (contender.after) contender.after();
        // Let what the contender left behind (a child process winding down, the Wine server's
        // housekeeping) finish before its rival starts.
        Sleep(SettleMilliseconds);
        std::printf("%s\t%s\t%d\t%.9f\n", c.name.c_str(), contender.name.c_str(), round, seconds);
        std::fflush(stdout);
    }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: orbex_bench ROUNDS DATAFOLDER [CASE-SUBSTRING]\n");
        return 2;
    }
    const int rounds = std::atoi(argv[1]);
    const std::string filter = argc > 3 ? argv[3] : "";
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    bench::Suite suite;
    suite.dataFolder = argv[2];
    int status = 0;
    try {
        bench::AddRegistryListingCases(suite);
        bench::AddRegistryTreeCases(suite);
        bench::AddFolderSizeCases(suite);
        bench::AddIniCases(suite);
        bench::AddCallCases(suite);
        for (const bench::Case& c : suite.cases) {
            if (!c.note.empty()) std::printf("#note\t%s\t%s\n", c.name.c_str(), c.note.c_str());
        }
        for (int round = 0; round < rounds; ++round) {
            for (const bench::Case& c : suite.cases) {
                if (c.name.find(filter) != std::string::npos) bench::RunRound(c, round);
            }
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "orbex_bench: %s\n", e.what());
        status = 1;
    }
    for (auto it = suite.cleanups.rbegin(); it != suite.cleanups.rend(); ++it) (*it)();
    suite.cases.clear();
    CoUninitialize();
    return status;
}
