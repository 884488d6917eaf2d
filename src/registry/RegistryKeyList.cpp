// Listing the sub-keys and values of a key in one pass: one query for the counts and longest
// lengths, the result sized once, then one fetch per index. Any failed fetch empties the list.
#include "RegistryKey.h"

#include "KeyHandles.h"

#include "frame/Ansi.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <vector>

namespace orbex {
namespace {

using platform::Dword;

// Nothing to list, told apart from one entry by its lower bound.
StringArray EmptyList() {
    return StringArray{-1, {String{}}};
}

// Fetches `count` names by index into an array sized once. `fetch(index, buffer, length)` gets
// a buffer of the longest name plus one, all NULs, with that length, and reports the name's
// length; that length is applied to the text after its conversion back, as for every narrow
// buffer. The one buffer is cleared again for every index. The first failure, kept in
// `lastError`, gives the empty list.
template <class Fetch>
StringArray FetchNames(Long& lastError, Dword count, Dword longestName, Fetch fetch) {
    if (static_cast<Long>(count) < 1) return EmptyList();
    StringArray names{0, std::vector<String>(count)};
    std::string buffer;
    for (Dword index = 0; index < count; ++index) {
        buffer.assign(std::size_t{longestName} + 1, '\0');
        Dword length = longestName + 1;
        lastError = fetch(index, buffer.data(), &length);
        if (lastError != 0) return EmptyList();
        names.items[index] = FromAnsiBuffer(buffer, length);
    }
    return names;
}

}  // namespace

// The class buffer holds "0" but is announced as empty, so no class text is written into it.
Long QueryFigures(Long handle, KeyFigures& figures) {
    char className[] = "0";
    Dword classLength = 0;
    platform::FileTime lastWriteTime{};
    return platform::api().RegQueryInfoKeyA(
        ToPlatform(handle), className, &classLength, nullptr, &figures.subKeys,
        &figures.maxSubKeyLength, &figures.maxClassLength, &figures.values,
        &figures.maxValueNameLength, &figures.maxValueLength, &figures.securityDescriptorSize,
        &lastWriteTime);
}

// The fetch passes no class buffer: the platform may refuse an entry whose class text does not
// fit a buffer it is given, even one announced as empty, and only the name is wanted.
StringArray RegistryKey::GetSubKeyNames() {
    if (!IsValidHandle(rootKey_)) {
        Raise(vqInvalidRegistryKey, L"GetSubKeyNames", RegistryText::KeyClosed);
    }
    KeyFigures figures;
    lastError_ = QueryFigures(keyHandle_, figures);
    StringArray names = EmptyList();
    if (lastError_ == 0) {
        const platform::Handle key = ToPlatform(keyHandle_);
        names = FetchNames(lastError_, figures.subKeys, figures.maxSubKeyLength,
                           [key](Dword index, char* name, Dword* length) {
                               platform::FileTime lastWriteTime{};
                               return platform::api().RegEnumKeyExA(key, index, name, length,
                                   nullptr, nullptr, nullptr, &lastWriteTime);
                           });
    }
    if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"GetSubKeyNames", RegistryText::NoAccess);
    }
    return names;
}

StringArray RegistryKey::GetValueNames() {
    return ListValueNames([](std::uint32_t, const std::uint8_t*, std::uint32_t) {});
}

// Each value's data is fetched too, into one buffer that fits the longest, and handed to `keep`
// with its type; a value that grew since the query no longer fits and empties the list like
// any failed fetch.
StringArray RegistryKey::ListValueNames(const ValueKeeper& keep) {
    if (!IsValidHandle(rootKey_)) {
        Raise(vqInvalidRegistryKey, L"GetValueNames", RegistryText::KeyClosed);
    }
    KeyFigures figures;
    lastError_ = QueryFigures(keyHandle_, figures);
    StringArray names = EmptyList();
    if (lastError_ == 0) {
        const platform::Handle key = ToPlatform(keyHandle_);
        const Dword longestData = figures.maxValueLength;
        std::vector<Byte> data(std::size_t{longestData} + 1);
        names = FetchNames(lastError_, figures.values, figures.maxValueNameLength,
                           [&](Dword index, char* name, Dword* length) {
                               Dword type = 0, dataSize = longestData;
                               data[0] = 0;
                               const Long result = platform::api().RegEnumValueA(key, index, name, length,
                                   nullptr, &type, data.data(), &dataSize);
                               if (result == 0) keep(type, data.data(), dataSize);
                               return result;
                           });
    }
    if (lastError_ == RegistryAccessDenied) {
        Raise(vqNoAccess, L"GetValueNames", RegistryText::NoAccess);
    }
    return names;
}

}  // namespace orbex
