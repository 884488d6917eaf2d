// INI files through the platform's private-profile functions: single values and whole
// sections. Each call chooses its file, goes to the platform once and returns; nothing is kept
// open or cached, and the INI text format is entirely the platform's business.
#pragma once
#include "frame/Types.h"
#include "frame/Variant.h"

namespace orbex {

class INILib {
public:
    static constexpr Long StartBufferSize = 32767;

    // The file of every call whose INIFile is "". Stored as given, never checked.
    const String& Filename() const { return filename_; }
    void Filename(const String& filename) { filename_ = filename; }

    // Characters of the receiving buffer of the three list members. Stored as given; a
    // negative size fails only when a list member runs.
    Long BufferSize() const { return bufferSize_; }
    void BufferSize(Long size) { bufferSize_ = size; }

    // The key's number, or Default when it isn't there. -1 can't be answered: it fails.
    Long GetNumericValue(const String& Section, const String& Key, Long Default = 0,
                         const String& INIFile = L"");

    // The key's text, at most 254 characters, or Default when it isn't there. Default comes
    // back as the platform saw it, after the round trip through the ANSI code page.
    String GetStringValue(const String& Section, const String& Key, String& Default,
                          const String& INIFile = L"");

    // Stores the Automation text form of Value; Null (94) and values without a text form (13)
    // fail before the file is touched.
    void WriteValue(const String& Section, const String& Key, const Variant& Value,
                    const String& INIFile = L"");

    // Removes the key; whatever the platform answers, nothing is reported.
    void DeleteKey(const String& Section, const String& Key, const String& INIFile = L"");

    // Lists with lower bound 0; nothing to list gives upper bound -1. A list that doesn't fit
    // BufferSize arrives cut, without any sign.
    NulSeparatedList GetSectionNames(const String& INIFile = L"");
    NulSeparatedList GetSectionKeys(const String& Section, const String& INIFile = L"");
    NulSeparatedList GetSection(const String& Section, const String& INIFile = L"");  // key=value lines

    // Replaces the whole section with the given lines, from lower to upper bound, unread.
    // Bounds and the loop counter are Integers (overflow 6 before anything is written).
    void WriteSection(const String& Section, const StringArray& KeyValuePairs,
                      const String& INIFile = L"");

    // Removes the section; whatever the platform answers, nothing is reported.
    void DeleteSection(const String& Section, const String& INIFile = L"");

private:
    // The file rule: INIFile unless it is exactly "", else Filename.
    const String& FileFor(const String& iniFile) const;

    String filename_;
    Long bufferSize_ = StartBufferSize;
};

}  // namespace orbex
