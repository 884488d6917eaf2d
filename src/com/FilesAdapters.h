// Wraps the FileInfo and DiskInfo objects that FileLib hands out into new COM objects, one
// reference each; nullptr stays the empty reference.
#pragma once
#include "Orbex_h.h"
#include "files/DiskInfo.h"
#include "files/FileInfo.h"

#include <memory>

namespace orbex::com {

_FileInfo* WrapFileInfo(std::unique_ptr<FileInfo> info);
_DiskInfo* WrapDiskInfo(std::unique_ptr<DiskInfo> info);

}  // namespace orbex::com
