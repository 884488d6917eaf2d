// Test helpers for the file classes: a scratch folder of real files, listings that stand in for
// a folder search, and readings of Currency sizes and raised errors. Older Windows versions are
// pretended with the system classes' FakeVersion.
#pragma once
#include "frame/RaisedError.h"
#include "frame/Types.h"
#include "platform/TestHook.h"
#include "system/FakeSystem.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace orbex::testing {

using platform::Dword;

inline String Wide(const std::string& text) { return String(text.begin(), text.end()); }

// A folder under the temporary folder, removed with all it holds.
class TempTree {
public:
    TempTree() {
        char temp[261] = {};
        path_ = std::string(temp, platform::realApi().GetTempPathA(sizeof temp, temp)) + "OrbexFiles" +
                std::to_string(std::random_device{}());
        EXPECT_TRUE(std::filesystem::create_directory(path_)) << path_;
    }
    ~TempTree() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    // The full path of a name inside the tree; "" gives the tree itself.
    std::string Path(const std::string& name = "") const { return name.empty() ? path_ : path_ + "\\" + name; }
    String operator[](const std::string& name) const { return Wide(Path(name)); }

    void Folder(const std::string& name) const { std::filesystem::create_directories(Path(name)); }
    String File(const std::string& name, const std::string& content) const {
        std::ofstream(Path(name), std::ios::binary) << content;
        return (*this)[name];
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

private:
    std::string path_;
};

// One entry of a folder listing as the platform's search hands it out.
struct Entry { std::string name; Dword attributes, sizeLow, sizeHigh = 0; };

// While alive, every folder search answers from `listings`, keyed by the search pattern; a
// pattern that is not there finds nothing. Searches may be open inside one another.
class FakeFolders {
public:
    using Listings = std::map<std::string, std::vector<Entry>>;

    explicit FakeFolders(Listings listings)
        : listings_(std::move(listings)),
          first_{[this](const char* pattern, platform::Win32FindData* data) -> platform::Handle {
              patterns.emplace_back(pattern);
              const auto found = listings_.find(pattern);
              if (found == listings_.end()) return platform::InvalidHandle;
              searches_.push_back({&found->second, 0});
              Fill(found->second.at(0), data);
              return static_cast<platform::Handle>(searches_.size());
          }},
          next_{[this](platform::Handle search, platform::Win32FindData* data) -> platform::Bool {
              auto& [listing, at] = searches_.at(static_cast<std::size_t>(search) - 1);
              if (++at >= listing->size()) return 0;
              Fill((*listing)[at], data);
              return 1;
          }},
          close_{[this](platform::Handle) -> platform::Bool { return ++closed, 1; }} {}

    std::vector<std::string> patterns;
    int closed = 0;

private:
    static void Fill(const Entry& entry, platform::Win32FindData* data) {
        std::memset(data, 0, sizeof *data);
        data->dwFileAttributes = entry.attributes;
        data->nFileSizeLow = entry.sizeLow;
        data->nFileSizeHigh = entry.sizeHigh;
        std::strncpy(data->cFileName, entry.name.c_str(), sizeof data->cFileName - 1);
    }

    Listings listings_;
    std::vector<std::pair<const std::vector<Entry>*, std::size_t>> searches_;
    platform::testing::Replace<&platform::Api::FindFirstFileA> first_;
    platform::testing::Replace<&platform::Api::FindNextFileA> next_;
    platform::testing::Replace<&platform::Api::FindClose> close_;
};

// The whole number of bytes a Currency size holds; a fraction fails the test.
inline std::int64_t Bytes(Currency size) {
    EXPECT_EQ(size.scaled % 10000, 0);
    return size.scaled / 10000;
}

// The error a call raises; a call that raises nothing gives an error of number 0.
template <class Call>
RaisedError Caught(Call&& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return error;
    }
    return RaisedError{};
}

}  // namespace orbex::testing
