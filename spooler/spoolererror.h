// SpoolerError and the wall that every exported function stands behind.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <new>

// A call that fails with that system error.
struct SpoolerError {
    DWORD code;
};

inline void Require(bool holds, DWORD code) {
    if (!holds) throw SpoolerError{code};
}

// Runs the operation; the system error it failed with, or ERROR_SUCCESS.
template <class Operation>
DWORD RunGuarded(Operation operation) noexcept {
    try {
        operation();
        return ERROR_SUCCESS;
    } catch (const SpoolerError& error) {
        return error.code;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (...) {
        return ERROR_INVALID_DATA;
    }
}

// The same for functions that answer TRUE or FALSE and leave the error to GetLastError.
template <class Operation>
BOOL AnswerGuarded(Operation operation) noexcept {
    const DWORD error = RunGuarded(operation);
    if (error == ERROR_SUCCESS) return TRUE;
    SetLastError(error);
    return FALSE;
}
