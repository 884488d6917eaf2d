// RAII for the Automation resources the adapters handle: interface pointers, BSTRs, VARIANTs
// and SAFEARRAYs. Nothing is released by hand anywhere in the adapters.
#pragma once
#include <windows.h>
#include <oleauto.h>

#include <memory>
#include <utility>

namespace orbex::com {

template <class T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    explicit ComPtr(T* adopted) : p_(adopted) {}
    ComPtr(const ComPtr& other) : p_(other.p_) { if (p_) p_->AddRef(); }
    ComPtr(ComPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept { std::swap(p_, other.p_); return *this; }
    ~ComPtr() { if (p_) p_->Release(); }

    static ComPtr share(T* borrowed) { if (borrowed) borrowed->AddRef(); return ComPtr(borrowed); }

    T* get() const { return p_; }
    T* operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    T** put() { *this = nullptr; return &p_; }
    T* detach() { return std::exchange(p_, nullptr); }

private:
    T* p_ = nullptr;
};

struct BstrFree {
    void operator()(BSTR text) const { SysFreeString(text); }
};
using UniqueBstr = std::unique_ptr<OLECHAR, BstrFree>;

struct SafeArrayFree {
    void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using UniqueSafeArray = std::unique_ptr<SAFEARRAY, SafeArrayFree>;

class UniqueVariant {
public:
    UniqueVariant() { VariantInit(&value_); }
    ~UniqueVariant() { VariantClear(&value_); }
    UniqueVariant(const UniqueVariant&) = delete;
    UniqueVariant& operator=(const UniqueVariant&) = delete;

    VARIANT* get() { return &value_; }
    const VARIANT* get() const { return &value_; }
    VARIANT* put() { VariantClear(&value_); return &value_; }
    VARIANT release() { VARIANT out = value_; VariantInit(&value_); return out; }

private:
    VARIANT value_;
};

}  // namespace orbex::com
