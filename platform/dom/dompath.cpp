// Reading a path and walking a tree along it.
#include "dompath.h"

#include "domname.h"
#include "domnode.h"

#include <algorithm>

namespace dom {
namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsNameCharacter(char c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

bool HasName(const xmlNode* node, const std::string& uri, const std::string& local) {
    return node->name[0] == static_cast<unsigned char>(local[0]) && ViewOf(node->name) == local &&
           (node->ns ? ViewOf(node->ns->href) : std::string_view()) == uri;
}

}  // namespace

// Reads names of ASCII letters only; whatever it does not know makes it give up.
class PathQuery::Reader {
public:
    Reader(std::string_view text, const Bindings& bindings) : text_(text), bindings_(bindings) {}

    bool Read(PathQuery* query) {
        do {
            SkipBlanks();
            const bool isAbsolute = Peek() == '/';
            if (!query->steps_.empty() && isAbsolute != query->isAbsolute_) return false;
            query->isAbsolute_ = isAbsolute;
            if (!ReadPath(query)) return false;
            SkipBlanks();
        } while (Take('|'));
        return at_ == text_.size();
    }

private:
    bool ReadPath(PathQuery* query) {
        StepSet before = kStart;
        bool isChild = !Take('/') || !Take('/');
        do {
            if (query->steps_.size() == kMaximumSteps) return false;
            Step step{before, isChild, false, {}, {}};
            if (!ReadStep(&step)) return false;
            (isChild ? query->beforeChild_ : query->beforeDescendant_) |= before;
            before = StepSet{1} << query->steps_.size();
            query->steps_.push_back(std::move(step));
            if (!Take('/')) break;
            isChild = !Take('/');
        } while (true);
        query->last_ |= before;
        return true;
    }
    bool ReadStep(Step* step) {
        step->isAny = Take('*');
        if (!step->isAny && !ReadName(&step->name)) return false;
        while (Take('[')) {
            Condition condition;
            if (!Take('@') || !ReadName(&condition.attribute)) return false;
            SkipBlanks();
            if (Take('=')) {
                SkipBlanks();
                if (!ReadLiteral(&condition.value)) return false;
                SkipBlanks();
            }
            if (!Take(']')) return false;
            step->conditions.push_back(std::move(condition));
        }
        return true;
    }
    bool ReadName(Name* name) {
        name->local = ReadWord();
        if (!name->local.empty() && Take(':')) {
            name->uri = bindings_(name->local);
            if (name->uri.empty()) return false;
            name->local = ReadWord();
        }
        return !name->local.empty() && Peek() != '(' && Peek() != ':';
    }
    std::string ReadWord() {
        const std::size_t start = at_;
        if (IsLetter(Peek())) {
            while (IsNameCharacter(Peek())) ++at_;
        }
        return std::string(text_.substr(start, at_ - start));
    }
    bool ReadLiteral(std::optional<std::string>* literal) {
        const char quote = Peek();
        const std::size_t end = quote == '"' || quote == '\'' ? text_.find(quote, at_ + 1) : std::string_view::npos;
        if (end == std::string_view::npos) return false;
        *literal = text_.substr(at_ + 1, end - at_ - 1);
        at_ = end + 1;
        return true;
    }
    char Peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    bool Take(char c) {
        if (Peek() != c) return false;
        ++at_;
        return true;
    }
    void SkipBlanks() {
        while (Take(' ')) continue;
    }

    const std::string_view text_;
    const Bindings& bindings_;
    std::size_t at_ = 0;
};

std::optional<PathQuery> PathQuery::Read(std::string_view query, const Bindings& bindings) {
    PathQuery path;
    if (!Reader(query, bindings).Read(&path)) return std::nullopt;
    return path;
}

bool PathQuery::Meets(const xmlNode* element, const Step& step) {
    if (!step.isAny && !HasName(element, step.name.uri, step.name.local)) return false;
    return std::all_of(step.conditions.begin(), step.conditions.end(), [element](const Condition& condition) {
        for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
            const auto* const node = reinterpret_cast<const xmlNode*>(attribute);
            if (IsDeclaration(attribute) || !HasName(node, condition.attribute.uri, condition.attribute.local))
                continue;
            return !condition.value || AttributeText(attribute) == *condition.value;
        }
        return false;
    });
}

PathQuery::StepSet PathQuery::Reach(const xmlNode* element, const Level& level) const {
    StepSet reached = 0;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const Step& step = steps_[i];
        if (((step.isChild ? level.parent : level.above) & step.after) != 0 && Meets(element, step))
            reached |= StepSet{1} << i;
    }
    return reached;
}

void PathQuery::Select(xmlNode* from, std::size_t limit, std::vector<xmlNode*>* found) const {
    xmlNode* node = FirstChildOf(isAbsolute_ ? AsNode(from->doc) : from);
    std::vector<Level> levels = {{kStart, kStart}};
    while (node) {
        if (node->type == XML_ELEMENT_NODE) {
            const StepSet reached = Reach(node, levels.back());
            if ((reached & last_) != 0) {
                found->push_back(node);
                if (found->size() == limit) return;
            }
            const Level below{reached, levels.back().above | reached};
            const bool canFind = (below.parent & beforeChild_) != 0 || (below.above & beforeDescendant_) != 0;
            if (canFind && node->children) {
                levels.push_back(below);
                node = node->children;
                continue;
            }
        }
        while (!node->next && levels.size() > 1) {
            levels.pop_back();
            node = node->parent;
        }
        node = node->next;
    }
}

}  // namespace dom
