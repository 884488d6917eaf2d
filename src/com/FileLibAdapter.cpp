// The FileLib adapter: converts arguments and results of FileLib's members, and wraps the
// FileInfo and DiskInfo objects it hands out.
#include "Adapters.h"
#include "DispatchObject.h"
#include "FilesAdapters.h"
#include "Orbex_h.h"
#include "Values.h"
#include "files/FileLib.h"

namespace orbex::com {
namespace {

class FileLibAdapter final : public DispatchObject<_FileLib, IID__FileLib> {
public:
    STDMETHODIMP get_FileInfo(BSTR filename, _FileInfo** result) override {
        return Out(result, [&] { return WrapFileInfo(lib_.FileInfo(ToString(filename))); });
    }
    STDMETHODIMP get_DiskInfo(BSTR rootName, _DiskInfo** result) override {
        return Out(result, [&] { return WrapDiskInfo(lib_.DiskInfo(ToString(rootName))); });
    }
    STDMETHODIMP get_DriveList(SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(lib_.DriveList()); });
    }
    STDMETHODIMP get_CDROMList(SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(lib_.CDROMList()); });
    }
    STDMETHODIMP get_CurrentFolder(BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.CurrentFolder()); });
    }
    STDMETHODIMP put_CurrentFolder(BSTR folder) override {
        return Guard([&] { lib_.CurrentFolder(ToString(folder)); });
    }
    STDMETHODIMP CreateFolder(BSTR newFolder, BSTR templateFolder, VARIANT_BOOL* result) override {
        return Out(result, [&] { return Flag(lib_.CreateFolder(ToString(newFolder), ToString(templateFolder))); });
    }
    STDMETHODIMP DeleteFolder(BSTR folder, VARIANT_BOOL* result) override {
        return Out(result, [&] { return Flag(lib_.DeleteFolder(ToString(folder))); });
    }
    STDMETHODIMP ParseFilenameRoot(BSTR filename, BSTR* result) override {
        return Text(&FileLib::ParseFilenameRoot, filename, result);
    }
    STDMETHODIMP ParseFilenamePath(BSTR filename, BSTR* result) override {
        return Text(&FileLib::ParseFilenamePath, filename, result);
    }
    STDMETHODIMP ParseFilename(BSTR filename, BSTR* result) override {
        return Text(&FileLib::ParseFilename, filename, result);
    }
    STDMETHODIMP ParseFilenameExt(BSTR filename, BSTR* result) override {
        return Text(&FileLib::ParseFilenameExt, filename, result);
    }
    STDMETHODIMP FileExists(BSTR filename, VARIANT_BOOL* result) override {
        return Test(&FileLib::FileExists, filename, result);
    }
    STDMETHODIMP FolderExists(BSTR folder, VARIANT_BOOL* result) override {
        return Test(&FileLib::FolderExists, folder, result);
    }
    STDMETHODIMP DriveExists(BSTR drive, VARIANT_BOOL* result) override {
        return Test(&FileLib::DriveExists, drive, result);
    }
    STDMETHODIMP DriveReady(BSTR drive, VARIANT_BOOL* result) override {
        return Test(&FileLib::DriveReady, drive, result);
    }
    STDMETHODIMP FormatSize(CURRENCY bytes, short decimalPlaces, BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.FormatSize(ToCurrency(bytes), decimalPlaces)); });
    }
    STDMETHODIMP GetSpecialFolder(::vqSpecialFolder folder, VARIANT_BOOL create, BSTR* result) override {
        return Out(result, [&] {
            return ToBstr(lib_.GetSpecialFolder(static_cast<orbex::vqSpecialFolder>(folder), create));
        });
    }
    STDMETHODIMP GetFolderSize(BSTR folder, VARIANT_BOOL includeSubfolders, CURRENCY* result) override {
        return Out(result, [&] { return ToCy(lib_.GetFolderSize(ToString(folder), includeSubfolders)); });
    }
    STDMETHODIMP FileOpenDialog(LONG hWnd, BSTR title, BSTR initDir, BSTR filter, ::vqFileDialogFlags flags,
                                BSTR* result) override {
        return Out(result, [&] {
            return ToBstr(lib_.FileOpenDialog(hWnd, ToString(title), ToString(initDir), ToString(filter),
                                              static_cast<orbex::vqFileDialogFlags>(flags)));
        });
    }
    STDMETHODIMP FileSaveDialog(LONG hWnd, BSTR title, BSTR initDir, BSTR filter, BSTR defaultExt,
                                ::vqFileDialogFlags flags, BSTR* result) override {
        return Out(result, [&] {
            return ToBstr(lib_.FileSaveDialog(hWnd, ToString(title), ToString(initDir), ToString(filter),
                                              ToString(defaultExt), static_cast<orbex::vqFileDialogFlags>(flags)));
        });
    }
    STDMETHODIMP FolderDialog(LONG hWnd, BSTR title, ::vqSpecialFolder rootFolder, ::vqFolderDialogFlags flags,
                              BSTR* result) override {
        return Out(result, [&] {
            return ToBstr(lib_.FolderDialog(hWnd, ToString(title), static_cast<orbex::vqSpecialFolder>(rootFolder),
                                            static_cast<orbex::vqFolderDialogFlags>(flags)));
        });
    }

private:
    using TextMember = String (FileLib::*)(StringView) const;
    using TestMember = Boolean (FileLib::*)(const String&) const;

    static VARIANT_BOOL Flag(Boolean value) { return static_cast<VARIANT_BOOL>(toBoolean(isTrue(value))); }

    HRESULT Text(TextMember member, BSTR argument, BSTR* result) noexcept {
        return Out(result, [&] { return ToBstr((lib_.*member)(ToView(argument))); });
    }
    HRESULT Test(TestMember member, BSTR argument, VARIANT_BOOL* result) noexcept {
        return Out(result, [&] { return Flag((lib_.*member)(ToString(argument))); });
    }

    FileLib lib_;
};

}  // namespace

HRESULT CreateFileLib(REFIID riid, void** object) { return CreateAdapter<FileLibAdapter>(riid, object); }

}  // namespace orbex::com
