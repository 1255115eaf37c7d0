// ComPtr: one counted reference to a COM object.
#pragma once

#include <unknwn.h>

#include <utility>

template <class T>
class ComPtr {
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    ComPtr(const ComPtr& other) noexcept : pointer_(other.pointer_) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() { Reset(); }

    // Takes over a reference that the caller holds.
    static ComPtr Adopt(T* pointer) noexcept {
        ComPtr result;
        result.pointer_ = pointer;
        return result;
    }
    // Adds a reference of its own.
    static ComPtr Share(T* pointer) noexcept {
        if (pointer) pointer->AddRef();
        return Adopt(pointer);
    }

    T* Get() const noexcept { return pointer_; }
    T* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }
    // For an out argument: releases what is held first.
    T** Put() noexcept {
        Reset();
        return &pointer_;
    }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    T* Detach() noexcept { return std::exchange(pointer_, nullptr); }
    void Reset() noexcept {
        if (T* pointer = std::exchange(pointer_, nullptr)) pointer->Release();
    }

    // The object's other interface, or null when it has none.
    template <class U>
    ComPtr<U> As(REFIID iid) const noexcept {
        ComPtr<U> other;
        if (pointer_ && FAILED(pointer_->QueryInterface(iid, other.PutVoid()))) return nullptr;
        return other;
    }

private:
    T* pointer_ = nullptr;
};
