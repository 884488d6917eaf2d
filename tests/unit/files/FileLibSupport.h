// Test helpers for FileLib: a scratch tree of real folders and files under the temporary
// folder, made and removed directly, and listings that stand in for a folder search.
#pragma once
#include "frame/Types.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace orbex::testing {

class TempTree {
public:
    TempTree() {
        char temp[261] = {};
        const platform::Dword length = platform::realApi().GetTempPathA(sizeof temp, temp);
        path_ = std::string(temp, length) + "OrbexFileLib" + std::to_string(std::random_device{}());
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
    void File(const std::string& name, std::size_t size) const {
        std::ofstream(Path(name), std::ios::binary) << std::string(size, 'x');
    }
    bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }

    static String Wide(const std::string& text) { return String(text.begin(), text.end()); }

private:
    std::string path_;
};

// One entry of a folder listing as the platform's search hands it out.
struct Entry {
    std::string name;
    platform::Dword attributes;
    platform::Dword sizeLow;
    platform::Dword sizeHigh = 0;
};

// While alive, every folder search answers from `listings`, keyed by the search pattern; a
// pattern that is not there finds nothing.
class FakeFolders {
public:
    using Listings = std::vector<std::pair<std::string, std::vector<Entry>>>;

    explicit FakeFolders(Listings listings)
        : listings_(std::move(listings)),
          first_{[this](const char* pattern, platform::Win32FindData* data) -> platform::Handle {
              patterns.emplace_back(pattern);
              for (std::size_t i = 0; i < listings_.size(); ++i) {
                  if (listings_[i].first == pattern && !listings_[i].second.empty()) {
                      positions_.push_back({i, 0});
                      Fill(listings_[i].second[0], data);
                      return static_cast<platform::Handle>(positions_.size());
                  }
              }
              return platform::InvalidHandle;
          }},
          next_{[this](platform::Handle search, platform::Win32FindData* data) -> platform::Bool {
              auto& [listing, at] = positions_.at(static_cast<std::size_t>(search) - 1);
              if (++at >= listings_[listing].second.size()) return 0;
              Fill(listings_[listing].second[at], data);
              return 1;
          }},
          close_{[this](platform::Handle) -> platform::Bool {
              ++closed;
              return 1;
          }} {}

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
    std::vector<std::pair<std::size_t, std::size_t>> positions_;
    platform::testing::Replace<&platform::Api::FindFirstFileA> first_;
    platform::testing::Replace<&platform::Api::FindNextFileA> next_;
    platform::testing::Replace<&platform::Api::FindClose> close_;
};

}  // namespace orbex::testing
