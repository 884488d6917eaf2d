// Private to FileLib: owners for the search handles and item identifier lists that live inside
// one member, and the fixed-buffer idiom of the narrow platform functions.
#pragma once
#include "frame/Ansi.h"
#include "frame/Types.h"
#include "platform/Api.h"

#include <string>

namespace orbex::filelib {

// A search of FindFirstFileA, closed when the member ends, also on a failure.
class Search {
public:
    Search(const String& pattern, platform::Win32FindData& data)
        : handle_(platform::api().FindFirstFileA(ToAnsi(pattern).c_str(), &data)) {}
    ~Search() {
        if (found()) platform::api().FindClose(handle_);
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool found() const { return handle_ != platform::InvalidHandle; }
    bool next(platform::Win32FindData& data) const {
        return platform::api().FindNextFileA(handle_, &data) != 0;
    }

private:
    platform::Handle handle_;
};

// An item identifier list handed out by the shell, released through the task allocator.
class ItemList {
public:
    ItemList() = default;
    explicit ItemList(platform::ItemIdList list) : list_(list) {}
    ~ItemList() {
        if (list_ != nullptr) platform::api().CoTaskMemFree(list_);
    }
    ItemList(const ItemList&) = delete;
    ItemList& operator=(const ItemList&) = delete;

    platform::ItemIdList* out() { return &list_; }
    platform::ItemIdList get() const { return list_; }
    explicit operator bool() const { return list_ != nullptr; }

private:
    platform::ItemIdList list_ = nullptr;
};

// A platform text buffer of n NUL characters.
inline std::string NulBuffer(std::size_t n) { return std::string(n, '\0'); }

// The whole buffer back in UTF-16, NULs and all.
inline String FromBuffer(const std::string& buffer) { return FromAnsi(buffer.data(), buffer.size()); }

// The first n characters of a converted buffer, as the platform counted them.
inline String Left(const String& text, std::size_t n) { return text.substr(0, n); }

// The path text of an item identifier list, cut at its first NUL; "" when it has none.
String PathOfItemList(platform::ItemIdList list);

}  // namespace orbex::filelib
