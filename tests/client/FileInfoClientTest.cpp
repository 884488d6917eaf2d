// FileInfo and DiskInfo as a C++ client meets them: sizes as Currency holding whole bytes, dates
// as DATEs to the second, version numbers as short, and the caller's root text left alone. The
// volume rename's failure is shown from VBScript (tests/scripts/fileinfo.vbs).
#include "ClientSupport.h"

#include <cmath>
#include <string>

namespace orbex::client {
namespace {

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }
const std::wstring Module = [] { const std::string path = ORBEX_DLL_PATH; return std::wstring(path.begin(), path.end()); }();

void Get(IDispatch* object, const wchar_t* name, Variant& result) {
    ASSERT_EQ(Call(object, name, DISPATCH_PROPERTYGET, {}, &result), S_OK) << Narrow(name);
}

TEST(FileInfoClient, SizeDatesAndVersionOfTheModule) {
    Ref<IDispatch> info = CreateByProgId(L"Orbex.FileInfo");
    ASSERT_TRUE(info.get());
    Variant ignored;
    ASSERT_EQ(Call(info.get(), L"Filename", DISPATCH_PROPERTYPUT, {Bstr(Module.c_str())}, &ignored), S_OK);

    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExA(ORBEX_DLL_PATH, GetFileExInfoStandard, &data));
    Variant size, written, type, major;
    Get(info.get(), L"Size", size);
    EXPECT_EQ(V_VT(&size), VT_CY);
    EXPECT_EQ(V_CY(&size).int64, static_cast<LONGLONG>(data.nFileSizeLow) * 10000);  // the value is the byte count
    Get(info.get(), L"LastWriteDate", written);
    EXPECT_EQ(V_VT(&written), VT_DATE);
    EXPECT_GT(V_DATE(&written), 36526);  // after 2000
    EXPECT_NEAR(V_DATE(&written) * 86400, std::round(V_DATE(&written) * 86400), 1e-3);  // to the second
    Get(info.get(), L"FileType", type);
    EXPECT_EQ(V_VT(&type), VT_I4);
    EXPECT_EQ(V_I4(&type), vqFTDisk);
    Get(info.get(), L"MajorVersion", major);
    EXPECT_EQ(V_VT(&major), VT_I2);
    EXPECT_EQ(V_I2(&major), 1);
}

TEST(DiskInfoClient, RootTextStaysTheCallersAndSizesAreWholeBytes) {
    Ref<IDispatch> disk = CreateByProgId(L"Orbex.DiskInfo");
    ASSERT_TRUE(disk.get());
    Variant root;
    V_VT(&root) = VT_BSTR, V_BSTR(&root) = SysAllocString(L"C:\\windows\\system32");
    Variant ignored;
    ASSERT_EQ(Call(disk.get(), L"RootName", DISPATCH_PROPERTYPUT, {ByRef(&root)}, &ignored), S_OK);
    EXPECT_EQ(Text(V_BSTR(&root)), L"C:\\windows\\system32");
    Variant stored;
    Get(disk.get(), L"RootName", stored);
    EXPECT_EQ(Text(V_BSTR(&stored)), L"C:\\");

    ULARGE_INTEGER callerFree{}, total{}, totalFree{};
    ASSERT_TRUE(GetDiskFreeSpaceExA("C:\\", &callerFree, &total, &totalFree));
    Variant bytes;
    Get(disk.get(), L"TotalBytes", bytes);
    EXPECT_EQ(V_VT(&bytes), VT_CY);
    EXPECT_EQ(V_CY(&bytes).int64, static_cast<LONGLONG>(total.QuadPart) * 10000);
}

}  // namespace
}  // namespace orbex::client
