// How the component throws: over the driver family's throwing scheme, with an empty message.
#pragma once

#include <mvutil/throwfailure.h>

// Line numbers: where a call hands one in, that number is fixed. It identifies the throw to those who read reports of
// the component, whatever line the call has moved to, and is neither computed nor corrected. Without one it is the
// call's own line.

// The message of all: a format without arguments, or a text that says so where even that cannot be formatted.
CXString MakeEmptyMessage();

// Throws a MorvaneComException that carries the HRESULT.
// methodName: class name, two colons, method name. sourceUnit: the unit's file without ending.
[[noreturn]] void ThrowComException(const WCHAR* methodName, HRESULT hr, const WCHAR* sourceUnit,
                                    LONG line = __builtin_LINE());

// Throws an exception that carries nothing but its text, place and contexts.
template <class Exception>
[[noreturn]] void ThrowException(Exception (*factory)(const CXString&, const CXString&, LONG, const CXString&,
                                                      const ExecutionContextStack&),
                                 const WCHAR* methodName, const WCHAR* sourceUnit, LONG line = __builtin_LINE()) {
    ThrowFailure(factory, MakeEmptyMessage(), methodName, sourceUnit, line);
}

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
