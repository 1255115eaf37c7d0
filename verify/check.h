// A check of a PrintTicket provider: a name, a sentence and a function. Each lies in a file of its own below checks/
// and registers itself there.
#pragma once

#include <vector>

class TestBench;

enum class CheckGroup { Contract, Memory, Documents, RoundTrip, Damage, Faults, Concurrency, Time };

// As reports and command lines name the group: "contract", "round trip".
const char* NameOfGroup(CheckGroup group);

struct Check {
    CheckGroup group;
    const char* name;  // lower-case words with hyphens, unique
    const char* what;  // what it tries, one line without a final full stop
    // Returns when the check passed. Throws CheckFailure, CheckNotApplicable, or what the print subsystem's functions
    // throw, which is a failure too.
    void (*run)(TestBench& bench);
    bool isAlone = false;  // measures times: no other check may run beside it
};

// A static object of a check's file: adds the check to those that there are.
class CheckRegistration {
public:
    CheckRegistration(const Check& check);  // also of a list of checks
};

// By group, and within a group by name.
std::vector<Check> ListChecks();
