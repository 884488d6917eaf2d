#include "Arguments.h"

#include "com/Invoke.h"

#include <climits>
#include <cstring>
#include <limits>

namespace orbex::fuzz {
namespace {

constexpr VARTYPE kScalarTypes[] = {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR,
                                    VT_ERROR, VT_BOOL, VT_DECIMAL, VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8,
                                    VT_UI8, VT_INT, VT_UINT};
constexpr VARTYPE kElementTypes[] = {VT_BSTR, VT_VARIANT, VT_UI1, VT_I2, VT_I4, VT_R8, VT_BOOL, VT_DISPATCH,
                                     VT_UNKNOWN, VT_ERROR, VT_CY, VT_DATE, VT_DECIMAL, VT_I1, VT_UI4};
// Types no member takes and some no VARIANT may hold at all.
constexpr VARTYPE kForeignTypes[] = {VT_RECORD, 0x7FFF, VT_VECTOR | VT_I4, VT_BSTR_BLOB, VT_VOID, VT_HRESULT,
                                     VT_PTR, VT_LPSTR, VT_CLSID, VT_ARRAY | VT_EMPTY, VT_BYREF | VT_EMPTY,
                                     VT_VARIANT, VT_ARRAY | VT_BYREF | VT_VARIANT | VT_RESERVED};

template <class T, size_t N>
T pickFrom(Random& random, const T (&items)[N]) {
    return items[random.below(N)];
}

void* payload(VARIANT* value) { return &V_UI1(value); }

VARIANT make(VARTYPE type) {
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = type;
    return value;
}

}  // namespace

Arguments::~Arguments() {
    for (VARIANT& value : topLevel_)
        if (!(V_VT(&value) & VT_BYREF) && com::IsVariantType(V_VT(&value))) VariantClear(&value);
    for (size_t i = 0; i < storage_.size(); ++i)
        if (com::IsVariantType(V_VT(&storage_[i]))) VariantClear(&storage_[i]);
}

VARIANT* Arguments::box(const VARIANT& value) {
    storage_.push_back(value);
    storageValid_.push_back(com::IsVariantType(V_VT(&value)));
    return &storage_.back();
}

bool Arguments::referencesValid(std::string* problem) const {
    for (size_t i = 0; i < storage_.size(); ++i) {
        if (storageValid_[i] && !com::IsVariantType(V_VT(&storage_[i])) && V_VT(&storage_[i]) != VT_DECIMAL) {
            *problem = "a variable passed by reference came back with type " + std::to_string(V_VT(&storage_[i]));
            return false;
        }
    }
    return true;
}

VARIANT Arguments::text(const std::wstring& content) {
    VARIANT value = make(VT_BSTR);
    if (content.empty() && random_.percent(30)) return value;  // the null BSTR
    const UINT length = static_cast<UINT>(content.size());
    V_BSTR(&value) = random_.percent(5)
                         ? SysAllocStringByteLen(reinterpret_cast<const char*>(content.c_str()), length * 2 + 1)
                         : SysAllocStringLen(content.data(), length);
    return value;
}

VARIANT Arguments::scalar(VARTYPE type) {
    VARIANT value = make(type);
    switch (type) {
    case VT_I2: V_I2(&value) = random_.pick<SHORT>({0, 1, -1, SHRT_MAX, SHRT_MIN, 2}); break;
    case VT_I4: V_I4(&value) = random_.pick<LONG>({0, 1, -1, 2, 4, 7, 11, 65535, 65536, LONG_MAX, LONG_MIN}); break;
    case VT_INT: V_INT(&value) = random_.pick<INT>({0, -1, INT_MAX}); break;
    case VT_R4: V_R4(&value) = random_.pick<float>({0.0f, -0.0f, 1.5f, 2.5f, 3.4e38f, std::numeric_limits<float>::quiet_NaN()}); break;
    case VT_R8:
        V_R8(&value) = random_.pick<double>({0.0, 0.5, 1.5, -2.5, 65535.0, 4294967296.0, 1e308, -1e308, 4.9e-324,
                                             std::numeric_limits<double>::infinity(),
                                             std::numeric_limits<double>::quiet_NaN()});
        break;
    case VT_CY: V_CY(&value).int64 = random_.pick<LONGLONG>({0, 10000, -1, LLONG_MAX, LLONG_MIN}); break;
    case VT_DATE: V_DATE(&value) = random_.pick<double>({0.0, -657435.0, 2958465.0, 1e10, -1e10, 0.5,
                                                         std::numeric_limits<double>::quiet_NaN()}); break;
    case VT_BSTR: return text(HostileText(random_));
    case VT_ERROR: V_ERROR(&value) = random_.pick<SCODE>({DISP_E_PARAMNOTFOUND, E_FAIL, 0, DISP_E_TYPEMISMATCH}); break;
    case VT_BOOL: V_BOOL(&value) = random_.pick<VARIANT_BOOL>({VARIANT_TRUE, VARIANT_FALSE, 1, 2, 0x7FFF}); break;
    case VT_DECIMAL: {
        DECIMAL decimal{};
        decimal.Hi32 = random_.pick<ULONG>({0, 0xFFFFFFFF});
        decimal.Lo64 = random_.pick<ULONGLONG>({0, 1, ~0ull});
        decimal.scale = random_.pick<BYTE>({0, 2, 28, 29, 255});
        decimal.sign = random_.pick<BYTE>({0, DECIMAL_NEG, 0x7F});
        V_DECIMAL(&value) = decimal;
        V_VT(&value) = VT_DECIMAL;
        break;
    }
    case VT_I1: V_I1(&value) = random_.pick<CHAR>({0, -1, 127, -128}); break;
    case VT_UI1: V_UI1(&value) = random_.pick<BYTE>({0, 1, 255}); break;
    case VT_UI2: V_UI2(&value) = random_.pick<USHORT>({0, 65535, 32768}); break;
    case VT_UI4: case VT_UINT: V_UI4(&value) = random_.pick<ULONG>({0, 0xFFFFFFFF, 0x80000000, 65536}); break;
    case VT_I8: V_I8(&value) = random_.pick<LONGLONG>({0, -1, LLONG_MAX, LLONG_MIN, 1ll << 40}); break;
    case VT_UI8: V_UI8(&value) = random_.pick<ULONGLONG>({0, ~0ull, 1ull << 63}); break;
    case VT_DISPATCH: return object(false);
    case VT_VARIANT: return anything();
    default:
        if (type & VT_ARRAY) return array();
        break;
    }
    return value;
}

VARIANT Arguments::array() {
    const VARTYPE element = pickFrom(random_, kElementTypes);
    const UINT dimensions = random_.pick<UINT>({1, 1, 1, 1, 2, 2, 3, 0});
    SAFEARRAYBOUND bounds[3];
    for (UINT d = 0; d < dimensions; ++d) {
        bounds[d].cElements = random_.pick<ULONG>({0, 1, 2, 3, 4});
        bounds[d].lLbound = random_.pick<LONG>({0, 0, 1, -1, -5, LONG_MAX - 1, LONG_MIN});
    }
    VARIANT value = make(VT_ARRAY | element);
    SAFEARRAY* created = dimensions ? SafeArrayCreate(element, dimensions, bounds) : nullptr;
    if (created) {
        ULONG total = 1;
        for (UINT d = 0; d < dimensions; ++d) total *= bounds[d].cElements;
        void* data = nullptr;
        if (SUCCEEDED(SafeArrayAccessData(created, &data))) {
            const UINT size = SafeArrayGetElemsize(created);
            for (ULONG i = 0; i < total; ++i) {
                VARIANT item = element == VT_VARIANT ? (random_.percent(10) ? array() : scalar(pickFrom(random_, kScalarTypes)))
                                                     : scalar(element);
                void* slot = static_cast<char*>(data) + i * size;
                if (element == VT_VARIANT) *static_cast<VARIANT*>(slot) = item;
                else if (element == VT_DECIMAL) *static_cast<DECIMAL*>(slot) = V_DECIMAL(&item);
                else if (V_VT(&item) == element || element == VT_UNKNOWN) std::memcpy(slot, payload(&item), size);
                else VariantClear(&item);
            }
            SafeArrayUnaccessData(created);
        }
    }
    V_ARRAY(&value) = created;
    // A tag that lies about the elements, as a careless client's would; the store frees the
    // array by its true type.
    if (created && random_.percent(5)) {
        VARIANT* owner = box(value);
        VARIANT lying = make(static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | pickFrom(random_, kElementTypes)));
        V_ARRAYREF(&lying) = &V_ARRAY(owner);
        return lying;
    }
    return value;
}

