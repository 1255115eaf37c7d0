// What a Print Schema document selects or offers.
#include "schemasettings.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/printschemanamespaces.h>
#include <facts/privateparameters.h>
#include <printsubsystem/printschema.h>
#include "hosttext.h"

#include <functional>
#include <map>

namespace {

// Elements deeper than that are no settings of any document that can be read.
constexpr int kMaximumDepth = 32;

std::string Trim(const std::string& text) {
    constexpr const char* kSpace = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kSpace);
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

std::optional<std::int64_t> ParseDecimal(const std::string& text) {
    if (text.find_first_not_of("-0123456789") != std::string::npos) return std::nullopt;
    return ParseNumber(text);
}

// Reads a document in one walk; prefixes are resolved by the declarations met on the way down.
class Walk {
public:
    explicit Walk(std::vector<SchemaSetting>& settings) : settings_(settings) {}

    void ReadRoot(IXMLDOMNode* root) {
        const Scope scope(*this, root);
        for (const auto& [prefix, uris] : uris_)
            if (uris.back() == facts::kPrivateKeywordsNamespace) privateIsDeclared_ = true;
        ForEachChild(root, [&](IXMLDOMNode* child, const std::string& element) {
            if (element == "Feature") ReadFeature(child, std::string(), 0);
            if (element == "Property") Add(SchemaSetting::Kind::Property, child);
            if (element == "ParameterInit" || element == "ParameterDef") {
                SchemaSetting& parameter = Add(SchemaSetting::Kind::Parameter, child);
                parameter.text = ReadValue(child);
            }
        });
        ResolveReferences();
    }

private:
    // The declarations of one element, in force as long as the object lives; keeps its name attribute.
    class Scope {
    public:
        Scope(Walk& walk, IXMLDOMNode* element) : walk_(walk), before_(walk.declared_.size()) {
            ComPtr<IXMLDOMNamedNodeMap> attributes;
            if (FAILED(element->get_attributes(attributes.Put())) || !attributes) return;
            for (;;) {
                ComPtr<IXMLDOMNode> attribute;
                if (attributes->nextNode(attribute.Put()) != S_OK || !attribute) break;
                Bstr attributeName;
                Variant value;
                if (FAILED(attribute->get_nodeName(attributeName.Put())) ||
                    FAILED(attribute->get_nodeValue(value.Put())))
                    continue;
                const WideStringView text = attributeName.View();
                if (text.starts_with(W("xmlns:"))) walk_.Declare(ToUtf8(text.substr(6)), ToUtf8(value.Text()));
                if (text == W("name")) name_ = Trim(ToUtf8(value.Text()));
            }
        }
        ~Scope() {
            while (walk_.declared_.size() > before_) walk_.Undeclare();
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

        SchemaName GetName() const { return walk_.Resolve(name_); }

    private:
        Walk& walk_;
        std::size_t before_;
        std::string name_;
    };

    void Declare(std::string prefix, std::string uri) {
        const auto entry = uris_.try_emplace(std::move(prefix)).first;
        entry->second.push_back(std::move(uri));
        declared_.push_back(entry);
    }

    void Undeclare() noexcept {
        const Uris::iterator entry = declared_.back();
        declared_.pop_back();
        entry->second.pop_back();
        if (entry->second.empty()) uris_.erase(entry);
    }

    SchemaName Resolve(const std::string& text) const {
        SchemaName name{text, std::string(), text};
        const std::size_t colon = text.find(':');
        if (colon == std::string::npos) return name;
        name.local = text.substr(colon + 1);
        const auto declared = uris_.find(text.substr(0, colon));
        name.hasUndeclaredPrefix = declared == uris_.end();
        if (!name.hasUndeclaredPrefix) name.uri = declared->second.back();
        // A document that does not declare the family's namespace has its names under the fallback prefix.
        name.isPrivate = name.uri == facts::kPrivateKeywordsNamespace ||
                         (!privateIsDeclared_ && text.substr(0, colon) == facts::kFallbackPrefix);
        return name;
    }

    // Calls visit(node, local name) for each child element of the framework's namespace.
    template <class Visit>
    static void ForEachChild(IXMLDOMNode* parent, const Visit& visit) {
        ComPtr<IXMLDOMNode> child;
        for (HRESULT result = parent->get_firstChild(child.Put()); result == S_OK && child;) {
            DOMNodeType type = NODE_INVALID;
            Bstr uri, local;
            if (SUCCEEDED(child->get_nodeType(&type)) && type == NODE_ELEMENT &&
                child->get_namespaceURI(uri.Put()) == S_OK && uri.View() == kFrameworkNamespace &&
                child->get_baseName(local.Put()) == S_OK)
                visit(child.Get(), ToUtf8(local.View()));
            ComPtr<IXMLDOMNode> next;
            result = child->get_nextSibling(next.Put());
            child = next;
        }
    }

    static std::string ReadValue(IXMLDOMNode* parent) {
        std::string text;
        bool found = false;
        ForEachChild(parent, [&](IXMLDOMNode* child, const std::string& element) {
            Bstr value;
            if (element != "Value" || found || FAILED(child->get_text(value.Put()))) return;
            text = Trim(ToUtf8(value.View()));
            found = true;
        });
        return text;
    }

    SchemaSetting& Add(SchemaSetting::Kind kind, IXMLDOMNode* element) {
        const Scope scope(*this, element);
        SchemaSetting& setting = settings_.emplace_back();
        setting.kind = kind;
        setting.name = scope.GetName();
        return setting;
    }

