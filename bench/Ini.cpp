// INILib's GetSection and GetSectionKeys on a section of 5,000 lines, against the private-profile
// call each of them makes, with the same buffer size.
#include "Bench.h"
#include "Orbex_h.h"

#include <cstring>
#include <memory>
#include <string_view>

namespace bench {
namespace {

constexpr int Lines = 5000;
using ListMember = HRESULT (STDMETHODCALLTYPE _INILib::*)(BSTR, BSTR, SAFEARRAY**);

// ASCII only, as every text here is.
std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

BSTR NewBstr(const std::string& text) {
    const std::wstring wide = Wide(text);
    return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

// The file and what its big section must read as, shared by both cases.
struct Data {
    std::string file;
    std::vector<std::string> lines, keys;
    BSTR fileText = nullptr;
    BSTR sectionText = NewBstr("big");
    ~Data() {
        SysFreeString(fileText);
        SysFreeString(sectionText);
    }
};

// A list as the platform writes it: `written` characters, every item ended by a NUL.
std::vector<std::string> SplitList(const std::string& buffer, DWORD written) {
    std::vector<std::string> items;
    const char* at = buffer.data();
    const char* const end = at + written;
    while (at < end) {
        const void* nul = std::memchr(at, '\0', static_cast<size_t>(end - at));
        const char* stop = nul ? static_cast<const char*>(nul) : end;
        items.emplace_back(at, stop);
        at = stop + 1;
    }
    return items;
}

// The whole count, and the first and last items whole: a cut list or the wrong section fails.
void CheckStrings(const std::vector<std::string>& got, const std::vector<std::string>& expected) {
    Check(got.size() == expected.size() && got.front() == expected.front() && got.back() == expected.back(),
          "floor: a wrong list");
}

void CheckArray(SAFEARRAY* array, const std::vector<std::string>& expected, const char* who) {
    Check(ArrayCount(array) == static_cast<long>(expected.size()), std::string(who) + ": a wrong count");
    BSTR* items = nullptr;
    CheckHr(SafeArrayAccessData(array, reinterpret_cast<void**>(&items)), "SafeArrayAccessData");
    const auto same = [](BSTR item, const std::string& text) {
        return std::wstring_view(item, SysStringLen(item)) == Wide(text);
    };
    const bool ok = same(items[0], expected.front()) && same(items[expected.size() - 1], expected.back());
    SafeArrayUnaccessData(array);
    Check(ok, std::string(who) + ": a wrong list");
}

// One case: the floor's call, then the member through the vtable and through IDispatch, on one
// INILib whose BufferSize holds the whole list (Wine wants one character spare beyond it).
void AddListCase(Suite& suite, const std::shared_ptr<Data>& data, const char* name, const char* floorName,
                 const wchar_t* member, ListMember method, DWORD (*read)(const Data&, char*, DWORD),
                 std::vector<std::string> Data::*list) {
    const std::vector<std::string>& expected = (*data).*list;  // lives as long as `data`
    LONG size = 2;
    for (const std::string& item : expected) size += static_cast<LONG>(item.size()) + 1;

    IDispatch* dispatch = CreateByProgId(L"Orbex.INILib");
    auto lib = std::make_shared<Ref<_INILib>>();
    const HRESULT hr = dispatch->QueryInterface(IID__INILib, reinterpret_cast<void**>(lib->put()));
    dispatch->Release();
    CheckHr(hr, "QueryInterface(_INILib)");
    CheckHr((*lib)->put_BufferSize(&size), "BufferSize");
    const DISPID id = DispatchId(lib->get(), member);

    Case c{name, {}, "Wine offers no INI peer (no scripting object reads INI files)."};
    c.contenders.push_back({floorName, [data, read, size, &expected] {
        std::string buffer(static_cast<size_t>(size), ' ');
        CheckStrings(SplitList(buffer, read(*data, buffer.data(), static_cast<DWORD>(size))), expected);
    }});
    c.contenders.front().run();  // untimed: Wine parses the file once and caches it, so no round pays that
    c.contenders.push_back({"Orbex vtable", [data, lib, method, &expected] {
        SAFEARRAY* array = nullptr;
        CheckHr(((*lib).get()->*method)(data->sectionText, data->fileText, &array), "vtable call");
        CheckArray(array, expected, "vtable");
        SafeArrayDestroy(array);
    }});
    c.contenders.push_back({"Orbex IDispatch", [data, lib, id, &expected] {
        VARIANT args[2];  // in reverse order: INIFile, Section
        args[0].vt = args[1].vt = VT_BSTR;
        args[0].bstrVal = data->fileText;
        args[1].bstrVal = data->sectionText;
        DISPPARAMS params{args, nullptr, 2, 0};
        Variant result;
        CheckHr((*lib)->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr,
                               nullptr),
                "Invoke");
        Check(result.vt == (VT_ARRAY | VT_BSTR), "IDispatch: the result is no String array");
        CheckArray(result.parray, expected, "IDispatch");
    }});
    suite.cases.push_back(std::move(c));
}

}  // namespace

void AddIniCases(Suite& suite) {
    auto data = std::make_shared<Data>();
    const std::string folder = suite.dataFolder + "\\ini";
    data->file = folder + "\\bench.ini";
    data->fileText = NewBstr(data->file);
    suite.cleanups.push_back([folder, file = data->file] {
        DeleteFileA(file.c_str());
        RemoveDirectoryA(folder.c_str());
    });

    // A small section first, then 5,000 lines whose values run from 2 to 44 characters.
    std::string text = "[small]\r\nalpha=1\r\nbeta=two\r\ngamma=three\r\n\r\n[big]\r\n";
    for (int i = 1; i <= Lines; ++i) {
        char key[8];
        wsprintfA(key, "key%04d", i);
        const std::string line = key + ("=v" + std::to_string(i)) + std::string(i * 29 % 40, 'a' + i % 26);
        data->keys.push_back(key);
        data->lines.push_back(line);
        text += line + "\r\n";
    }
    Check(CreateDirectoryA(folder.c_str(), nullptr), "creating " + folder);
    const HANDLE file = CreateFileA(data->file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    Check(file != INVALID_HANDLE_VALUE, "creating " + data->file);
    DWORD written = 0;
    const BOOL ok = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    Check(ok && written == text.size(), "writing " + data->file);

    AddListCase(suite, data, "GetSection, 5,000 lines", "floor: GetPrivateProfileSectionA", L"GetSection",
                &_INILib::GetSection,
                [](const Data& d, char* buffer, DWORD size) {
                    return GetPrivateProfileSectionA("big", buffer, size, d.file.c_str());
                },
                &Data::lines);
    AddListCase(suite, data, "GetSectionKeys, 5,000 keys", "floor: GetPrivateProfileStringA", L"GetSectionKeys",
                &_INILib::GetSectionKeys,
                [](const Data& d, char* buffer, DWORD size) {
                    return GetPrivateProfileStringA("big", nullptr, "", buffer, size, d.file.c_str());
                },
                &Data::keys);
}

}  // namespace bench
