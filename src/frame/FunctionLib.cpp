#include "FunctionLib.h"

#include "RaisedError.h"

namespace orbex {
namespace {

// The search text of NulCount NULs. A negative count is an invalid argument, as for any
// text of a given length.
String NulRun(Integer nulCount) {
    if (nulCount < 0) RaiseRunTime(RunTime::InvalidArgument);
    return String(static_cast<std::size_t>(nulCount), L'\0');
}

}  // namespace

String CutAtFirstNul(const String& text, Integer nulCount) {
    const std::size_t at = text.find(NulRun(nulCount));
    return at == String::npos ? text : text.substr(0, at);
}

String CutAtLastNul(const String& text, Integer nulCount) {
    const std::size_t at = text.rfind(NulRun(nulCount));
    return at == String::npos ? text : text.substr(0, at);
}

String StripTrailingBackslash(const String& text) {
    String trimmed{TrimBlanks(text)};
    if (!trimmed.empty() && trimmed.back() == L'\\') trimmed.pop_back();
    return trimmed;
}

Integer LowWordToInteger(Long value) {
    return static_cast<Integer>(static_cast<std::uint16_t>(value & 0xFFFF));
}

StringView TrimBlanks(StringView text) {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == StringView::npos) return StringView{};
    const std::size_t last = text.find_last_not_of(L' ');
    return text.substr(first, last - first + 1);
}

StringArray SplitText(const String& text, wchar_t separator) {
    StringArray pieces;
    if (text.empty()) return pieces;
    std::size_t start = 0;
    for (;;) {
        const std::size_t at = text.find(separator, start);
        if (at == String::npos) {
            pieces.items.push_back(text.substr(start));
            return pieces;
        }
        pieces.items.push_back(text.substr(start, at - start));
        start = at + 1;
    }
}

}  // namespace orbex
