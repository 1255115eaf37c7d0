// UniqueHandle: owners of registry keys, modules and other handles, one alias a resource.
#pragma once

#include <windows.h>

#include <utility>

template <class Handle, class Closer>
class UniqueHandle {
public:
    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle handle) noexcept : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, Handle())) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~UniqueHandle() { Reset(); }

    Handle Get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != Handle(); }
    Handle* Put() noexcept {
        Reset();
        return &handle_;
    }
    Handle Detach() noexcept { return std::exchange(handle_, Handle()); }
    void Reset() noexcept {
        if (Handle handle = std::exchange(handle_, Handle())) Closer()(handle);
    }

private:
    Handle handle_ = Handle();
};

struct CloseRegistryKey {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
struct FreeModule {
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
using UniqueKey = UniqueHandle<HKEY, CloseRegistryKey>;
using UniqueModule = UniqueHandle<HMODULE, FreeModule>;
