// Child processes by CreateProcessW.
#include "childprocess.h"

#include <uniquehandle.h>
#include <widetext.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>

struct ChildProcess::State {
    HANDLE process = nullptr;
    std::optional<std::string> end;

    ~State() {
        if (process) CloseHandle(process);
    }
};

namespace {

// As the C runtime of the child takes it apart again: quotes and the backslashes before them are doubled.
WideString Quote(const WideString& argument) {
    WideString quoted = W("\"");
    std::size_t backslashes = 0;
    for (const WCHAR character : argument) {
        if (character == W('"')) quoted.append(backslashes + 1, W('\\'));
        backslashes = character == W('\\') ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, W('\\'));
    return quoted + W('"');
}

LONG WINAPI EndAtOnce(EXCEPTION_POINTERS* exception) {
    TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

// All children of this process: they end with it, when the last handle of the job is closed. Null when that cannot be.
HANDLE GetJob() {
    static const HANDLE job = [] {
        const HANDLE made = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        if (made) SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
        return made;
    }();
    return job;
}

std::string DescribeEnd(DWORD code) {
    constexpr DWORD kFirstException = 0xC0000000;
    if (code == 0) return "";
    return code >= kFirstException ? "exception " + FormatHex(code, 8) : "exit status " + std::to_string(code);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) : state_(std::make_unique<State>()) {
    const WideString program = (GetProgramFolder() / "mvpthost.exe").wstring();
    WideString commandLine = Quote(program);
    for (const std::string& argument : arguments) commandLine += W(" ") + Quote(ArgumentToWide(argument));
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    const HANDLE nowhere =
        CreateFileW(W("NUL"), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = nowhere;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION made{};
    const BOOL started =
        CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made);
    const DWORD error = GetLastError();
    if (nowhere != INVALID_HANDLE_VALUE) CloseHandle(nowhere);
    if (!started)
        throw OperationError("'" + ToUtf8(program) + "' cannot be started for a check: error " + std::to_string(error));
    if (const HANDLE job = GetJob()) AssignProcessToJobObject(job, made.hProcess);
    CloseHandle(made.hThread);
    state_->process = made.hProcess;
}

ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;

ChildProcess::~ChildProcess() {
    if (state_) Kill();
}

std::optional<std::string> ChildProcess::Poll() {
    DWORD code = 0;
    if (!state_->end && WaitForSingleObject(state_->process, 0) == WAIT_OBJECT_0 &&
        GetExitCodeProcess(state_->process, &code))
        state_->end = DescribeEnd(code);
    return state_->end;
}

void ChildProcess::Kill() {
    if (state_->end) return;
    TerminateProcess(state_->process, 1);
    WaitForSingleObject(state_->process, INFINITE);
    state_->end = DescribeEnd(1);
}

void PrepareForCrashes() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(EndAtOnce);
}
