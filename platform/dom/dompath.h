// PathQuery: queries that are paths of named steps with conditions on attributes, answered in one walk.
#pragma once

#include "domtree.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dom {

// "/p:a//p:b[@name = 'x'] | /p:c" and their like: nearly all queries of Print Schema documents. XPath finds the same,
// but looks from each node anew, puts what it found in order afterwards and never stops early.
class PathQuery {
public:
    // The URI that a prefix is bound to in queries; empty for none.
    using Bindings = std::function<std::string_view(const std::string& prefix)>;

    // Nothing for a query of another kind or with a prefix that is not bound.
    static std::optional<PathQuery> Read(std::string_view query, const Bindings& bindings);

    // Adds the elements that it selects from the node, in document order, up to that many.
    void Select(xmlNode* from, std::size_t limit, std::vector<xmlNode*>* found) const;

private:
    class Reader;
    // A set of steps, by their places in steps_; the last bit stands for the node from which the query starts.
    using StepSet = std::uint64_t;
    static constexpr std::size_t kMaximumSteps = 63;
    static constexpr StepSet kStart = StepSet{1} << kMaximumSteps;

    struct Name {
        std::string uri;  // empty: no namespace
        std::string local;
    };
    struct Condition {
        Name attribute;
        std::optional<std::string> value;  // none: the attribute is there
    };
    struct Step {
        StepSet after;       // the one in front of it
        bool isChild;        // else any descendant
        bool isAny = false;  // else of the name
        Name name;
        std::vector<Condition> conditions;
    };
    // What was reached at the parent of the nodes that come next, and at it or any node above.
    struct Level {
        StepSet parent;
        StepSet above;
    };

    StepSet Reach(const xmlNode* element, const Level& level) const;
    static bool Meets(const xmlNode* element, const Step& step);

    std::vector<Step> steps_;
    StepSet last_ = 0;              // the last steps of the paths
    StepSet beforeChild_ = 0;       // what a child step comes after
    StepSet beforeDescendant_ = 0;  // what another step comes after
    bool isAbsolute_ = false;
};

}  // namespace dom