    void ReadFeature(IXMLDOMNode* element, const std::string& parents, int depth) {
        const Scope scope(*this, element);
        const std::size_t index = settings_.size();
        SchemaSetting& feature = settings_.emplace_back();
        feature.kind = SchemaSetting::Kind::Feature;
        feature.name = scope.GetName();
        feature.parents = parents;
        const std::string inner = parents + feature.name.local + "/";
        ForEachChild(element, [&](IXMLDOMNode* child, const std::string& kind) {
            if (kind == "Option") ReadOption(child, index);
            if (kind == "ScoredProperty") ReadOptionName(child, index);
            if (kind == "Feature" && depth < kMaximumDepth) ReadFeature(child, inner, depth + 1);
        });
    }

    void ReadOption(IXMLDOMNode* element, std::size_t feature) {
        const Scope scope(*this, element);
        SchemaOption option;
        option.name = scope.GetName();
        ForEachChild(element, [&](IXMLDOMNode* child, const std::string& kind) {
            if (kind != "ScoredProperty") return;
            const Scope property(*this, child);
            const SchemaName schemaName = property.GetName();
            const std::string name = schemaName.IsKeyword() ? schemaName.local : schemaName.text;
            std::string value = ReadValue(child);
            ForEachChild(child, [&](IXMLDOMNode* reference, const std::string& inner) {
                if (inner != "ParameterRef") return;
                const Scope parameter(*this, reference);
                references_.push_back({feature, settings_[feature].options.size(), option.scores.size(),
                                       Key(SchemaSetting::Kind::Parameter, parameter.GetName())});
            });
            option.scores.emplace_back(name, std::move(value));
        });
        settings_[feature].options.push_back(std::move(option));
    }

    // A feature may name its option by a scored property of its own.
    void ReadOptionName(IXMLDOMNode* element, std::size_t feature) {
        const Scope scope(*this, element);
        const SchemaName name = scope.GetName();
        if (!name.IsKeyword() || name.local != "OptionName") return;
        SchemaOption option;
        option.name = Resolve(ReadValue(element));
        settings_[feature].options.push_back(std::move(option));
    }

    static std::string Key(SchemaSetting::Kind kind, SchemaName name) {
        SchemaSetting setting;
        setting.kind = kind;
        setting.name = std::move(name);
        return setting.GetKey();
    }

    void ResolveReferences() {
        std::map<std::string, std::size_t> parameters;
        for (std::size_t index = 0; index < settings_.size(); ++index)
            if (settings_[index].kind == SchemaSetting::Kind::Parameter)
                parameters.emplace(settings_[index].GetKey(), index);
        for (const Reference& reference : references_) {
            const auto parameter = parameters.find(reference.key);
            if (parameter == parameters.end()) continue;
            settings_[parameter->second].isReferenced = true;
            std::string& score = settings_[reference.setting].options[reference.option].scores[reference.score].second;
            if (score.empty()) score = settings_[parameter->second].text;
        }
    }

    struct Reference {
        std::size_t setting, option, score;
        std::string key;
    };

    // By prefix the URIs of the open elements, the innermost last.
    using Uris = std::map<std::string, std::vector<std::string>>;

    std::vector<SchemaSetting>& settings_;
    Uris uris_;
    std::vector<Uris::iterator> declared_;  // in the order of the declarations
    bool privateIsDeclared_ = false;
    std::vector<Reference> references_;
};

}  // namespace

bool SchemaName::IsKeyword() const { return uri == facts::kKeywordsNamespace; }

std::string SchemaName::GetKey() const {
    if (isPrivate) return "private\n" + local;
    return hasUndeclaredPrefix ? text : uri + '\n' + local;
}

const std::string* SchemaOption::FindScore(std::string_view wanted) const {
    for (const auto& [score, value] : scores)
        if (score == wanted) return &value;
    return nullptr;
}

std::optional<std::int64_t> SchemaOption::FindNumber(std::string_view wanted) const {
    const std::string* value = FindScore(wanted);
    return value ? ParseDecimal(*value) : std::nullopt;
}

std::optional<std::int64_t> SchemaSetting::GetNumber() const { return ParseDecimal(text); }

std::string SchemaSetting::GetKey() const {
    return std::to_string(static_cast<int>(kind)) + '\n' + parents + '\n' + name.GetKey();
}

SchemaSettings::SchemaSettings(IXMLDOMDocument2* document) {
    ComPtr<IXMLDOMElement> root;
    if (document->get_documentElement(root.Put()) != S_OK || !root) return;
    Walk(settings_).ReadRoot(root.Get());
    for (std::size_t index = 0; index < settings_.size(); ++index) first_.emplace(settings_[index].GetKey(), index);
}

const SchemaSetting* SchemaSettings::Find(const std::string& key) const {
    const auto found = first_.find(key);
    return found == first_.end() ? nullptr : &settings_[found->second];
}

const SchemaSetting* SchemaSettings::FindKeyword(SchemaSetting::Kind kind, std::string_view keyword) const {
    SchemaSetting wanted{kind, {}, {}, {}, {}};
    wanted.name.uri = facts::kKeywordsNamespace;
    wanted.name.local = keyword;
    return Find(wanted.GetKey());
}

const SchemaSetting* SchemaSettings::FindPrivate(SchemaSetting::Kind kind, std::string_view name) const {
    SchemaSetting wanted{kind, {}, {}, {}, {}};
    wanted.name.isPrivate = true;
    wanted.name.local = name;
    return Find(wanted.GetKey());
}
