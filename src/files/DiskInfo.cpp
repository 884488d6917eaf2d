#include "DiskInfo.h"

namespace orbex {

void DiskInfo::RootName(const String& text) {
    rootName_ = text;
    InitSettings();
}

void DiskInfo::VolumeLabel(const String&) {}

void DiskInfo::InitSettings() {}

String DiskInfo::SerialNumberHex() const { return L"0000-0000"; }

Currency DiskInfo::TotalBytesUsed() const { return Currency{total_.scaled - totalFree_.scaled}; }

Boolean DiskInfo::HasLargeDriveSupport() const { return True; }

}  // namespace orbex
