// Message, debug hook, factory and throw, once for all exception classes.
#include <throwscheme.h>

#include <mvutil/morvaneutilities.h>

namespace {

constexpr const WCHAR* kUnformattableMessage =
    W("A message argument was supplied, but the resulting string is empty. The argument list for this message causes a "
      "crash. Some code that executes to marshal the arguments to pass to the format string method causes a crash "
      "(e.g., a NULL pointer indirection). Look at the message arguments at the file and line number indicated above.");

CXString MakeMessage() {
    try {
        return MorvaneUtilities::SafeFormatString(W(""));
    } catch (...) {
        return kUnformattableMessage;
    }
}

// The name of an exception class and its factory.
template <class Exception>
struct Throwable;

#define MV_THROWABLE(name)                                   \
    template <>                                              \
    struct Throwable<name> {                                 \
        static constexpr const WCHAR* kClassName = W(#name); \
        template <class... Arguments>                        \
        static name Make(const Arguments&... arguments) {    \
            return Get##name(arguments...);                  \
        }                                                    \
    }
MV_THROWABLE(MorvaneComException);
MV_THROWABLE(ExceptionInvalidArgumentNullPointer);
MV_THROWABLE(ExceptionInvalidPrinterHandle);
MV_THROWABLE(ExceptionWorkflowObjectNotInitialized);
MV_THROWABLE(ExceptionDelayLoadDllLoadFailure);
#undef MV_THROWABLE

template <class Exception, class... Extra>
[[noreturn]] void Throw(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line, const Extra&... extra) {
    const WCHAR* const className = Throwable<Exception>::kClassName;
    const CXString message = MakeMessage();
    const CXString trace = MorvaneUtilities::SafeFormatString(W("*Throwing* %s: %s"), className, message);
    const ExecutionContextStack& contexts = UtilitiesDllPerThreadStorage::GetExecutionContextStack();
    if (MorvaneException::AllowForExceptionDebug(className, trace.GetString(), sourceUnit, line, methodName, contexts,
                                                 ExceptionCategories(0))) {
        DebugBreak();
    }
    throw Throwable<Exception>::Make(message, CXString(sourceUnit), line, CXString(methodName), contexts, extra...);
}

}  // namespace

void ThrowComException(const WCHAR* methodName, HRESULT hr, const WCHAR* sourceUnit, LONG line) {
    Throw<MorvaneComException>(methodName, sourceUnit, line, hr);
}

template <class Exception>
void ThrowException(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line) {
    Throw<Exception>(methodName, sourceUnit, line);
}

template void ThrowException<ExceptionInvalidArgumentNullPointer>(const WCHAR*, const WCHAR*, LONG);
template void ThrowException<ExceptionInvalidPrinterHandle>(const WCHAR*, const WCHAR*, LONG);
template void ThrowException<ExceptionWorkflowObjectNotInitialized>(const WCHAR*, const WCHAR*, LONG);
template void ThrowException<ExceptionDelayLoadDllLoadFailure>(const WCHAR*, const WCHAR*, LONG);
