// GetFolderSize over a two-level tree of 20,000 small files in 500 folders, against a plain
// FindFirstFileA walk that makes the same search calls.
#include "Bench.h"
#include "Orbex_h.h"

#include <memory>

namespace bench {
namespace {

// 20 folders of 24 sub-folders each: 500 folders. Files: 20 at the top, 39 in each folder and
// 40 in each sub-folder, 20,000 in all.
constexpr int Folders = 20, SubFolders = 24;
constexpr int TopFiles = 20, FolderFiles = 39, SubFolderFiles = 40;
constexpr long long FileCount = TopFiles + Folders * (FolderFiles + SubFolders * SubFolderFiles);
static_assert(FileCount == 20000);

void MakeFolder(const std::string& folder) {
    Check(CreateDirectoryA(folder.c_str(), nullptr), "creating " + folder);
}

// Writes `count` files of 1 to 61 bytes into `folder` and adds their lengths to `total`.
void MakeFiles(const std::string& folder, int count, int& serial, long long& total) {
    static const char text[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int i = 0; i < count; ++i, ++serial) {
        const DWORD length = 1 + static_cast<DWORD>(serial * 37 % 61);
        char name[16];
        wsprintfA(name, "\\f%05d.txt", serial);
        const HANDLE file = CreateFileA((folder + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        Check(file != INVALID_HANDLE_VALUE, "creating a file in " + folder);
        DWORD written = 0;
        const BOOL ok = WriteFile(file, text, length, &written, nullptr);
        CloseHandle(file);
        Check(ok && written == length, "writing a file in " + folder);
        total += length;
    }
}

// Removes a folder and everything in it; the names are gathered before anything is deleted.
void RemoveTree(const std::string& folder) {
    std::vector<std::pair<std::string, bool>> entries;
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA((folder + "\\*.*").c_str(), &data);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            const std::string name = data.cFileName;
            if (name != "." && name != "..")
                entries.emplace_back(folder + "\\" + name, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
        } while (FindNextFileA(search, &data));
        FindClose(search);
    }
    for (const auto& [path, isFolder] : entries) {
        if (isFolder) RemoveTree(path);
        else DeleteFileA(path.c_str());
    }
    RemoveDirectoryA(folder.c_str());
}

// The floor's walk: the same pattern per folder as GetFolderSize ("folder\*.*"), every name
// that begins with a dot passed over as it does, nothing asked of the platform per entry.
void AddSizes(const std::string& folder, unsigned long long& total) {
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA((folder + "*.*").c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        if (data.cFileName[0] == '.') continue;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            AddSizes(folder + data.cFileName + "\\", total);
        } else {
            total += (static_cast<unsigned long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
        }
    } while (FindNextFileA(search, &data));
    FindClose(search);
}

struct State {
    std::string folder;  // with its final backslash, as GetFolderSize is given it
    long long bytes = 0;
    BSTR folderText = nullptr;
    Ref<IDispatch> dispatch;
    Ref<_FileLib> lib;
    DISPID getFolderSize = DISPID_UNKNOWN;
    ~State() { SysFreeString(folderText); }
};

void CheckSize(const CY& size, const State& state, const char* who) {
    if (size.int64 != state.bytes * 10000) Fail(std::string(who) + ": GetFolderSize gave a wrong total");
}

}  // namespace

void AddFolderSizeCases(Suite& suite) {
    auto state = std::make_shared<State>();
    const std::string root = suite.dataFolder + "\\folder-size";
    suite.cleanups.push_back([root] { RemoveTree(root); });

    MakeFolder(root);
    int serial = 0;
    MakeFiles(root, TopFiles, serial, state->bytes);
    for (int f = 0; f < Folders; ++f) {
        const std::string folder = root + "\\d" + std::to_string(f);
        MakeFolder(folder);
        MakeFiles(folder, FolderFiles, serial, state->bytes);
        for (int s = 0; s < SubFolders; ++s) {
            const std::string sub = folder + "\\s" + std::to_string(s);
            MakeFolder(sub);
            MakeFiles(sub, SubFolderFiles, serial, state->bytes);
        }
    }
    Check(serial == FileCount, "the folder-size tree's file count");

    state->folder = root + "\\";
    state->folderText = SysAllocStringLen(nullptr, static_cast<UINT>(state->folder.size()));
    MultiByteToWideChar(CP_ACP, 0, state->folder.c_str(), -1, state->folderText,
                        static_cast<int>(state->folder.size()) + 1);
    state->dispatch = Ref<IDispatch>(CreateByProgId(L"Orbex.FileLib"));
    CheckHr(state->dispatch->QueryInterface(IID__FileLib, reinterpret_cast<void**>(state->lib.put())),
            "QueryInterface(_FileLib)");
    state->getFolderSize = DispatchId(state->dispatch.get(), L"GetFolderSize");

    Case c{"GetFolderSize, 20,000 files in 500 folders", {}, {}};
    c.contenders.push_back({"floor: FindFirstFileA walk", [state] {
        unsigned long long total = 0;
        AddSizes(state->folder, total);
        Check(total == static_cast<unsigned long long>(state->bytes), "floor: a wrong total");
    }});
    c.contenders.push_back({"Orbex vtable", [state] {
        CY size{};
        CheckHr(state->lib->GetFolderSize(state->folderText, VARIANT_TRUE, &size), "GetFolderSize");
        CheckSize(size, *state, "vtable");
    }});
    c.contenders.push_back({"Orbex IDispatch", [state] {
        VARIANT args[2];  // in reverse order: IncludeSubfolders, Folder
        args[0].vt = VT_BOOL;
        args[0].boolVal = VARIANT_TRUE;
        args[1].vt = VT_BSTR;
        args[1].bstrVal = state->folderText;
        DISPPARAMS params{args, nullptr, 2, 0};
        Variant result;
        CheckHr(state->dispatch->Invoke(state->getFolderSize, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                        &params, &result, nullptr, nullptr),
                "Invoke(GetFolderSize)");
        Check(result.vt == VT_CY, "IDispatch: GetFolderSize's result is no Currency");
        CheckSize(result.cyVal, *state, "IDispatch");
    }});
    // Checked under Wine 8.0: scrrun's Folder.Size is a stub that answers E_NOTIMPL.
    c.note = "Wine's Scripting.FileSystemObject has no Folder.Size, so it has no peer here.";
    suite.cases.push_back(std::move(c));
}

}  // namespace bench
