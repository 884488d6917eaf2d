// The INILib members that work on whole sections. The platform's lists are items each followed
// by a NUL, with one more NUL after the last; WriteSection sends the same shape back.
#include "INILib.h"

#include "ProfileText.h"

#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <cstdint>

namespace orbex {
namespace {

constexpr Long PlatformFailed = -1;

// One list read: a buffer of `size` blanks, one platform call, one cut; the items stay in the
// one text. The cut drops the last item's NUL; when the platform cut a list that didn't fit, it
// drops the character before the cut as well, and the caller gets no sign of either.
template <class Fill>
NulSeparatedList ReadList(Long size, const wchar_t* source, const wchar_t* description, Fill fill) {
    std::string buffer = ini::Blanks(size);
    const Long written = static_cast<Long>(fill(buffer.data(), static_cast<platform::Dword>(size)));
    if (written == PlatformFailed) Raise(0, source, description);
    if (written == 0) return NulSeparatedList{};
    return NulSeparatedList{ini::BufferText(buffer, CheckedSub(written, 1))};
}

}  // namespace

NulSeparatedList INILib::GetSectionNames(const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    return ReadList(bufferSize_, L"INILib:GetSectionNames", L"Error retrieving INI section names.",
                    [&](char* buffer, platform::Dword size) {
                        return platform::api().GetPrivateProfileStringA(nullptr, nullptr, "", buffer,
                                                                         size, file.c_str());
                    });
}

NulSeparatedList INILib::GetSectionKeys(const String& Section, const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    const std::string section = ToAnsi(Section);
    return ReadList(bufferSize_, L"INILib:GetSectionKeys", L"Error retrieving INI section keys.",
                    [&](char* buffer, platform::Dword size) {
                        return platform::api().GetPrivateProfileStringA(section.c_str(), nullptr, "",
                                                                         buffer, size, file.c_str());
                    });
}

// Its failure names GetStringSection, not the member: clients match on that Source as it is.
// A buffer of size 0 holds no list, and the platform isn't asked: Wine's GetPrivateProfileSectionA
// writes two bytes at (size - 2) whatever the size, which for 0 is outside any buffer.
NulSeparatedList INILib::GetSection(const String& Section, const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    if (bufferSize_ == 0) return NulSeparatedList{};
    const std::string section = ToAnsi(Section);
    return ReadList(bufferSize_, L"INILib:GetStringSection", L"Error retrieving INI section.",
                    [&](char* buffer, platform::Dword size) {
                        return platform::api().GetPrivateProfileSectionA(section.c_str(), buffer, size,
                                                                          file.c_str());
                    });
}

// The loop runs on an Integer counter, as the bounds do: stepping past an upper bound of 32767
// overflows after the last element has been appended and before anything is written.
void INILib::WriteSection(const String& Section, const StringArray& KeyValuePairs,
                          const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    const Integer lower = ToInteger(KeyValuePairs.lower);
    const std::int64_t upperBound =
        std::int64_t{KeyValuePairs.lower} + static_cast<std::int64_t>(KeyValuePairs.items.size()) - 1;
    const Integer upper = ToInteger(ToLong(upperBound));
    String data;
    for (Integer index = lower; index <= upper; index = CheckedAdd(index, Integer{1})) {
        data += KeyValuePairs.items[static_cast<std::size_t>(index - lower)];
        data += L'\0';
    }
    data += L'\0';
    const std::string narrow = ToAnsi(data);
    if (platform::api().WritePrivateProfileSectionA(ToAnsi(Section).c_str(), narrow.data(),
                                                    file.c_str()) == 0) {
        Raise(0, L"INILib:WriteSection", L"Error writing INI section.");
    }
}

// A null key and a null value: that is what makes the platform delete the whole section.
void INILib::DeleteSection(const String& Section, const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    platform::api().WritePrivateProfileStringA(ToAnsi(Section).c_str(), nullptr, nullptr,
                                               file.c_str());
}

}  // namespace orbex
