#include "Invoke.h"

#include "Values.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orbex::com {

bool IsVariantType(VARTYPE type) {
    const VARTYPE flags = type & ~VT_TYPEMASK;
    if (flags & ~(VT_BYREF | VT_ARRAY)) return false;
    switch (type & VT_TYPEMASK) {
    case VT_EMPTY: case VT_NULL: return flags == 0;
    case VT_VARIANT: return flags != 0;
    case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR: case VT_DISPATCH:
    case VT_ERROR: case VT_BOOL: case VT_UNKNOWN: case VT_DECIMAL: case VT_I1: case VT_UI1: case VT_UI2:
    case VT_UI4: case VT_I8: case VT_UI8: case VT_INT: case VT_UINT:
        return true;
    default: return false;
    }
}

namespace {

// Where a member's value lives inside a VARIANT: the union after the type word.
void* payload(VARIANT* value) { return &V_UI1(value); }

const VARIANT* dereference(const VARIANT* value) {
    while (V_VT(value) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(value)) value = V_VARIANTREF(value);
    return value;
}

// Whether a caller's argument can be read at all: a type a VARIANT may hold, references that
// point somewhere, and an array whose elements are what its tag says. Nothing below this
// (the Automation conversions, the members) survives a broken one.
HRESULT readable(const VARIANT* value) {
    for (int level = 0; level < 4; ++level) {
        const VARTYPE type = V_VT(value);
        if (!IsVariantType(type)) return DISP_E_BADVARTYPE;
        if (((type & VT_BYREF) && !V_BYREF(value)) || !IsSoundDecimal(value)) return DISP_E_TYPEMISMATCH;
        if (type == (VT_BYREF | VT_VARIANT)) {
            value = V_VARIANTREF(value);
            continue;
        }
        if (type & VT_ARRAY) {
            SAFEARRAY* array = (type & VT_BYREF) ? *V_ARRAYREF(value) : V_ARRAY(value);
            VARTYPE elements = VT_EMPTY;
            if (array && SUCCEEDED(SafeArrayGetVartype(array, &elements)) && elements != (type & VT_TYPEMASK))
                return DISP_E_TYPEMISMATCH;
        }
        return S_OK;
    }
    return DISP_E_BADVARTYPE;  // references nested deeper than any client makes them
}

bool isMissing(const VARIANT* value) {
    return V_VT(value) == VT_ERROR && V_ERROR(value) == DISP_E_PARAMNOTFOUND;
}

// A script's Variant() array, or a String() array, as a String() array with the same bounds.
HRESULT toStringArray(const VARIANT* source, VARIANT* target) {
    const VARTYPE type = V_VT(source);
    if ((type & ~VT_BYREF) == (VT_ARRAY | VT_BSTR)) {
        SAFEARRAY* array = (type & VT_BYREF) ? *V_ARRAYREF(source) : V_ARRAY(source);
        V_VT(target) = VT_ARRAY | VT_BSTR;
        V_ARRAY(target) = nullptr;
        return array ? SafeArrayCopy(array, &V_ARRAY(target)) : S_OK;
    }
    if ((type & ~VT_BYREF) != (VT_ARRAY | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
    SAFEARRAY* array = (type & VT_BYREF) ? *V_ARRAYREF(source) : V_ARRAY(source);
    V_VT(target) = VT_ARRAY | VT_BSTR;
    V_ARRAY(target) = nullptr;
    if (!array) return S_OK;
    if (SafeArrayGetDim(array) != 1) return DISP_E_TYPEMISMATCH;
    // Element by element through the data, never by index: the bounds may lie at the ends of
    // the LONG range, where upper - lower + 1 does not fit.
    SAFEARRAYBOUND bound = array->rgsabound[0];
    UniqueSafeArray converted(SafeArrayCreate(VT_BSTR, 1, &bound));
    if (!converted) return E_OUTOFMEMORY;
    VARIANT* elements = nullptr;
    BSTR* texts = nullptr;
    HRESULT hr = SafeArrayAccessData(array, reinterpret_cast<void**>(&elements));
    if (FAILED(hr)) return hr;
    hr = SafeArrayAccessData(converted.get(), reinterpret_cast<void**>(&texts));
    if (SUCCEEDED(hr)) {
        for (ULONG i = 0; i < bound.cElements && SUCCEEDED(hr); ++i) {
            UniqueVariant text;
            hr = ChangeType(text.get(), &elements[i], VT_BSTR);
            if (SUCCEEDED(hr)) {
                texts[i] = V_BSTR(text.get());
                V_VT(text.get()) = VT_EMPTY;  // the array owns it now
            }
        }
        SafeArrayUnaccessData(converted.get());
    }
    SafeArrayUnaccessData(array);
    if (FAILED(hr)) return hr;
    V_ARRAY(target) = converted.release();
    return S_OK;
}

// An object argument as the declared interface; Nothing and Empty pass as a null pointer.
HRESULT toInterface(const VARIANT* source, const IID& interfaceId, VARIANT* target) {
    V_VT(target) = VT_DISPATCH;
    V_DISPATCH(target) = nullptr;
    IUnknown* object = nullptr;
    switch (V_VT(source)) {
    case VT_EMPTY: return S_OK;
    case VT_DISPATCH: object = V_DISPATCH(source); break;
    case VT_UNKNOWN: object = V_UNKNOWN(source); break;
    case VT_BYREF | VT_DISPATCH: object = *V_DISPATCHREF(source); break;
    case VT_BYREF | VT_UNKNOWN: object = *V_UNKNOWNREF(source); break;
    default: return DISP_E_TYPEMISMATCH;
    }
    if (!object) return S_OK;
    return object->QueryInterface(interfaceId, reinterpret_cast<void**>(&V_DISPATCH(target))) == S_OK
               ? S_OK
               : DISP_E_TYPEMISMATCH;
}

// The argument converted to the parameter's declared type, into `target`.
HRESULT convert(const VARIANT* source, const ParameterInfo& parameter, VARIANT* target) {
    source = dereference(source);
    if (parameter.type == VT_VARIANT) return VariantCopyInd(target, const_cast<VARIANT*>(source));
    if (parameter.type == VT_DISPATCH) return toInterface(source, parameter.interfaceId, target);
    if (parameter.type == (VT_ARRAY | VT_BSTR)) return toStringArray(source, target);
    return ChangeType(target, source, parameter.type);
}

// A missing argument: the declared default, or "missing" for an optional Variant.
HRESULT fillMissing(const ParameterInfo& parameter, VARIANT* target) {
    if (parameter.hasDefault) return convert(&parameter.defaultValue, parameter, target);
    if (!parameter.optional) return DISP_E_PARAMNOTOPTIONAL;
    if (parameter.type == VT_VARIANT) {
        V_VT(target) = VT_ERROR;
        V_ERROR(target) = DISP_E_PARAMNOTFOUND;
        return S_OK;
    }
    V_VT(target) = parameter.type;  // zero value of the declared type
    return S_OK;
}

// Writes a by-reference result back into the caller's variable.
void writeBack(VARIANT* callerArgument, VARIANT* value) {
    if (V_VT(callerArgument) == (VT_BYREF | VT_VARIANT)) {
        VARIANT* variable = V_VARIANTREF(callerArgument);
        if (variable && !(V_VT(value) & VT_ARRAY)) {
            VariantClear(variable);
            *variable = *value;  // moves ownership
            V_VT(value) = VT_EMPTY;
        }
    }
}

// The most parameters a member has, with its result: the call's slots live on the stack, so a
// call allocates nothing of its own.
constexpr size_t MaxSlots = 8;

struct Call {
    const MemberInfo& member;
    DISPPARAMS& parameters;
    size_t slots;
    std::array<VARIANT, MaxSlots> values{};      // each argument in its declared type, owned
    std::array<VARIANT, MaxSlots> arguments{};   // what the vtable call receives: a value or a pointer
    std::array<VARIANTARG*, MaxSlots> pointers{};
    std::array<VARTYPE, MaxSlots> types{};
    std::array<VARIANT*, MaxSlots> callerArguments{};  // the caller's argument per parameter, or nullptr
    std::array<bool, MaxSlots> borrowed{};       // the slot holds the caller's own text or typed reference

    Call(const MemberInfo& m, DISPPARAMS& p)
        : member(m), parameters(p), slots(m.parameters.size() + (m.hasResult ? 1 : 0)) {}
    ~Call() {
        for (size_t i = 0; i < slots && i < MaxSlots; ++i)
            if (!borrowed[i]) VariantClear(&values[i]);  // a borrowed value is the caller's to free
    }

    // Matches the caller's positional and named arguments to parameters.
    HRESULT match(UINT* argumentError) {
        const UINT named = parameters.cNamedArgs;
        const UINT total = parameters.cArgs;
        const UINT positional = total - named;
        const size_t count = member.parameters.size();
        if (slots > MaxSlots) return DISP_E_BADPARAMCOUNT;
        const bool put = member.kind == INVOKE_PROPERTYPUT || member.kind == INVOKE_PROPERTYPUTREF;
        if (positional > count) return DISP_E_BADPARAMCOUNT;
        for (UINT i = 0; i < positional; ++i) callerArguments[i] = &parameters.rgvarg[total - 1 - i];
        for (UINT j = 0; j < named; ++j) {
            const DISPID id = parameters.rgdispidNamedArgs[j];
            const size_t index = id == DISPID_PROPERTYPUT && put ? count - 1 : static_cast<size_t>(id);
            if ((id < 0 && !(id == DISPID_PROPERTYPUT && put)) || index >= count || callerArguments[index]) {
                if (argumentError) *argumentError = j;
                return DISP_E_PARAMNOTFOUND;
            }
            callerArguments[index] = &parameters.rgvarg[j];
        }
        // A put without the named value takes its last positional argument as the value.
        if (put && named == 0 && positional > 0 && positional < count) {
            std::swap(callerArguments[positional - 1], callerArguments[count - 1]);
        }
        return S_OK;
    }

    HRESULT prepare(UINT* argumentError) {
        for (size_t i = 0; i < member.parameters.size(); ++i) {
            const ParameterInfo& parameter = member.parameters[i];
            VARIANT* caller = callerArguments[i];
            VARIANT& value = values[i];
            HRESULT hr = caller ? readable(caller) : S_OK;
            if (FAILED(hr)) {
                if (argumentError) *argumentError = positionOf(caller);
                return hr;
            }
            const VARIANT* given = caller ? dereference(caller) : nullptr;
            if (caller && parameter.byReference && parameter.type != VT_VARIANT &&
                V_VT(caller) == (VT_BYREF | parameter.type)) {
                // The caller's own typed variable: the member works on it in place.
                borrowed[i] = true;
                V_VT(&value) = V_VT(caller);
                V_BYREF(&value) = V_BYREF(caller);
            } else if (given && !parameter.byReference && parameter.type == VT_BSTR && V_VT(given) == VT_BSTR) {
                // A text passed by value is only read: the member reads the caller's own, uncopied.
                borrowed[i] = true;
                V_VT(&value) = VT_BSTR;
                V_BSTR(&value) = V_BSTR(given);
            } else {
                hr = given && !isMissing(given) ? convert(caller, parameter, &value) : fillMissing(parameter, &value);
            }
            if (FAILED(hr)) {
                if (argumentError) *argumentError = positionOf(caller);
                return hr;
            }
            VARIANT& argument = arguments[i];
            if (borrowed[i]) {
                argument = value;
                types[i] = V_VT(&value);
            } else if (parameter.byReference) {
                V_VT(&argument) = VT_BYREF | parameter.type;
                V_BYREF(&argument) = parameter.type == VT_VARIANT ? static_cast<void*>(&value) : payload(&value);
                types[i] = V_VT(&argument);
            } else {
                argument = value;
                types[i] = parameter.type;
            }
            pointers[i] = &argument;
        }
        if (member.hasResult) {
            const size_t last = slots - 1;
            V_VT(&values[last]) = member.result.type;
            VARIANT& argument = arguments[last];
            V_VT(&argument) = VT_BYREF | member.result.type;
            V_BYREF(&argument) = member.result.type == VT_VARIANT ? static_cast<void*>(&values[last])
                                                                  : payload(&values[last]);
            types[last] = V_VT(&argument);
            pointers[last] = &argument;
        }
        return S_OK;
    }

    UINT positionOf(const VARIANT* caller) const {
        return caller ? static_cast<UINT>(caller - parameters.rgvarg) : 0;
    }
};

#if defined(__i386__)
// Calls the member in vtable slot `offset` as DispCallFunc would; its result is the member's.
// Wine's DispCallFunc allocates the argument block on the heap at every call, which costs as much
// as the rest of Invoke. On 32-bit x86 the arguments are only stack words in order, which the
// member pops (stdcall), so a call through a pointer taking as many words is the same call.
// Elsewhere arguments go to registers by their types, and DispCallFunc places them.
using Word = std::uint32_t;
constexpr size_t MaxWords = MaxSlots * sizeof(VARIANT) / sizeof(Word);

template <size_t Count>
HRESULT callWords(void* function, void* self, const Word* words) {
    return [&]<size_t... I>(std::index_sequence<I...>) {
        using Member = HRESULT(STDMETHODCALLTYPE*)(void*, decltype(I, Word{})...);
        return reinterpret_cast<Member>(function)(self, words[I]...);
    }(std::make_index_sequence<Count>());
}

template <size_t... Count>
constexpr auto wordCallers(std::index_sequence<Count...>) {
    return std::array{&callWords<Count>...};
}

HRESULT callMember(void* self, SHORT offset, size_t count, const VARTYPE* types, VARIANTARG* const* arguments) {
    static constexpr auto callers = wordCallers(std::make_index_sequence<MaxWords + 1>());
    std::array<Word, MaxWords> words;
    size_t used = 0;
    for (size_t i = 0; i < count; ++i) {
        // A value lies at the start of the union; the narrow ones fill a word of their own.
        size_t size = sizeof(Word);
        const void* value = payload(arguments[i]);
        switch (types[i]) {
        case VT_VARIANT: case VT_DECIMAL: size = sizeof(VARIANT), value = arguments[i]; break;
        case VT_CY: case VT_R8: case VT_DATE: case VT_I8: case VT_UI8: size = 8; break;
        default: break;
        }
        std::memcpy(&words[used], value, size);
        used += size / sizeof(Word);
    }
    void* function = (*static_cast<void***>(self))[offset / sizeof(void*)];
    return callers[used](function, self, words.data());
}
#else
HRESULT callMember(void* self, SHORT offset, size_t count, VARTYPE* types, VARIANTARG** arguments) {
    VARIANT returned;
    VariantInit(&returned);
    const HRESULT hr = DispCallFunc(self, offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(count), types,
                                    arguments, &returned);
    return FAILED(hr) ? hr : V_ERROR(&returned);
}
#endif

void fillException(HRESULT failure, EXCEPINFO* exception) {
    std::memset(exception, 0, sizeof *exception);
    exception->scode = failure;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK && info) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
    }
}

}  // namespace

