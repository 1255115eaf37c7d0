// Execution contexts: what a thread is doing, named in every report of a failure.
#include <mvutil/executioncontext.h>

#include <perthread.h>

BasicExecutionContext::BasicExecutionContext(LONG id, const CXString& name, const CXString& sourceFile)
    : id_(id), name_(name), sourceFile_(sourceFile) {}

void ExecutionContextStack::Push(const BasicExecutionContext& context) { contexts_.push_back(context); }

void ExecutionContextStack::Pop() noexcept {
    if (!contexts_.empty()) contexts_.pop_back();
}

ExecutionContextLifetime::ExecutionContextLifetime(const BasicExecutionContext& context) {
    UtilitiesDllPerThreadStorage::GetExecutionContextStack().Push(context);
}

ExecutionContextLifetime::~ExecutionContextLifetime() {
    UtilitiesDllPerThreadStorage::GetExecutionContextStack().Pop();
}

ExecutionContextStack& UtilitiesDllPerThreadStorage::GetExecutionContextStack() {
    static PerThread<ExecutionContextStack> stacks;
    return stacks.Get();
}
