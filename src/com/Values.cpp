#include "Values.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

namespace orbex::com {
namespace {

UniqueSafeArray CreateVector(VARTYPE type, Long lower, std::size_t count) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), lower};
    UniqueSafeArray array(SafeArrayCreate(type, 1, &bound));
    if (!array) throw std::bad_alloc();
    return array;
}

// A String array of `count` elements from `lower` on; element i is a BSTR of `item(i)`, asked for
// in order.
template <class Item>
SAFEARRAY* StringVector(Long lower, std::size_t count, Item item) {
    UniqueSafeArray out = CreateVector(VT_BSTR, lower, count);
    BSTR* data = nullptr;
    SafeArrayAccessData(out.get(), reinterpret_cast<void**>(&data));
    for (std::size_t i = 0; i < count; ++i) {
        const std::wstring_view text = item(i);
        data[i] = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!data[i]) {
            SafeArrayUnaccessData(out.get());
            throw std::bad_alloc();
        }
    }
    SafeArrayUnaccessData(out.get());
    return out.release();
}

template <class Element, class Convert>
BoundedArray<Element> ReadVector(SAFEARRAY* array, Convert convert) {
    BoundedArray<Element> out;
    if (!array || SafeArrayGetDim(array) != 1) return out;
    // The count from the descriptor: at the ends of the LONG range upper - lower + 1 does not fit.
    const SAFEARRAYBOUND bound = array->rgsabound[0];
    out.lower = bound.lLbound;
    out.items.reserve(bound.cElements);
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array, &data))) return out;
    for (ULONG index = 0; index < bound.cElements; ++index) out.items.push_back(convert(data, static_cast<LONG>(index)));
    SafeArrayUnaccessData(array);
    return out;
}

}  // namespace

bool IsSoundDecimal(const VARIANT* value) {
    if ((V_VT(value) & VT_TYPEMASK) != VT_DECIMAL || (V_VT(value) & VT_ARRAY)) return true;
    const DECIMAL* decimal = (V_VT(value) & VT_BYREF) ? V_DECIMALREF(value) : &V_DECIMAL(value);
    return !decimal || (decimal->scale <= 28 && (decimal->sign & ~DECIMAL_NEG) == 0);
}

HRESULT ChangeType(VARIANT* out, const VARIANT* in, VARTYPE type) {
    if (!IsSoundDecimal(in)) return DISP_E_TYPEMISMATCH;
    return VariantChangeType(out, const_cast<VARIANT*>(in), 0, type);
}

String ToString(BSTR text) { return text ? String(text, SysStringLen(text)) : String(); }

BSTR ToBstr(const String& text) {
    BSTR out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!out) throw std::bad_alloc();
    return out;
}

StringArray ToStringArray(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    if (array) SafeArrayGetVartype(array, &type);
    if (type == VT_VARIANT) {
        return ReadVector<String>(array, [](void* data, LONG i) {
            UniqueVariant text;
            if (FAILED(ChangeType(text.get(), static_cast<VARIANT*>(data) + i, VT_BSTR))) return String();
            return ToString(V_BSTR(text.get()));
        });
    }
    return ReadVector<String>(array, [](void* data, LONG i) { return ToString(static_cast<BSTR*>(data)[i]); });
}

SAFEARRAY* ToSafeArray(const StringArray& array) {
    return StringVector(array.lower, array.items.size(),
                        [&](std::size_t i) { return std::wstring_view(array.items[i]); });
}

// Each item runs from where the one before ended up to the next NUL or the end.
SAFEARRAY* ToSafeArray(const NulSeparatedList& list) {
    const std::wstring_view text = list.text;
    const auto nuls = static_cast<std::size_t>(std::count(text.begin(), text.end(), L'\0'));
    const std::size_t count = text.empty() ? 0 : nuls + 1;
    std::size_t start = 0;
    return StringVector(0, count, [&](std::size_t) {
        const std::size_t end = std::min(text.find(L'\0', start), text.size());
        const std::wstring_view item = text.substr(start, end - start);
        start = end + 1;
        return item;
    });
}

