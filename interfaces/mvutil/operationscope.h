// OperationScope: an operation within which a printer stays as it is.
#pragma once

#include <mvutil/mvutilapi.h>

// As long as one lives, the calling thread asks the system once for a printer's record, its driver's record, its forms,
// its product, its cached values and the hive that they lie in, and remembers what was answered. What this library
// writes of them is seen afterwards; what others write is seen by the next operation. What failed is asked for again. A
// scope inside another one belongs to the outer one's operation; nothing is kept past the outermost.
class MVUTIL_API OperationScope {
public:
    OperationScope();  // throws std::bad_alloc
    ~OperationScope();
    OperationScope(const OperationScope&) = delete;
    OperationScope& operator=(const OperationScope&) = delete;
};
