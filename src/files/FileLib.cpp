// FileLib: the objects it hands out, and the shell's path of an item identifier list.
#include "FileLib.h"
#include "FileLibPlatform.h"

#include "DiskInfo.h"
#include "FileInfo.h"
#include "frame/FunctionLib.h"

namespace orbex {

std::unique_ptr<orbex::FileInfo> FileLib::FileInfo(const String& filename) const {
    auto info = std::make_unique<orbex::FileInfo>();
    info->Filename(filename);
    return info;
}

std::unique_ptr<orbex::DiskInfo> FileLib::DiskInfo(const String& rootName) const {
    auto info = std::make_unique<orbex::DiskInfo>();
    const String copy = rootName;
    info->RootName(copy);
    return info;
}

namespace filelib {

String PathOfItemList(platform::ItemIdList list) {
    std::string buffer = NulBuffer(260);
    platform::api().SHGetPathFromIDListA(list, buffer.data());  // an item without a path leaves it empty
    return CutAtFirstNul(FromBuffer(buffer), 1);
}

}  // namespace filelib
}  // namespace orbex
