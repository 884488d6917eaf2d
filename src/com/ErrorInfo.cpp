#include "ErrorInfo.h"

#include "ComResources.h"

#include <oleauto.h>

namespace orbex::com {
namespace {

constexpr HRESULT kControlFacility = static_cast<HRESULT>(0x800A0000);

// The environment's words for the run-time numbers that the value conventions raise.
const wchar_t* RunTimeDescription(Long number) {
    switch (number) {
    case RunTime::InvalidArgument: return L"Invalid procedure call or argument";
    case RunTime::Overflow: return L"Overflow";
    case RunTime::SubscriptOutOfRange: return L"Subscript out of range";
    case RunTime::TypeMismatch: return L"Type mismatch";
    case RunTime::InvalidUseOfNull: return L"Invalid use of Null";
    default: return nullptr;
    }
}

}  // namespace

HRESULT HresultFor(Long number) {
    if (number < 0) return number;
    if (number <= 0xFFFF) return kControlFacility | number;
    // A larger positive code cannot travel in the code field; it keeps its bits.
    return static_cast<HRESULT>(static_cast<unsigned long>(number) | 0x80000000UL);
}

namespace {

// Replaces the thread's error info; with none to be had (out of memory) it is at least cleared,
// so that no earlier call's info stands for this failure.
void SetInfo(REFIID interfaceId, const wchar_t* source, const wchar_t* description) noexcept {
    ComPtr<ICreateErrorInfo> create;
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(CreateErrorInfo(create.put()))) {
        create->SetGUID(interfaceId);
        create->SetSource(const_cast<LPOLESTR>(source));
        create->SetDescription(const_cast<LPOLESTR>(description));
        create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.put()));
    }
    SetErrorInfo(0, info.get());
}

}  // namespace

HRESULT Report(const RaisedError& error, REFIID interfaceId) noexcept {
    const wchar_t* source = error.Source.c_str();
    const wchar_t* description = error.Description.c_str();
    if (error.Source.empty() && error.Description.empty()) {
        if (const wchar_t* standard = RunTimeDescription(error.Number)) {
            source = L"Orbex";
            description = standard;
        }
    }
    SetInfo(interfaceId, source, description);
    return HresultFor(error.Number);
}

HRESULT ReportUnexpected(HRESULT failure, REFIID interfaceId) noexcept {
    SetInfo(interfaceId, L"Orbex", failure == E_OUTOFMEMORY ? L"Out of memory" : L"Catastrophic failure");
    return failure;
}

}  // namespace orbex::com
