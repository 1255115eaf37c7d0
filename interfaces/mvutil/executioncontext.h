// Execution contexts: what a thread is doing, named in every report of a failure.
#pragma once

#include <mvutil/cxstring.h>

#include <vector>

// A numbered step of the driver's work.
class MVUTIL_API BasicExecutionContext {
public:
    BasicExecutionContext(LONG id, const CXString& name, const CXString& sourceFile);

    LONG GetId() const noexcept { return id_; }
    const CXString& GetName() const noexcept { return name_; }
    const CXString& GetSourceFile() const noexcept { return sourceFile_; }

private:
    LONG id_;
    CXString name_;
    CXString sourceFile_;
};

// The steps that a thread is in, outermost first.
class MVUTIL_API ExecutionContextStack {
public:
    void Push(const BasicExecutionContext& context);
    void Pop() noexcept;  // does nothing on an empty stack
    const std::vector<BasicExecutionContext>& GetContexts() const noexcept { return contexts_; }

private:
    std::vector<BasicExecutionContext> contexts_;
};

// Keeps a context on the calling thread's stack for its own lifetime.
class MVUTIL_API ExecutionContextLifetime {
public:
    explicit ExecutionContextLifetime(const BasicExecutionContext& context);
    ~ExecutionContextLifetime();
    ExecutionContextLifetime(const ExecutionContextLifetime&) = delete;
    ExecutionContextLifetime& operator=(const ExecutionContextLifetime&) = delete;
};

class MVUTIL_API UtilitiesDllPerThreadStorage {
public:
    // The calling thread's stack; it lives as long as the thread.
    static ExecutionContextStack& GetExecutionContextStack();
};
