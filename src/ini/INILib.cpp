// INILib's state, the file rule and the members that work on one value.
#include "INILib.h"

#include "ProfileText.h"

#include "frame/Ansi.h"
#include "frame/Convert.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

namespace orbex {
namespace {

constexpr Long PlatformFailed = -1;
constexpr Long StringBufferSize = 255;  // GetStringValue's own buffer; BufferSize plays no part

constexpr const wchar_t* ReadFailed = L"Error retrieving INI value.";

}  // namespace

const String& INILib::FileFor(const String& iniFile) const {
    return iniFile.empty() ? filename_ : iniFile;
}

Long INILib::GetNumericValue(const String& Section, const String& Key, Long Default,
                             const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    const Long result = static_cast<Long>(platform::api().GetPrivateProfileIntA(
        ToAnsi(Section).c_str(), ToAnsi(Key).c_str(), Default, file.c_str()));
    if (result == PlatformFailed) Raise(0, L"INILib:GetNumericValue", ReadFailed);
    return result;
}

String INILib::GetStringValue(const String& Section, const String& Key, String& Default,
                              const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    const std::string narrowDefault = ToAnsi(Default);
    std::string buffer = ini::Blanks(StringBufferSize);
    const Long copied = static_cast<Long>(platform::api().GetPrivateProfileStringA(
        ToAnsi(Section).c_str(), ToAnsi(Key).c_str(), narrowDefault.c_str(), buffer.data(),
        static_cast<platform::Dword>(StringBufferSize), file.c_str()));
    // The caller's variable gets back what crossed the platform, whatever the call answered.
    Default = FromAnsi(narrowDefault);
    if (copied == PlatformFailed) Raise(0, L"INILib:GetStringValue", ReadFailed);
    return ini::BufferText(buffer, copied);
}

void INILib::WriteValue(const String& Section, const String& Key, const Variant& Value,
                        const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    const std::string text = ToAnsi(ToText(Value));
    const platform::Bool written = platform::api().WritePrivateProfileStringA(
        ToAnsi(Section).c_str(), ToAnsi(Key).c_str(), text.c_str(), file.c_str());
    if (written == 0) Raise(0, L"INILib:WriteValue", L"Error writing INI value.");
}

// No value text at all, not an empty one: that is what makes the platform delete the key.
void INILib::DeleteKey(const String& Section, const String& Key, const String& INIFile) {
    const std::string file = ToAnsi(FileFor(INIFile));
    platform::api().WritePrivateProfileStringA(ToAnsi(Section).c_str(), ToAnsi(Key).c_str(),
                                               nullptr, file.c_str());
}

}  // namespace orbex
