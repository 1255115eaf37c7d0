// The throwing scheme of the driver: every exception of the component's own is made and thrown here, and nowhere else.
#pragma once

#include <mvutil/morvaneexception.h>

// Throws a MorvaneComException that carries the HRESULT, with an empty message and the calling thread's context stack;
// MorvaneException::AllowForExceptionDebug is asked first, and the debugger is entered when it says so.
// methodName: class name, two colons, method name. sourceUnit: the unit's file without ending.
[[noreturn]] void ThrowComException(const WCHAR* methodName, HRESULT hr, const WCHAR* sourceUnit,
                                    LONG line = __builtin_LINE());

// Throws an exception that carries nothing but its text, place and contexts, in the same way. Defined for
// ExceptionInvalidArgumentNullPointer, ExceptionInvalidPrinterHandle, ExceptionWorkflowObjectNotInitialized and
// ExceptionDelayLoadDllLoadFailure.
template <class Exception>
[[noreturn]] void ThrowException(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line = __builtin_LINE());

// The checks of one method: each throws that method's MorvaneComException, or does nothing.
class ComChecks {
public:
    constexpr ComChecks(const WCHAR* methodName, const WCHAR* sourceUnit) noexcept
        : methodName_(methodName), sourceUnit_(sourceUnit) {}

    [[noreturn]] void Throw(HRESULT hr, LONG line = __builtin_LINE()) const {
        ThrowComException(methodName_, hr, sourceUnit_, line);
    }
    // Throws a negative HRESULT; hands any other through.
    HRESULT Succeeds(HRESULT hr, LONG line = __builtin_LINE()) const {
        if (FAILED(hr)) Throw(hr, line);
        return hr;
    }
    // Throws the HRESULT unless the condition holds.
    void Require(bool condition, HRESULT hr, LONG line = __builtin_LINE()) const {
        if (!condition) Throw(hr, line);
    }

private:
    const WCHAR* methodName_;
    const WCHAR* sourceUnit_;
};
