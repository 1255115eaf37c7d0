// Functions below a provider that can be made to fail: memory, texts, the registry, the spooler. Only a program that
// stands in for them can do that; natively it is the one that checks run in.
#pragma once

enum class FailingFunction { Memory, Text, Registry, Spooler };
inline constexpr int kFailingFunctions = 4;

// Calls by this thread alone count.
class FailingFunctions {
public:
    virtual ~FailingFunctions() = default;
    // From now on the n-th call fails, once; 0: none does. Calls are counted anew.
    virtual void Arm(FailingFunction function, long n) = 0;
    // The calls since then; none fails any more.
    virtual long Disarm(FailingFunction function) = 0;
};

// Null in a program that does not stand in for them.
FailingFunctions* GetFailingFunctions();
void SetFailingFunctions(FailingFunctions* functions);
