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

HRESULT Report(const RaisedError& error, REFIID interfaceId) {
    String source = error.Source;
    String description = error.Description;
    if (source.empty() && description.empty()) {
        if (const wchar_t* standard = RunTimeDescription(error.Number)) {
            source = L"Orbex";
            description = standard;
        }
    }
    ComPtr<ICreateErrorInfo> create;
    if (SUCCEEDED(CreateErrorInfo(create.put()))) {
        create->SetGUID(interfaceId);
        create->SetSource(const_cast<LPOLESTR>(source.c_str()));
        create->SetDescription(const_cast<LPOLESTR>(description.c_str()));
        ComPtr<IErrorInfo> info;
        if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.put()))))
            SetErrorInfo(0, info.get());
    }
    return HresultFor(error.Number);
}

}  // namespace orbex::com
