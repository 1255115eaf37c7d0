// Child processes by posix_spawn.
#include "childprocess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>

struct ChildProcess::State {
    pid_t process = 0;
    std::optional<std::string> end;
};

namespace {

std::string DescribeEnd(int status) {
    if (!WIFSIGNALED(status))
        return WEXITSTATUS(status) == 0 ? "" : "exit status " + std::to_string(WEXITSTATUS(status));
    const char* const name = sigabbrev_np(WTERMSIG(status));
    return "signal " + (name ? std::string(name) : std::to_string(WTERMSIG(status)));
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) : state_(std::make_unique<State>()) {
    std::string program = (GetDriverFolder() / "mvpthost-check").string();
    std::vector<std::string> texts = arguments;
    std::vector<char*> list = {program.data()};
    std::transform(texts.begin(), texts.end(), std::back_inserter(list), [](std::string& text) { return text.data(); });
    list.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const int error = posix_spawn(&state_->process, program.c_str(), &actions, nullptr, list.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw OperationError("'" + program + "' cannot be started for a check: " + std::strerror(error));
}

ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;

ChildProcess::~ChildProcess() {
    if (state_) Kill();
}

std::optional<std::string> ChildProcess::Poll() {
    int status = 0;
    if (!state_->end && waitpid(state_->process, &status, WNOHANG) == state_->process)
        state_->end = DescribeEnd(status);
    return state_->end;
}

void ChildProcess::Kill() {
    if (state_->end) return;
    kill(state_->process, SIGKILL);
    int status = 0;
    waitpid(state_->process, &status, 0);
    state_->end = DescribeEnd(status);
}

void PrepareForCrashes() {
    const rlimit none{};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}
