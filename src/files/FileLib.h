// Paths taken apart, files, folders and drives tested, folders made, removed, found and added
// up, drives listed, byte counts written for people, and the standard file and folder dialogs.
// FileLib keeps nothing between calls: every member works from its arguments and the platform.
#pragma once
#include "frame/Types.h"

#include <memory>

namespace orbex {

class FileInfo;
class DiskInfo;

// The platform's folder numbers, but for vqSFTemp, which selects the temporary folder.
enum vqSpecialFolder : Long {
    vqSFAdminTools = 48,
    vqSFAltStartup = 29,
    vqSFAppData = 26,
    vqSFCDBurnArea = 59,
    vqSFCommonAdminTools = 47,
    vqSFCommonAltStartup = 30,
    vqSFCommonAppData = 35,
    vqSFCommonDesktopDirectory = 25,
    vqSFCommonDocuments = 46,
    vqSFCommonFavorites = 31,
    vqSFCommonMusic = 53,
    vqSFCommonOEMLinks = 58,
    vqSFCommonPictures = 54,
    vqSFCommonPrograms = 23,
    vqSFCommonStartMenu = 22,
    vqSFCommonStartup = 24,
    vqSFCommonTemplates = 45,
    vqSFCommonVideo = 55,
    vqSFControlPanel = 3,
    vqSFCookies = 33,
    vqSFDesktop = 0,
    vqSFDesktopDirectory = 16,
    vqSFFavorites = 6,
    vqSFFonts = 20,
    vqSFHistory = 34,
    vqSFInternet = 1,
    vqSFInternetCache = 32,
    vqSFLocalAppData = 28,
    vqSFMyMusic = 13,
    vqSFMyPictures = 39,
    vqSFMyVideo = 14,
    vqSFNetHood = 19,
    vqSFPersonal = 5,
    vqSFPrinters = 4,
    vqSFPrintHood = 27,
    vqSFProfile = 40,
    vqSFProgramFiles = 38,
    vqSFProgramFilesCommon = 43,
    vqSFProgramFilesCommon_x86 = 44,
    vqSFProgramFiles_x86 = 42,
    vqSFPrograms = 2,
    vqSFRecent = 8,
    vqSFResources = 56,
    vqSFResourcesLocalized = 57,
    vqSFSendTo = 9,
    vqSFStartMenu = 11,
    vqSFStartup = 7,
    vqSFSystem = 37,
    vqSFSystem_x86 = 41,
    vqSFTemplates = 21,
    vqSFTemp = -1,
    vqSFWindows = 36,
};

// The platform's OFN flags, passed through unchanged; two of them read negative here.
enum vqFileDialogFlags : Long {
    vqFDAllowMultiSelect = 512,
    vqFDCreatePrompt = 8192,
    vqFDEnableHook = 32,
    vqFDDontAddToRecent = -33554432,
    vqFDEnableIncludeNotify = 4194304,
    vqFDEnableSizing = 8388608,
    vqFDEnableTemplate = 64,
    vqFDEnableTemplateHandle = 128,
    vqFDExplorer = 524288,
    vqFDExtensionDifferent = 1024,
    vqFDFileMustExist = 4096,
    vqFDForceShowHidden = 268435456,
    vqFDHideReadOnly = 4,
    vqFDLongName = 2097152,
    vqFDNoChangeDir = 8,
    vqFDNoDereferenceLinks = 1048576,
    vqFDNoLongNames = 262144,
    vqFDNoNetworkButton = 131072,
    vqFDNoReadOnlyReturn = -32768,
    vqFDNoTestFileCreate = 65536,
    vqFDNoValidate = 256,
    vqFDOverwritePrompt = 2,
    vqFDPathMustExist = 2048,
    vqFDReadOnly = 1,
    vqFDShareAware = 16384,
    vqFDShowHelp = 16,
};

// The platform's BIF flags.
enum vqFolderDialogFlags : Long {
    vqFDNoFlag = 0,
    vqFDBrowseForComputer = 4096,
    vqFDBrowseForPrinter = 8192,
    vqFDBrowseIncludeFiles = 16384,
    vqFDBrowseIncludeURLs = 128,
    vqFDDontGoBelowDomain = 2,
    vqFDEditBox = 16,
    vqFDNewDialogStyle = 64,
    vqFDNoNewFolderButton = 512,
    vqFDReturnFSAncestors = 8,
    vqFDReturnOnlyFSDirs = 1,
    vqFDShareable = -32768,
    vqFDUAHint = 256,
    vqFDUseNewUI = 80,
};

class FileLib {
public:
    // A new object at every call, loaded from the name or root given.
    std::unique_ptr<orbex::FileInfo> FileInfo(const String& filename) const;
    std::unique_ptr<orbex::DiskInfo> DiskInfo(const String& rootName) const;

    // The roots of all drives, C:\ style, lower bound 0. Raises the platform's code when the
    // list can't be read.
    StringArray DriveList() const;
    // The optical drives among them; an empty array (upper bound -1) when there are none.
    StringArray CDROMList() const;

    String CurrentFolder() const;                // "" when the platform can't tell
    void CurrentFolder(const String& folder);    // raises the platform's code on failure

    // Makes every missing level; True when the last level made succeeded. Raises 5 for a path
    // without a root.
    Boolean CreateFolder(const String& newFolder, const String& templateFolder = String()) const;
    Boolean DeleteFolder(const String& folder) const;  // only an empty folder goes

    // Pure text: nothing is looked up on disk, only the backslash separates levels.
    String ParseFilenameRoot(StringView filename) const;
    String ParseFilenamePath(StringView filename) const;
    String ParseFilename(StringView filename) const;
    String ParseFilenameExt(StringView filename) const;

    // These four ask the platform and never raise.
    Boolean FileExists(const String& filename) const;
    Boolean FolderExists(const String& folder) const;
    Boolean DriveExists(const String& drive) const;
    Boolean DriveReady(const String& drive) const;

    // Bytes to "1.50 KB" and the like, in the user's number format. Raises 5 for negative places.
    String FormatSize(Currency bytes, Integer decimalPlaces = 2) const;

    String GetSpecialFolder(vqSpecialFolder specialFolder, Boolean createIfNotExists = False) const;
    // The sum of the files' low size words; names beginning with a dot are passed over.
    Currency GetFolderSize(const String& folder, Boolean includeSubfolders = True) const;

    // The chosen path, or "" on cancel. A multiple selection comes back as the folder and the
    // names, NUL-separated.
    String FileOpenDialog(Long hWnd = 0, const String& title = String(), const String& initDir = String(),
                          const String& filter = String(),
                          vqFileDialogFlags flags = static_cast<vqFileDialogFlags>(4100)) const;
    String FileSaveDialog(Long hWnd = 0, const String& title = String(), const String& initDir = String(),
                          const String& filter = String(), const String& defaultExt = String(),
                          vqFileDialogFlags flags = static_cast<vqFileDialogFlags>(8198)) const;
    String FolderDialog(Long hWnd = 0, const String& title = String(),
                        vqSpecialFolder rootFolder = vqSFProgramFiles,
                        vqFolderDialogFlags flags = vqFDNoFlag) const;

private:
    Boolean MakeFolder(const String& path, const String& templateFolder) const;
};

}  // namespace orbex
