// The component's exceptions over the driver family's throwing scheme.
#include <throwscheme.h>

#include <mvutil/morvaneutilities.h>

namespace {

constexpr const WCHAR* kUnformattableMessage =
    W("A message argument was supplied, but the resulting string is empty. The argument list for this message causes a "
      "crash. Some code that executes to marshal the arguments to pass to the format string method causes a crash "
      "(e.g., a NULL pointer indirection). Look at the message arguments at the file and line number indicated above.");

}  // namespace

CXString MakeEmptyMessage() {
    try {
        return MorvaneUtilities::SafeFormatString(W(""));
    } catch (...) {
        return kUnformattableMessage;
    }
}

void ThrowComException(const WCHAR* methodName, HRESULT hr, const WCHAR* sourceUnit, LONG line) {
    ThrowFailure(&GetMorvaneComException, MakeEmptyMessage(), methodName, sourceUnit, line, hr);
}
