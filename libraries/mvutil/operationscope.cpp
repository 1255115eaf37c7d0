// OperationScope, and the memory of the operation that a thread is in.
#include <mvutil/operationscope.h>

#include "operationmemory.h"

#include <perthread.h>

namespace {

struct Operation {
    unsigned scopes = 0;
    OperationMemory memory;
};

Operation& GetOperation() {
    static PerThread<Operation> operations;
    return operations.Get();
}

}  // namespace

OperationScope::OperationScope() { ++GetOperation().scopes; }

OperationScope::~OperationScope() {
    Operation& operation = GetOperation();
    if (--operation.scopes == 0) operation.memory = OperationMemory();
}

OperationMemory* GetOperationMemory() {
    Operation& operation = GetOperation();
    return operation.scopes == 0 ? nullptr : &operation.memory;
}
