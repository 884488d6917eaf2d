#include "MemoryInfo.h"

#include "OSInfo.h"
#include "frame/Checked.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace orbex {
namespace {

constexpr Long ExtendedQueryMajor = 5;  // Windows 2000 brought GlobalMemoryStatusEx

// A size of the older record: the platform's word, signed. On the 32-bit product that is the
// 32-bit count, so 2 GiB and more read negative; the 64-bit build takes its wider word whole.
Currency SizeCount(std::size_t word) {
    return CurrencyFromCount64(static_cast<std::intptr_t>(word));
}

}  // namespace

MemoryInfo::MemoryInfo() { LoadMemoryStatus(); }

// Which query is used depends on the major version alone. A catch-all: any failure, such as a
// count too large for a Currency, ends the load and keeps the figures stored until then.
void MemoryInfo::LoadMemoryStatus() {
    try {
        const auto& api = platform::api();
        if (OSInfo().MajorVersion() >= ExtendedQueryMajor) {
            platform::MemoryStatusEx status{};
            status.dwLength = sizeof status;
            api.GlobalMemoryStatusEx(&status);
            memoryLoad_ = static_cast<Long>(status.dwMemoryLoad);
            totalPhysical_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullTotalPhys));
            availablePhysical_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullAvailPhys));
            totalPageFile_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullTotalPageFile));
            availablePageFile_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullAvailPageFile));
            totalVirtual_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullTotalVirtual));
            availableVirtual_ = CurrencyFromCount64(static_cast<std::int64_t>(status.ullAvailVirtual));
            availableExtendedVirtual_ =
                CurrencyFromCount64(static_cast<std::int64_t>(status.ullAvailExtendedVirtual));
        } else {
            platform::MemoryStatus status{};
            status.dwLength = sizeof status;
            api.GlobalMemoryStatus(&status);
            memoryLoad_ = static_cast<Long>(status.dwMemoryLoad);
            totalPhysical_ = SizeCount(status.dwTotalPhys);
            availablePhysical_ = SizeCount(status.dwAvailPhys);
            totalPageFile_ = SizeCount(status.dwTotalPageFile);
            availablePageFile_ = SizeCount(status.dwAvailPageFile);
            totalVirtual_ = SizeCount(status.dwTotalVirtual);
            availableVirtual_ = SizeCount(status.dwAvailVirtual);
            availableExtendedVirtual_ = Currency{};
        }
    } catch (const RaisedError&) {
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace orbex
