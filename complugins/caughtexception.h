// The report of a caught exception, as every operation that ends with one makes it.
#pragma once

#include <mvutil/morvaneexception.h>

// Reports the exception that is being handled, once, through MorvaneException::DisplayExceptionMessage; never throws.
// To be called inside a catch (...) block. Lack of memory is reported as a new std::bad_alloc, any other std::exception
// as itself, and anything else without an exception object.
void ReportCaughtException(const WCHAR* methodName, const WCHAR* sourceUnit, LONG line = __builtin_LINE()) noexcept;
