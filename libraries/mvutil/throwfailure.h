// How this library throws: the debug hook first, then what the factory makes.
#pragma once

#include <mvutil/morvaneexception.h>

#include <widetext.h>

template <class Exception>
[[noreturn]] void ThrowFailure(Exception (*factory)(const CXString&, const CXString&, LONG, const CXString&,
                                                    const ExecutionContextStack&),
                               const CXString& message, const WCHAR* sourceUnit, const WCHAR* methodName,
                               LONG line = __builtin_LINE()) {
    const ExecutionContextStack& contexts = UtilitiesDllPerThreadStorage::GetExecutionContextStack();
    const Exception exception = factory(message, sourceUnit, line, methodName, contexts);
    const CXString className(exception.GetClassName());
    const CXString trace = CXString(W("*Throwing* ")) + className + W(": ") + message;
    if (MorvaneException::AllowForExceptionDebug(className, trace, sourceUnit, line, methodName, contexts,
                                                 ExceptionCategories(0))) {
        DebugBreak();
    }
    throw exception;
}