Variant ToValue(const VARIANT& value) {
    const VARIANT* v = &value;
    while (V_VT(v) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(v)) v = V_VARIANTREF(v);
    const VARTYPE type = V_VT(v);
    if (type & VT_ARRAY) {
        SAFEARRAY* array = (type & VT_BYREF) ? *V_ARRAYREF(v) : V_ARRAY(v);
        switch (type & VT_TYPEMASK) {
        case VT_BSTR: return ToStringArray(array);
        case VT_UI1: return ReadVector<Byte>(array, [](void* data, LONG i) { return static_cast<Byte*>(data)[i]; });
        default: return Opaque{Opaque::Kind::OtherArray};
        }
    }
    UniqueVariant plain;
    if (type & VT_BYREF) {
        if (FAILED(VariantCopyInd(plain.get(), const_cast<VARIANT*>(v)))) return Opaque{};
        v = plain.get();
    }
    switch (V_VT(v)) {
    case VT_EMPTY: return Empty{};
    case VT_NULL: return Null{};
    case VT_I2: return V_I2(v);
    case VT_I4: return static_cast<Long>(V_I4(v));
    case VT_R4: return V_R4(v);
    case VT_R8: return V_R8(v);
    case VT_CY: return ToCurrency(V_CY(v));
    case VT_DATE: return Date{V_DATE(v)};
    case VT_BSTR: return ToString(V_BSTR(v));
    case VT_BOOL: return BooleanValue{V_BOOL(v)};
    case VT_UI1: return V_UI1(v);
    case VT_ERROR: return ErrorValue{V_ERROR(v)};
    case VT_I1: return static_cast<Integer>(V_I1(v));
    case VT_UI2: return static_cast<Long>(V_UI2(v));
    case VT_INT: return static_cast<Long>(V_INT(v));
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_DECIMAL: {
        // Wider integers than a client's language has arrive as the nearest Double.
        UniqueVariant number;
        if (FAILED(ChangeType(number.get(), v, VT_R8))) return Opaque{};
        return V_R8(number.get());
    }
    default: return Opaque{};
    }
}

void ToVariant(const Variant& value, VARIANT* out) {
    VariantClear(out);
    std::visit(
        [out](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, Empty>) {
                V_VT(out) = VT_EMPTY;
            } else if constexpr (std::is_same_v<T, Null>) {
                V_VT(out) = VT_NULL;
            } else if constexpr (std::is_same_v<T, Integer>) {
                V_VT(out) = VT_I2, V_I2(out) = v;
            } else if constexpr (std::is_same_v<T, Long>) {
                V_VT(out) = VT_I4, V_I4(out) = v;
            } else if constexpr (std::is_same_v<T, float>) {
                V_VT(out) = VT_R4, V_R4(out) = v;
            } else if constexpr (std::is_same_v<T, double>) {
                V_VT(out) = VT_R8, V_R8(out) = v;
            } else if constexpr (std::is_same_v<T, Currency>) {
                V_VT(out) = VT_CY, V_CY(out) = ToCy(v);
            } else if constexpr (std::is_same_v<T, Date>) {
                V_VT(out) = VT_DATE, V_DATE(out) = v.days;
            } else if constexpr (std::is_same_v<T, String>) {
                V_BSTR(out) = ToBstr(v), V_VT(out) = VT_BSTR;
            } else if constexpr (std::is_same_v<T, BooleanValue>) {
                V_VT(out) = VT_BOOL, V_BOOL(out) = v.bits;
            } else if constexpr (std::is_same_v<T, Byte>) {
                V_VT(out) = VT_UI1, V_UI1(out) = v;
            } else if constexpr (std::is_same_v<T, ErrorValue>) {
                V_VT(out) = VT_ERROR, V_ERROR(out) = v.scode;
            } else if constexpr (std::is_same_v<T, StringArray>) {
                V_ARRAY(out) = ToSafeArray(v), V_VT(out) = VT_ARRAY | VT_BSTR;
            } else if constexpr (std::is_same_v<T, ByteArray>) {
                UniqueSafeArray array = CreateVector(VT_UI1, v.lower, v.items.size());
                void* data = nullptr;
                SafeArrayAccessData(array.get(), &data);
                if (!v.items.empty()) std::memcpy(data, v.items.data(), v.items.size());
                SafeArrayUnaccessData(array.get());
                V_ARRAY(out) = array.release(), V_VT(out) = VT_ARRAY | VT_UI1;
            } else {
                V_VT(out) = VT_EMPTY;  // objects and foreign arrays are never results
            }
        },
        value);
}

}  // namespace orbex::com
