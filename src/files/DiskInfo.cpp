#include "DiskInfo.h"

#include "FileLib.h"
#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"
#include "system/OSInfo.h"

#include <cstdint>
#include <new>
#include <string>

namespace orbex {
namespace {

constexpr platform::Dword LabelLength = 33;
constexpr platform::Dword FileSystemLength = 25;
constexpr platform::Dword NoRootDir = 1;  // the platform's answer for a root that does not exist

// The captured last-error code, raised under the member's name.
[[noreturn]] void RaiseLastError(const wchar_t* member, const wchar_t* description) {
    const auto code = static_cast<Long>(platform::api().GetLastError());
    Raise(code, String(L"Quillet:DiskInfo:") + member, description);
}

String Buffered(const std::string& buffer) { return CutAtFirstNul(FromAnsi(buffer), 1); }

}  // namespace

// A catch-all: the parse and the reload end quietly on any failure.
void DiskInfo::RootName(const String& text) {
    try {
        const FileLib lib;
        rootName_ = lib.ParseFilenameRoot(text);
        InitSettings();
    } catch (const RaisedError&) {
    } catch (const std::bad_alloc&) {
    }
}

// The stored label is not touched: it shows the volume as of the last assignment of RootName.
void DiskInfo::VolumeLabel(const String& label) {
    const auto& api = platform::api();
    if (!api.SetVolumeLabelA(ToAnsi(rootName_).c_str(), ToAnsi(label).c_str())) {
        RaiseLastError(L"VolumeLabel", L"Could not set volume label.");
    }
}

// A catch-all, its own raise included: a refused volume query ends the reload before anything is
// stored, so a root that fails after one that worked keeps the old figures under the new name.
// Each later step stores what it read before the next one runs.
void DiskInfo::InitSettings() {
    try {
        const auto& api = platform::api();
        // No text stands for "no root": the platform would read it as the current drive's root.
        // The reload ends here as for a refused root.
        if (rootName_.empty()) return;
        const std::string root = ToAnsi(rootName_);
        rootName_ = FromAnsi(root);  // as the platform received it

        std::string label(LabelLength, '\0');
        std::string fileSystem(FileSystemLength, '\0');
        platform::Dword serial = 0, maxLength = 0, flags = 0;
        if (!api.GetVolumeInformationA(root.c_str(), label.data(), LabelLength, &serial, &maxLength, &flags,
                                       fileSystem.data(), FileSystemLength)) {
            RaiseLastError(L"InitSettings", L"Could not retrieve volume information.");
        }
        volumeLabel_ = Buffered(label);
        fileSystem_ = Buffered(fileSystem);
        serialNumber_ = static_cast<Long>(serial);
        maxFilenameLength_ = static_cast<Long>(maxLength);
        flags_ = static_cast<Long>(flags);

        const platform::Dword type = api.GetDriveTypeA(root.c_str());
        driveType_ = type == NoRootDir ? vqDTUnknown : static_cast<Long>(type);

        if (isTrue(HasLargeDriveSupport())) {
            std::uint64_t callerFree = 0, total = 0, totalFree = 0;
            if (!api.GetDiskFreeSpaceExA(root.c_str(), &callerFree, &total, &totalFree)) return;
            totalFree_ = CurrencyFromCount64(static_cast<std::int64_t>(totalFree));
            total_ = CurrencyFromCount64(static_cast<std::int64_t>(total));
            userFree_ = CurrencyFromCount64(static_cast<std::int64_t>(callerFree));
        } else {
            platform::Dword sectorsPerCluster = 0, bytesPerSector = 0, freeClusters = 0, totalClusters = 0;
            if (!api.GetDiskFreeSpaceA(root.c_str(), &sectorsPerCluster, &bytesPerSector, &freeClusters,
                                       &totalClusters)) {
                return;
            }
            const Currency cluster = CheckedMul(CurrencyFromCount32(static_cast<Long>(sectorsPerCluster)),
                                                CurrencyFromCount32(static_cast<Long>(bytesPerSector)));
            totalFree_ = CheckedMul(cluster, CurrencyFromCount32(static_cast<Long>(freeClusters)));
            total_ = CheckedMul(cluster, CurrencyFromCount32(static_cast<Long>(totalClusters)));
            userFree_ = totalFree_;
        }
    } catch (const RaisedError&) {
    } catch (const std::bad_alloc&) {
    }
}

// The 9x family before OSR2 and NT 3 lack GetDiskFreeSpaceExA. A catch-all: if the version
// can't be told, the answer is False.
Boolean DiskInfo::HasLargeDriveSupport() const {
    try {
        const bool nt3 = isTrue(OSInfo().IsWinNT3());
        const bool win95 = isTrue(OSInfo().IsWin95());
        const bool osr2 = isTrue(OSInfo().IsWin95OSR2());
        return toBoolean(!((win95 && !osr2) || nt3));
    } catch (const RaisedError&) {
    } catch (const std::bad_alloc&) {
    }
    return False;
}

String DiskInfo::SerialNumberHex() const {
    static constexpr wchar_t Digits[] = L"0123456789ABCDEF";
    const auto serial = static_cast<std::uint32_t>(serialNumber_);
    String hex(8, L'0');
    for (int i = 0; i < 8; ++i) hex[static_cast<std::size_t>(7 - i)] = Digits[(serial >> (4 * i)) & 0xF];
    return hex.substr(0, 4) + L"-" + hex.substr(4);
}

Currency DiskInfo::TotalBytesUsed() const { return CheckedSub(total_, totalFree_); }

}  // namespace orbex