VARIANT Arguments::object(bool ownKeysOnly) {
    VARIANT value = make(random_.percent(20) ? VT_UNKNOWN : VT_DISPATCH);
    V_DISPATCH(&value) = nullptr;
    const std::vector<Object>& pool = *objects_.pool;
    if (pool.empty() || random_.percent(10)) return value;
    for (int attempt = 0; attempt < 4; ++attempt) {
        const Object& candidate = pool[random_.below(static_cast<std::uint32_t>(pool.size()))];
        const bool isKey = candidate.className == L"RegistryKey";
        if (ownKeysOnly && isKey && !Sandbox::ownsKey(ReadText(candidate.dispatch, L"Name"), false)) continue;
        if (ownKeysOnly && !isKey && random_.percent(60)) continue;
        candidate.dispatch->AddRef();
        V_DISPATCH(&value) = candidate.dispatch;  // an IDispatch is an IUnknown
        return value;
    }
    return value;
}

VARIANT Arguments::destination() {
    VARIANT value;
    switch (random_.below(10)) {
    case 0: value = make(VT_EMPTY); break;
    case 1: value = make(VT_ERROR), V_ERROR(&value) = DISP_E_PARAMNOTFOUND; break;
    case 2: value = scalar(pickFrom(random_, kScalarTypes)); break;
    default: value = object(true); break;
    }
    if (random_.percent(40)) return byReference(value);
    return value;
}

