// FileLib as a C++ client meets it: drive lists as String() arrays from 0, folder sizes as
// Currency, default arguments filled by Invoke, and a platform code raised by CurrentFolder.
// The parsers are shown from VBScript (tests/scripts/files.vbs).
#include "ClientSupport.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace orbex::client {
namespace {

struct Roots {
    LONG lower = 0, upper = 0;
    std::vector<std::wstring> items;
};

Roots Take(SAFEARRAY* array) {
    Roots roots;
    VARTYPE type = VT_EMPTY;
    SafeArrayGetVartype(array, &type);
    EXPECT_EQ(type, VT_BSTR);
    EXPECT_EQ(SafeArrayGetDim(array), 1u);
    SafeArrayGetLBound(array, 1, &roots.lower);
    SafeArrayGetUBound(array, 1, &roots.upper);
    BSTR* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    for (LONG i = 0; i <= roots.upper - roots.lower; ++i) roots.items.push_back(Text(data[i]));
    SafeArrayUnaccessData(array);
    SafeArrayDestroy(array);
    return roots;
}

class FileLibClient : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(CoCreateInstance(CLSID_FileLib, nullptr, CLSCTX_INPROC_SERVER, IID__FileLib,
                                   reinterpret_cast<void**>(lib_.put())),
                  S_OK);
        folder_ = std::filesystem::temp_directory_path() /
                  ("OrbexFileLibClient" + std::to_string(GetCurrentProcessId()));
        std::filesystem::create_directories(folder_ / "sub");
        std::ofstream(folder_ / "a.bin", std::ios::binary) << std::string(100, 'x');
        std::ofstream(folder_ / "sub" / "b.bin", std::ios::binary) << std::string(23, 'x');
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    Ref<_FileLib> lib_;
    std::filesystem::path folder_;
};

TEST_F(FileLibClient, DriveListAndCDROMListAreStringArraysFromZero) {
    Variant late;
    ASSERT_EQ(Call(lib_.get(), L"DriveList", DISPATCH_PROPERTYGET, {}, &late), S_OK);
    ASSERT_EQ(late.vt, VT_ARRAY | VT_BSTR);
    const Roots drives = Take(late.parray);
    late.vt = VT_EMPTY;  // taken
    EXPECT_EQ(drives.lower, 0);
    EXPECT_NE(std::find(drives.items.begin(), drives.items.end(), L"C:\\"), drives.items.end());

    // Wine has no optical drive: the empty array runs from 0 to -1.
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(lib_->get_CDROMList(&array), S_OK);
    const Roots optical = Take(array);
    EXPECT_EQ(optical.lower, 0);
    EXPECT_EQ(optical.upper, -1);
}

TEST_F(FileLibClient, GetFolderSizeIsCurrency) {
    BSTR folder = SysAllocString(folder_.c_str());
    CY size{};
    ASSERT_EQ(lib_->GetFolderSize(folder, VARIANT_FALSE, &size), S_OK);
    SysFreeString(folder);
    EXPECT_EQ(size.int64, 100 * 10000);

    // Through IDispatch, IncludeSubfolders left out counts the sub-folder too.
    Variant late;
    ASSERT_EQ(Call(lib_.get(), L"GetFolderSize", DISPATCH_METHOD, {Bstr(folder_.c_str())}, &late), S_OK);
    ASSERT_EQ(late.vt, VT_CY);
    EXPECT_EQ(late.cyVal.int64, 123 * 10000);
}

TEST_F(FileLibClient, SettingAMissingCurrentFolderRaisesThePlatformCode) {
    EXCEPINFO exception{};
    Variant ignored;
    const std::wstring missing = (folder_ / "missing").wstring();
    VARIANT value = Bstr(missing.c_str());
    EXPECT_EQ(Call(lib_.get(), L"CurrentFolder", DISPATCH_PROPERTYPUT, {value}, &ignored, &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(static_cast<ULONG>(exception.scode), 0x800A0002u);  // file not found, under Wine
    EXPECT_EQ(Text(exception.bstrSource), L"Quillet:FileLib:CurrentFolder");
    EXPECT_EQ(Text(exception.bstrDescription), L"Could not set current folder.");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace
}  // namespace orbex::client
