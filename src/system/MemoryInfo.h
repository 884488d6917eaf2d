// A snapshot of the machine's memory, taken once when the object is made: the load in percent
// and seven sizes in bytes, each a whole number held in a Currency.
#pragma once
#include "frame/Types.h"

namespace orbex {

class MemoryInfo {
public:
    MemoryInfo();

    Long MemoryLoad() const { return memoryLoad_; }
    Currency AvailablePhysical() const { return availablePhysical_; }
    Currency TotalPhysical() const { return totalPhysical_; }
    Currency TotalPageFile() const { return totalPageFile_; }
    Currency AvailablePageFile() const { return availablePageFile_; }
    Currency TotalVirtual() const { return totalVirtual_; }
    Currency AvailableVirtual() const { return availableVirtual_; }
    Currency AvailableExtendedVirtual() const { return availableExtendedVirtual_; }

private:
    void LoadMemoryStatus();

    Long memoryLoad_ = 0;
    Currency totalPhysical_;
    Currency availablePhysical_;
    Currency totalPageFile_;
    Currency availablePageFile_;
    Currency totalVirtual_;
    Currency availableVirtual_;
    Currency availableExtendedVirtual_;
};

}  // namespace orbex
