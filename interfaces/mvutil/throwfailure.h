// The throwing scheme of the driver family: every exception of its own is made and thrown here.
#pragma once

#include <mvutil/morvaneexception.h>

#include <type_traits>

// Throws what the factory makes of the message, the place and the calling thread's context stack, and of further
// arguments where the factory takes any. MorvaneException::AllowForExceptionDebug is asked first, and the debugger is
// entered when it says so.
// methodName: class name, two colons, method name. sourceUnit: the unit's file without ending.
template <class Exception, class... Further>
[[noreturn]] void ThrowFailure(Exception (*factory)(const CXString&, const CXString&, LONG, const CXString&,
                                                    const ExecutionContextStack&, Further...),
                               const CXString& message, const WCHAR* methodName, const WCHAR* sourceUnit,
                               LONG line = __builtin_LINE(), std::type_identity_t<Further>... further) {
    const WCHAR* const className = Exception::kClassName;
    const CXString trace = CXString(W("*Throwing* ")) + className + W(": ") + message;
    const ExecutionContextStack& contexts = UtilitiesDllPerThreadStorage::GetExecutionContextStack();
    if (MorvaneException::AllowForExceptionDebug(className, trace, sourceUnit, line, methodName, contexts,
                                                 ExceptionCategories(0))) {
        DebugBreak();
    }
    throw factory(message, sourceUnit, line, methodName, contexts, further...);
}
