// The report of a caught exception, as every operation that ends with one makes it.
#include <caughtexception.h>

#include <new>

void ReportCaughtException(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line) noexcept {
    const ExecutionContextStack none;
    const ExecutionContextStack* contexts = &none;
    try {
        contexts = &UtilitiesDllPerThreadStorage::GetExecutionContextStack();
    } catch (const std::bad_alloc&) {
        // A thread's first question makes its stack, which then is empty anyway.
    }
    const auto report = [&](const std::exception* exception) {
        MorvaneException::DisplayExceptionMessage(false, false, exception, sourceUnit, line, methodName, *contexts,
                                                  nullptr, CXString(), CXString());
    };
    try {
        throw;
    } catch (const std::bad_alloc&) {
        const std::bad_alloc lackOfMemory;
        report(&lackOfMemory);
    } catch (const std::exception& exception) {
        report(&exception);
    } catch (...) {
        report(nullptr);
    }
}
