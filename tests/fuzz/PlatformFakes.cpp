#include "PlatformFakes.h"

#include <cstring>

namespace orbex::fuzz {

using namespace platform;

PlatformFakes::PlatformFakes(std::uint64_t seed, const Sandbox& sandbox)
    : random_(seed ^ 0x5EA1F00Dull),
      sandbox_(sandbox),
      exitWindows_([this](Dword, Dword) -> Bool { return succeed("ExitWindowsEx"); }),
      suspend_([this](std::int32_t, std::int32_t, std::int32_t) -> Boolean { return succeed("SetSuspendState"); }),
      openToken_([this](Handle process, Dword access, Handle* token) -> Bool {
          if (!succeed("OpenProcessToken")) return 0;
          return openToken_.original(process, access, token);
      }),
      lookupPrivilege_([this](const char* system, const char* name, Luid* luid) -> Bool {
          if (!succeed("LookupPrivilegeValueA")) return 0;
          return lookupPrivilege_.original(system, name, luid);
      }),
      // Never really granted: the session actions are fakes anyway.
      adjustPrivileges_([this](Handle, Bool, TokenPrivileges*, Dword, TokenPrivileges*, Dword*) -> Bool {
          return succeed("AdjustTokenPrivileges");
      }),
      keyboard_([this](std::uint8_t, std::uint8_t, Dword, std::uintptr_t) { ++calls_["keybd_event"]; }),
      openDialog_([this](OpenFileName* info) -> Bool { return fillFileName(info, "GetOpenFileNameA"); }),
      saveDialog_([this](OpenFileName* info) -> Bool { return fillFileName(info, "GetSaveFileNameA"); }),
      folderDialog_([this](BrowseInfo* info) -> ItemIdList {
          if (!succeed("SHBrowseForFolderA")) return nullptr;
          if (info && info->pszDisplayName) std::strcpy(info->pszDisplayName, "Documents");
          ItemIdList chosen = nullptr;
          realApi().SHGetSpecialFolderLocation(0, 5 /* My Documents */, &chosen);
          return chosen;
      }),
      volumeLabel_([this](const char*, const char*) -> Bool { return succeed("SetVolumeLabelA"); }) {}

bool PlatformFakes::succeed(const char* name) {
    ++calls_[name];
    return random_.percent(50);
}

int PlatformFakes::fillFileName(OpenFileName* info, const char* name) {
    if (!succeed(name) || !info || !info->lpstrFile) return 0;
    std::string chosen(sandbox_.folder().begin(), sandbox_.folder().end());
    chosen += "\\file.txt";
    if (info->nMaxFile <= chosen.size()) return 0;
    std::memcpy(info->lpstrFile, chosen.c_str(), chosen.size() + 1);
    info->nFileOffset = static_cast<Word>(chosen.rfind('\\') + 1);
    info->nFileExtension = static_cast<Word>(chosen.rfind('.') + 1);
    return 1;
}

std::string PlatformFakes::summary() const {
    std::string out;
    for (const auto& [name, count] : calls_) out += (out.empty() ? "" : ", ") + name + " " + std::to_string(count);
    return out.empty() ? "none" : out;
}

}  // namespace orbex::fuzz