HRESULT Refuse(HRESULT failure) {
    SetErrorInfo(0, nullptr);
    return failure;
}

HRESULT InvokeMember(const DispatchTable& table, void* self, DISPID id, WORD flags, DISPPARAMS* parameters,
                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) {
    const MemberInfo* member = table.find(id, flags);
    if (!member) return Refuse(DISP_E_MEMBERNOTFOUND);
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    if (!parameters) parameters = &none;
    // Counts that promise more than the pointers hold are refused before anything is read.
    if ((parameters->cArgs && !parameters->rgvarg) || parameters->cNamedArgs > parameters->cArgs ||
        (parameters->cNamedArgs && !parameters->rgdispidNamedArgs))
        return Refuse(E_INVALIDARG);
    Call call(*member, *parameters);
    HRESULT hr = call.match(argumentError);
    if (SUCCEEDED(hr)) hr = call.prepare(argumentError);
    if (FAILED(hr)) return Refuse(hr);

    hr = callMember(self, member->vtableOffset, call.slots, call.types.data(), call.pointers.data());
    if (FAILED(hr)) {
        if (!exception) return hr;
        fillException(hr, exception);
        return DISP_E_EXCEPTION;
    }
    for (size_t i = 0; i < member->parameters.size(); ++i) {
        if (member->parameters[i].byReference && !call.borrowed[i] && call.callerArguments[i])
            writeBack(call.callerArguments[i], &call.values[i]);
    }
    if (member->hasResult && result) {
        VariantClear(result);
        VARIANT& value = call.values[call.slots - 1];
        *result = value;
        V_VT(&value) = VT_EMPTY;
    }
    return S_OK;
}

}  // namespace orbex::com
