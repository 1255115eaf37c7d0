// The list of all checks.
#include "check.h"

#include <algorithm>
#include <string_view>

namespace {

// Made at first use: the checks' static objects register themselves in any order.
std::vector<Check>& GetRegistered() {
    static std::vector<Check> checks;
    return checks;
}

}  // namespace

const char* NameOfGroup(CheckGroup group) {
    switch (group) {
        case CheckGroup::Contract:
            return "contract";
        case CheckGroup::Memory:
            return "memory";
        case CheckGroup::Documents:
            return "documents";
        case CheckGroup::RoundTrip:
            return "round trip";
        case CheckGroup::Damage:
            return "damage";
        case CheckGroup::Faults:
            return "faults";
        case CheckGroup::Concurrency:
            return "concurrency";
        case CheckGroup::Time:
            return "time";
    }
    return "";
}

CheckRegistration::CheckRegistration(const Check& check) { GetRegistered().push_back(check); }

std::vector<Check> ListChecks() {
    std::vector<Check> checks = GetRegistered();
    std::sort(checks.begin(), checks.end(), [](const Check& a, const Check& b) {
        return a.group != b.group ? a.group < b.group : std::string_view(a.name) < b.name;
    });
    return checks;
}
