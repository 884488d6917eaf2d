// FileLib as a C++ client meets it: drive lists as String() arrays from 0, folder sizes as
// Currency, default arguments filled by Invoke, and a platform code raised by CurrentFolder.
// The parsers are shown from VBScript (tests/scripts/files.vbs).
#include "ClientSupport.h"

#include <algorithm>
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
        wchar_t temp[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"OrbexFileLibClient" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        CreateDirectoryW((folder_ + L"\\sub").c_str(), nullptr);
        Write(L"\\a.bin", 100);
        Write(L"\\sub\\b.bin", 23);
    }
    void TearDown() override {
        DeleteFileW((folder_ + L"\\sub\\b.bin").c_str());
        DeleteFileW((folder_ + L"\\a.bin").c_str());
        RemoveDirectoryW((folder_ + L"\\sub").c_str());
        RemoveDirectoryW(folder_.c_str());
    }
    void Write(const std::wstring& name, std::size_t size) const {
        HANDLE file = CreateFileW((folder_ + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        const std::string bytes(size, 'x');
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(size), &written, nullptr);
        CloseHandle(file);
    }

    Ref<_FileLib> lib_;
    std::wstring folder_;
};

TEST_F(FileLibClient, DriveListAndCDROMListAreStringArraysFromZero) {
    SAFEARRAY* array = nullptr;
    ASSERT_EQ(lib_->get_DriveList(&array), S_OK);
    const Roots drives = Take(array);
    EXPECT_EQ(drives.lower, 0);
    EXPECT_EQ(drives.upper, static_cast<LONG>(drives.items.size()) - 1);
    EXPECT_NE(std::find(drives.items.begin(), drives.items.end(), L"C:\\"), drives.items.end());

    // Wine has no optical drive: the empty array runs from 0 to -1.
    ASSERT_EQ(lib_->get_CDROMList(&array), S_OK);
    const Roots optical = Take(array);
    EXPECT_EQ(optical.lower, 0);
    EXPECT_EQ(optical.upper, -1);

    Variant late;
    ASSERT_EQ(Call(lib_.get(), L"DriveList", DISPATCH_PROPERTYGET, {}, &late), S_OK);
    ASSERT_EQ(late.vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(Take(late.parray).items, drives.items);
    late.vt = VT_EMPTY;  // taken
}

TEST_F(FileLibClient, GetFolderSizeIsCurrency) {
    BSTR folder = SysAllocString(folder_.c_str());
    CY size{};
    ASSERT_EQ(lib_->GetFolderSize(folder, VARIANT_FALSE, &size), S_OK);
    EXPECT_EQ(size.int64, 100 * 10000);
    ASSERT_EQ(lib_->GetFolderSize(folder, VARIANT_TRUE, &size), S_OK);
    EXPECT_EQ(size.int64, 123 * 10000);
    SysFreeString(folder);

    // Through IDispatch, IncludeSubfolders left out counts the sub-folder too.
    Variant late;
    ASSERT_EQ(Call(lib_.get(), L"GetFolderSize", DISPATCH_METHOD, {Bstr(folder_.c_str())}, &late), S_OK);
    ASSERT_EQ(late.vt, VT_CY);
    EXPECT_EQ(late.cyVal.int64, 123 * 10000);

    Variant text;
    CY bytes{};
    bytes.int64 = 1536LL * 10000;
    VARIANT amount;
    VariantInit(&amount);
    amount.vt = VT_CY;
    amount.cyVal = bytes;
    ASSERT_EQ(Call(lib_.get(), L"FormatSize", DISPATCH_METHOD, {amount}, &text), S_OK);
    ASSERT_EQ(text.vt, VT_BSTR);
    EXPECT_EQ(Text(text.bstrVal), L"1.50 KB");
}

TEST_F(FileLibClient, SettingAMissingCurrentFolderRaisesThePlatformCode) {
    EXCEPINFO exception{};
    Variant ignored;
    const std::wstring missing = folder_ + L"\\missing";
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
