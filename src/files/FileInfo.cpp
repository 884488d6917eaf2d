#include "FileInfo.h"

#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/Convert.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"
#include "system/OSInfo.h"

#include <cstdint>
#include <new>
#include <string>

namespace orbex {
namespace {

constexpr platform::Dword GenericRead = 0x80000000;
constexpr platform::Dword FileShareRead = 1;
constexpr platform::Dword OpenExisting = 3;
constexpr platform::Dword BackupSemantics = 0x2000000;  // lets a folder be opened, NT family only
constexpr Long SizeExMajor = 5;                          // Windows 2000 brought GetFileSizeEx
constexpr int FormatBufferLength = 50;
constexpr Long NotLoaded = -1;  // the attribute word after a load that could not open the file

// The file handle of one load, closed on every way out of it.
class OpenFile {
public:
    explicit OpenFile(platform::Handle handle) : handle_(handle) {}
    ~OpenFile() {
        if (valid()) platform::api().CloseHandle(handle_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool valid() const { return handle_ != platform::InvalidHandle; }
    platform::Handle get() const { return handle_; }

private:
    platform::Handle handle_;
};

// The length of the named file as the directory entry holds it, its low 32 bits read signed.
// The platforms before GetFileSizeEx know no files beyond that.
Currency LengthByName(const std::string& name) {
    const auto& api = platform::api();
    platform::Win32FindData data{};
    const platform::Handle search = api.FindFirstFileA(name.c_str(), &data);
    if (search == platform::InvalidHandle) return Currency{};
    api.FindClose(search);
    return CurrencyFromCount32(static_cast<Long>(data.nFileSizeLow));
}

// One formatted text of a SYSTEMTIME, cut at its terminator.
template <class Format>
String FormatText(Format format, const platform::SystemTime& time, const char* picture) {
    std::string buffer(FormatBufferLength, '\0');
    format(0, 0, &time, picture, buffer.data(), FormatBufferLength);
    return CutAtFirstNul(FromAnsi(buffer), 1);
}

// The local wall-clock time of a SYSTEMTIME as a Date, through the text of its date and its
// time to the second, so the milliseconds drop. Text the conversion does not accept gives 0.
Date SystemTimeToDate(const platform::SystemTime& time) {
    const auto& api = platform::api();
    const String date = FormatText(api.GetDateFormatA, time, "MMMM dd',' yyyy");
    const String clock = FormatText(api.GetTimeFormatA, time, "HH':'mm':'ss");
    try {
        return TextToDate(date + L" " + clock);
    } catch (const RaisedError&) {
        return Date{};
    }
}

// Converts one stamp into its field; a conversion the platform refuses leaves the field alone.
void StoreStamp(const platform::FileTime& utc, Date& field) {
    const auto& api = platform::api();
    platform::FileTime local{};
    if (!api.FileTimeToLocalFileTime(&utc, &local)) return;
    platform::SystemTime system{};
    if (!api.FileTimeToSystemTime(&local, &system)) return;
    field = SystemTimeToDate(system);
}

}  // namespace

void FileInfo::Filename(const String& filename) {
    filename_ = filename;
    LoadFileData();
}

void FileInfo::ResetFileData() {
    fileType_ = 0;
    size_ = Currency{};
    fileAttributes_ = NotLoaded;
}

// A catch-all: a file that cannot be opened, or any failure on the way (a size too large for a
// Currency among them), ends the load with the fields as far as they got.
void FileInfo::LoadFileData() {
    ResetFileData();
    try {
        const auto& api = platform::api();
        const OSInfo os;
        const bool nt = os.PlatformID() == vqOSPWindowsNT;
        // The name crosses to the platform in the ANSI code page and comes back as it arrived
        // there: a character the code page lacks does not survive the load.
        const std::string name = ToAnsi(filename_);
        filename_ = FromAnsi(name);

        const OpenFile file{api.CreateFileA(name.c_str(), GenericRead, FileShareRead, nullptr, OpenExisting,
                                            nt ? BackupSemantics : 0, 0)};
        if (!file.valid()) return;

        const platform::Dword type = api.GetFileType(file.get());
        if (type <= vqFTPipe) fileType_ = static_cast<Long>(type);

        fileAttributes_ = static_cast<Long>(api.GetFileAttributesA(name.c_str()));

        if (nt && os.MajorVersion() >= SizeExMajor) {
            std::int64_t bytes = 0;
            api.GetFileSizeEx(file.get(), &bytes);
            size_ = CurrencyFromCount64(bytes);
        } else {
            size_ = LengthByName(name);
        }

        platform::FileTime creation{}, lastAccess{}, lastWrite{};
        if (api.GetFileTime(file.get(), &creation, &lastAccess, &lastWrite)) {
            StoreStamp(creation, creationDate_);
            StoreStamp(lastAccess, lastAccessDate_);
            StoreStamp(lastWrite, lastWriteDate_);
        }
    } catch (const RaisedError&) {
    } catch (const std::bad_alloc&) {
    }
}

// The other bits go back as the load found them. A Not loaded object has no word to start
// from: the write is dropped, so that no word made of -1 ever reaches a file.
void FileInfo::Write(Long bit, Boolean value) {
    if (fileAttributes_ == NotLoaded) return;
    fileAttributes_ = isTrue(value) ? (fileAttributes_ | bit) : (fileAttributes_ & ~bit);
    platform::api().SetFileAttributesA(ToAnsi(filename_).c_str(), static_cast<platform::Dword>(fileAttributes_));
}

}  // namespace orbex
