// The process's open handles and private memory, as the soak and the apartment test measure
// them. Wine 8.0 answers GetProcessHandleCount with 0 and PROCESS_MEMORY_COUNTERS_EX.PrivateUsage
// with 0; it keeps the commit charge in PagefileUsage, which Windows documents as the same
// figure, and its handles can be counted one by one.
#pragma once
#include <windows.h>
#include <psapi.h>

namespace orbex::soak {

struct ProcessFigures {
    DWORD handles = 0;
    SIZE_T privateBytes = 0;
};

// Counts the handle values that name an open handle. Handle values are multiples of 4 and the
// lowest free one is given out first, so open handles lie densely at the bottom of the range,
// leaked ones included; the count stops after a long run of free values.
inline DWORD CountHandlesOneByOne() {
    constexpr ULONG_PTR kFreeRunThatEnds = 1024;
    DWORD count = 0;
    for (ULONG_PTR value = 4, free = 0; free < kFreeRunThatEnds; value += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) {
            ++count;
            free = 0;
        } else {
            ++free;
        }
    }
    return count;
}

inline ProcessFigures MeasureProcess() {
    ProcessFigures figures;
    if (!GetProcessHandleCount(GetCurrentProcess(), &figures.handles) || figures.handles == 0)
        figures.handles = CountHandlesOneByOne();
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    if (GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                             sizeof counters))
        figures.privateBytes = counters.PrivateUsage ? counters.PrivateUsage : counters.PagefileUsage;
    return figures;
}

}  // namespace orbex::soak
