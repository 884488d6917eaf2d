// FileInfo and DiskInfo as a C++ client meets them: sizes as Currency holding whole bytes, dates
// as local wall-clock DATEs to the second, version numbers as short, the caller's root text left
// alone, and the volume rename's failure with its Source.
#include "ClientSupport.h"

#include <string>

namespace orbex::client {
namespace {

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }
const std::wstring Module = [] { const std::string path = ORBEX_DLL_PATH; return std::wstring(path.begin(), path.end()); }();

void Get(IDispatch* object, const wchar_t* name, Variant& result) {
    ASSERT_EQ(Call(object, name, DISPATCH_PROPERTYGET, {}, &result), S_OK) << Narrow(name);
}

// The last write time of a file as the platform reports it, local, the milliseconds dropped.
DATE LastWrite(const std::string& path) {
    WIN32_FIND_DATAA data{};
    const HANDLE search = FindFirstFileA(path.c_str(), &data);
    EXPECT_NE(search, INVALID_HANDLE_VALUE);
    FindClose(search);
    FILETIME local{};
    SYSTEMTIME system{};
    FileTimeToLocalFileTime(&data.ftLastWriteTime, &local);
    FileTimeToSystemTime(&local, &system);
    system.wMilliseconds = 0;
    DATE date = 0;
    SystemTimeToVariantTime(&system, &date);
    return date;
}

TEST(FileInfoClient, SizeDatesAndVersionOfTheModule) {
    Ref<_FileInfo> info;
    ASSERT_EQ(CoCreateInstance(CLSID_FileInfo, nullptr, CLSCTX_INPROC_SERVER, IID__FileInfo,
                               reinterpret_cast<void**>(info.put())), S_OK);
    BSTR name = SysAllocString(Module.c_str());
    ASSERT_EQ(info->put_Filename(name), S_OK);
    SysFreeString(name);

    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExA(ORBEX_DLL_PATH, GetFileExInfoStandard, &data));
    CURRENCY size{};
    ASSERT_EQ(info->get_Size(&size), S_OK);
    EXPECT_EQ(size.int64, static_cast<LONGLONG>(data.nFileSizeLow) * 10000);  // the value is the byte count
    DATE written = 0;
    ASSERT_EQ(info->get_LastWriteDate(&written), S_OK);
    EXPECT_NEAR(written, LastWrite(ORBEX_DLL_PATH), 1e-8);
    vqFileType type = vqFTUnknown;
    ASSERT_EQ(info->get_FileType(&type), S_OK);
    EXPECT_EQ(type, vqFTDisk);
    short major = 0;
    ASSERT_EQ(info->get_MajorVersion(&major), S_OK);
    EXPECT_EQ(major, 1);

    Ref<IDispatch> late;
    ASSERT_EQ(info->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(late.put())), S_OK);
    Variant value;
    Get(late.get(), L"Size", value);
    EXPECT_EQ(V_VT(&value), VT_CY);
    EXPECT_EQ(V_CY(&value).int64, size.int64);
    Variant date;
    Get(late.get(), L"LastWriteDate", date);
    EXPECT_EQ(V_VT(&date), VT_DATE);
    EXPECT_EQ(V_DATE(&date), written);
    Variant build;
    Get(late.get(), L"BuildVersion", build);
    EXPECT_EQ(V_VT(&build), VT_I2);
    EXPECT_EQ(V_I2(&build), 0);
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
    Variant bytes, used, type;
    Get(disk.get(), L"TotalBytes", bytes);
    EXPECT_EQ(V_VT(&bytes), VT_CY);
    EXPECT_EQ(V_CY(&bytes).int64, static_cast<LONGLONG>(total.QuadPart) * 10000);
    Get(disk.get(), L"TotalBytesUsed", used);
    EXPECT_EQ(V_CY(&used).int64 % 10000, 0);
    EXPECT_GT(V_CY(&used).int64, 0);
    Get(disk.get(), L"DriveType", type);
    EXPECT_EQ(V_I4(&type), vqDTFixed);
}

TEST(DiskInfoClient, RefusedRenameRaisesThePlatformCode) {
    Ref<IDispatch> disk = CreateByProgId(L"Orbex.DiskInfo");
    ASSERT_TRUE(disk.get());
    Variant root, ignored, result;
    V_VT(&root) = VT_BSTR, V_BSTR(&root) = SysAllocString(L"Q:\\");
    ASSERT_EQ(Call(disk.get(), L"RootName", DISPATCH_PROPERTYPUT, {ByRef(&root)}, &ignored), S_OK);
    EXCEPINFO exception{};
    EXPECT_EQ(Call(disk.get(), L"VolumeLabel", DISPATCH_PROPERTYPUT, {Bstr(L"NAME")}, &result, &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(static_cast<ULONG>(exception.scode) & 0xFFFF0000u, 0x800A0000u);
    EXPECT_NE(exception.scode & 0xFFFF, 0);
    EXPECT_EQ(Text(exception.bstrSource), L"Quillet:DiskInfo:VolumeLabel");
    EXPECT_EQ(Text(exception.bstrDescription), L"Could not set volume label.");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace
}  // namespace orbex::client
