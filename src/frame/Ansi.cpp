#include "Ansi.h"

#include "RaisedError.h"
#include "platform/Api.h"

namespace orbex {
namespace {

constexpr platform::Dword AnsiCodePage = 0;  // CP_ACP

// Lengths cross the platform as 32-bit counts; longer text does not fit the call.
std::int32_t CallLength(std::size_t length) {
    if (length > 0x7FFFFFFF) RaiseRunTime(RunTime::Overflow);
    return static_cast<std::int32_t>(length);
}

}  // namespace

// Explicit lengths throughout, so embedded NULs convert like any other character.
std::string ToAnsi(const String& text) {
    if (text.empty()) return std::string{};
    const auto& api = platform::api();
    const std::int32_t wideLength = CallLength(text.size());
    const std::int32_t needed = api.WideCharToMultiByte(AnsiCodePage, 0, text.data(), wideLength,
                                                        nullptr, 0, nullptr, nullptr);
    if (needed <= 0) return std::string{};
    std::string result(static_cast<std::size_t>(needed), '\0');
    const std::int32_t written = api.WideCharToMultiByte(AnsiCodePage, 0, text.data(), wideLength,
                                                         result.data(), needed, nullptr, nullptr);
    result.resize(written > 0 ? static_cast<std::size_t>(written) : 0);
    return result;
}

String FromAnsi(const char* text, std::size_t length) {
    if (text == nullptr || length == 0) return String{};
    const auto& api = platform::api();
    const std::int32_t narrowLength = CallLength(length);
    const std::int32_t needed =
        api.MultiByteToWideChar(AnsiCodePage, 0, text, narrowLength, nullptr, 0);
    if (needed <= 0) return String{};
    String result(static_cast<std::size_t>(needed), L'\0');
    const std::int32_t written =
        api.MultiByteToWideChar(AnsiCodePage, 0, text, narrowLength, result.data(), needed);
    result.resize(written > 0 ? static_cast<std::size_t>(written) : 0);
    return result;
}

String FromAnsi(const std::string& text) {
    return FromAnsi(text.data(), text.size());
}

// Converting just the first count + 1 bytes gives the same first characters as converting the
// whole buffer when each of those bytes made one character and the last is ASCII: no character
// then straddles the cut, in any code page. Every list of a single-byte code page ends so, in
// its NUL; anything else converts the whole buffer.
String FromAnsiBuffer(const std::string& buffer, std::size_t count) {
    const std::size_t head = count < buffer.size() ? count + 1 : buffer.size();
    String text(head, L'\0');
    const std::int32_t length = CallLength(head);
    const bool sameAsWhole =
        head == 0 || (platform::api().MultiByteToWideChar(AnsiCodePage, 0, buffer.data(), length,
                                                          text.data(), length) == length &&
                      static_cast<unsigned char>(buffer[head - 1]) < 0x80);
    if (!sameAsWhole) text = FromAnsi(buffer);
    if (text.size() > count) text.resize(count);
    return text;
}

String AnsiRoundTrip(const String& text) {
    return FromAnsi(ToAnsi(text));
}

}  // namespace orbex