VARIANT Arguments::confinedText(Confined confined) {
    const Sandbox& sandbox = *objects_.sandbox;
    if (random_.percent(20)) {
        switch (random_.below(6)) {
        case 0: return make(VT_EMPTY);
        case 1: return make(VT_NULL);
        case 2: { VARIANT missing = make(VT_ERROR); V_ERROR(&missing) = DISP_E_PARAMNOTFOUND; return missing; }
        case 3: return array();
        case 4: { VARIANT null = make(VT_BYREF | random_.pick<VARTYPE>({VT_BSTR, VT_VARIANT})); return null; }
        default:
            if (confined != Confined::IniPath) return scalar(random_.pick<VARTYPE>({VT_I4, VT_R8, VT_BOOL, VT_DATE}));
            return make(VT_NULL);
        }
    }
    const std::wstring content = confined == Confined::FilePath  ? sandbox.filePath(random_)
                                 : confined == Confined::IniPath ? sandbox.iniPath(random_)
                                                                 : Sandbox::subKeyName(random_);
    VARIANT value = text(content);
    if (random_.percent(40)) return byReference(value);
    return value;
}

VARIANT Arguments::byReference(const VARIANT& value) {
    if (random_.percent(50) && (V_VT(&value) & ~VT_TYPEMASK) != VT_BYREF && com::IsVariantType(V_VT(&value))) {
        VARIANT* slot = box(value);
        VARIANT typed = make(static_cast<VARTYPE>(VT_BYREF | V_VT(&value)));
        V_BYREF(&typed) = V_VT(&value) == VT_DECIMAL ? static_cast<void*>(&V_DECIMAL(slot)) : payload(slot);
        return typed;
    }
    VARIANT reference = make(VT_BYREF | VT_VARIANT);
    V_VARIANTREF(&reference) = box(value);
    if (random_.percent(15)) {
        VARIANT outer = make(VT_BYREF | VT_VARIANT);
        V_VARIANTREF(&outer) = box(reference);
        return outer;
    }
    return reference;
}

VARIANT Arguments::forParameter(const Parameter& parameter) {
    if (parameter.confined == Confined::Destination) return destination();
    if (parameter.confined != Confined::No) return confinedText(parameter.confined);
    if (random_.percent(40)) return anything();
    VARIANT value = parameter.type == VT_DISPATCH ? object(false) : scalar(parameter.type);
    if (parameter.byReference || random_.percent(15)) return byReference(value);
    return value;
}

VARIANT Arguments::anything() {
    switch (random_.below(20)) {
    case 0: case 1: case 2: return text(HostileText(random_));
    case 3: case 4: return array();
    case 5: return object(false);
    case 6: case 7: return byReference(random_.percent(50) ? scalar(pickFrom(random_, kScalarTypes)) : array());
    case 8: {
        VARIANT null = make(static_cast<VARTYPE>(VT_BYREF | random_.pick<VARTYPE>({VT_VARIANT, VT_BSTR, VT_I4,
                                                                                   VT_DISPATCH, VT_ARRAY | VT_BSTR})));
        return null;
    }
    case 9: {
        VARIANT foreign = make(pickFrom(random_, kForeignTypes));
        return foreign;
    }
    default: return scalar(pickFrom(random_, kScalarTypes));
    }
}

std::string Arguments::describe(const VARIANT& value, int depth) const {
    const VARTYPE type = V_VT(&value);
    std::string out = "vt" + std::to_string(type);
    if (depth > 3) return out;
    if (type == VT_BSTR) {
        const BSTR text = V_BSTR(&value);
        if (!text) return out + "(null)";
        out += "(len " + std::to_string(SysStringLen(text)) + " \"";
        for (UINT i = 0; i < SysStringLen(text) && i < 24; ++i)
            out += text[i] >= 32 && text[i] < 127 ? static_cast<char>(text[i]) : '~';
        return out + "\")";
    }
    if (type == (VT_BYREF | VT_VARIANT)) {
        return V_VARIANTREF(&value) ? out + "->" + describe(*V_VARIANTREF(&value), depth + 1) : out + "(null)";
    }
    if (type & VT_BYREF) return V_BYREF(&value) ? out + "(ref)" : out + "(null)";
    if (type & VT_ARRAY) {
        SAFEARRAY* array = V_ARRAY(&value);
        if (!array) return out + "(null array)";
        out += "(dims " + std::to_string(SafeArrayGetDim(array));
        for (UINT d = 1; d <= SafeArrayGetDim(array); ++d) {
            LONG lower = 0, upper = 0;
            SafeArrayGetLBound(array, d, &lower);
            SafeArrayGetUBound(array, d, &upper);
            out += " " + std::to_string(lower) + ".." + std::to_string(upper);
        }
        return out + ")";
    }
    if (type == VT_DISPATCH || type == VT_UNKNOWN) return out + (V_DISPATCH(&value) ? "(object)" : "(nothing)");
    if (type == VT_I4) return out + "(" + std::to_string(V_I4(&value)) + ")";
    if (type == VT_R8) return out + "(" + std::to_string(V_R8(&value)) + ")";
    return out;
}

}  // namespace orbex::fuzz
