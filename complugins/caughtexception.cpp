// The report of a caught exception, as every operation that ends with one makes it.
#include <caughtexception.h>

#include <new>

void ReportCaughtException(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line) noexcept {
    const auto report = [&](const std::exception* exception) {
        MorvaneException::DisplayExceptionMessage(false, false, exception, sourceUnit, line, methodName,
                                                  UtilitiesDllPerThreadStorage::GetExecutionContextStack(), nullptr,
                                                  CXString(), CXString());
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
