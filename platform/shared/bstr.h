// Bstr and Variant: owners of a BSTR and of a VARIANT.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string_view>
#include <utility>

// An owned BSTR; null stands for the empty text.
class Bstr {
public:
    Bstr() noexcept = default;
    // Copies. Throws std::bad_alloc when there is no memory; an empty text gives an allocated, empty BSTR.
    explicit Bstr(WideStringView text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (!text_) throw std::bad_alloc();
    }
    Bstr(const Bstr& other) : text_(other.text_ ? Bstr(other.View()).Detach() : nullptr) {}
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { Reset(); }

    BSTR Get() const noexcept { return text_; }
    WideStringView View() const noexcept {
        return text_ ? WideStringView(text_, SysStringLen(text_)) : WideStringView();
    }
    bool IsEmpty() const noexcept { return View().empty(); }
    // For an out argument: frees what is held first.
    BSTR* Put() noexcept {
        Reset();
        return &text_;
    }
    BSTR Detach() noexcept { return std::exchange(text_, nullptr); }
    void Reset() noexcept { SysFreeString(std::exchange(text_, nullptr)); }

private:
    BSTR text_ = nullptr;
};

// An owned VARIANT.
class Variant {
public:
    Variant() noexcept { VariantInit(&value_); }
    explicit Variant(WideStringView text) : Variant() {
        value_.bstrVal = Bstr(text).Detach();
        value_.vt = VT_BSTR;
    }
    explicit Variant(Bstr text) noexcept : Variant() {
        value_.bstrVal = text.Detach();
        value_.vt = VT_BSTR;
    }
    explicit Variant(LONG number) : Variant() {
        value_.lVal = number;
        value_.vt = VT_I4;
    }
    // Adds a reference; null gives a null VT_DISPATCH.
    explicit Variant(IDispatch* object) : Variant() {
        if (object) object->AddRef();
        value_.pdispVal = object;
        value_.vt = VT_DISPATCH;
    }
    Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&value_); }

    // By value, as COM calls take it; the variant stays the owner.
    VARIANT Get() const noexcept { return value_; }
    VARIANT* Put() noexcept {
        VariantClear(&value_);
        return &value_;
    }
    bool IsText() const noexcept { return value_.vt == VT_BSTR; }
    WideStringView Text() const noexcept {
        return IsText() && value_.bstrVal ? WideStringView(value_.bstrVal, SysStringLen(value_.bstrVal))
                                          : WideStringView();
    }

private:
    VARIANT value_;
};
