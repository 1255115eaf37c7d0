// The failures that end a command: each one carries the sentence that the user reads and the exit status.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;  // an operation failed
inline constexpr int kExitUsage = 2;   // usage, or input that cannot be read

// Base of both; the text is UTF-8, one plain sentence that says what to do.
class HostError : public std::runtime_error {
public:
    HostError(int exitStatus, const std::string& sentence) : std::runtime_error(sentence), exitStatus_(exitStatus) {}
    int GetExitStatus() const noexcept { return exitStatus_; }

private:
    int exitStatus_;
};

// The command line or a file that it names is not usable; nothing was changed.
class InputError : public HostError {
public:
    explicit InputError(const std::string& sentence) : HostError(kExitUsage, sentence) {}

protected:
    using HostError::HostError;
};

// What the command line names is not there: a printer, a product, a form, a paper. Nothing was changed.
class NotFoundError : public InputError {
public:
    explicit NotFoundError(const std::string& sentence) : InputError(kExitFailed, sentence) {}
};

// An operation was tried and failed.
class OperationError : public HostError {
public:
    explicit OperationError(const std::string& sentence) : HostError(kExitFailed, sentence) {}
    // "<operation> answered <name> (<number>)<hint>"
    OperationError(const std::string& operation, HRESULT result, const std::string& hint = std::string());

    HRESULT GetResult() const noexcept { return result_; }  // E_FAIL where there was none

private:
    HRESULT result_ = E_FAIL;
};
