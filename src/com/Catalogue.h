// The one table of the library's classes, from which the class factory, registration and the
// tests all read: name, object index, identifiers, and whether a client may create it.
#pragma once
#include <windows.h>

#include <span>

namespace orbex::com {

using Creator = HRESULT (*)(REFIID riid, void** object);

struct ClassEntry {
    const wchar_t* name;
    int objectIndex;
    const CLSID& classId;
    const IID& interfaceId;
    Creator create;  // nullptr for the class a client may not create
};

struct LibraryEntry {
    const wchar_t* name;
    const wchar_t* helpString;
    const GUID& libraryId;
    LCID locale;
    WORD majorVersion;
    WORD minorVersion;
};

const LibraryEntry& Library();

// In registration order: the reverse of the object index, SystemLib first.
std::span<const ClassEntry> Classes();

}  // namespace orbex::com
