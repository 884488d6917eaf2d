// A fresh folder under the platform's temporary folder for each test, removed with its files
// at the end. Files are written and read here directly, bypassing the library.
#pragma once
#include "frame/Types.h"
#include "platform/Api.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace orbex {

// Lists print their lower bound and items when a comparison fails.
inline void PrintTo(const StringArray& array, std::ostream* out) {
    *out << "(" << array.lower << ")";
    for (const String& item : array.items) *out << " " << ::testing::PrintToString(item);
}

namespace testing {

class TempFolder {
public:
    TempFolder() {
        char temp[261] = {};
        const platform::Dword length = platform::realApi().GetTempPathA(sizeof temp, temp);
        path_ = std::string(temp, length) + "OrbexIni" + std::to_string(std::random_device{}());
        EXPECT_TRUE(std::filesystem::create_directory(path_)) << path_;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    String File(const std::string& name) const {
        const std::string full = path_ + "\\" + name;
        return String(full.begin(), full.end());
    }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(path_ + "\\" + name, std::ios::binary) << content;
    }
    // The file's bytes, "(none)" when there is no file.
    std::string Read(const std::string& name) const {
        std::ifstream in(path_ + "\\" + name, std::ios::binary);
        if (!in) return "(none)";
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::string path_;
};

}  // namespace testing
}  // namespace orbex
