// What capabilities offer.
#include "offeredoptions.h"

#include <algorithm>
#include <set>

#include <subsystem/hosterror.h>
#include <subsystem/schematext.h>

namespace {

using schematext::Escape;

// The element again with all that sets it apart from another one, as text.
std::string Repeat(const SchemaElement& element) {
    const auto qualify = [](const std::string& prefix, const std::string& local) {
        return prefix.empty() ? local : prefix + ":" + local;
    };
    const std::string tag = qualify(element.prefix, element.local);
    std::string text = "<" + tag;
    for (const SchemaAttribute& attribute : element.attributes)
        if (attribute.local != "constrained")
            text += " " + qualify(attribute.prefix, attribute.local) + "=\"" + Escape(attribute.value) + "\"";
    text += ">" + Escape(element.text);
    for (const auto& child : element.children)
        if (child->kind != SchemaKind::Property) text += Repeat(*child);
    return text + "</" + tag + ">";
}

std::string TextOf(const SchemaElement& holder) {
    const SchemaElement* const value = holder.FindChild(SchemaKind::Value);
    return value ? std::string(TrimXmlSpace(value->text)) : std::string();
}

// The scored properties of an option by name; a reference to a parameter is its name.
std::map<std::string, std::string> ReadScores(const SchemaElement& option) {
    std::map<std::string, std::string> scores;
    for (const auto& child : option.children) {
        if (child->kind != SchemaKind::ScoredProperty) continue;
        const SchemaElement* const reference = child->FindChild(SchemaKind::ParameterRef);
        scores[child->GetName().GetKey()] = reference ? reference->GetName().GetKey() : TextOf(*child);
    }
    return scores;
}

std::string NameOf(const SchemaElement& element) {
    return element.FindAttribute("name") ? element.GetName().GetKey() : std::string();
}

// The names of all that the element's ParameterRefs refer to.
void AddReferences(const SchemaElement& element, std::set<std::string>& names) {
    if (element.kind == SchemaKind::ParameterRef) names.insert(element.GetName().GetKey());
    for (const auto& child : element.children) AddReferences(*child, names);
}

std::string PropertyOf(const SchemaElement& definition, std::string_view name) {
    const SchemaElement* const property = definition.FindProperty(facts::kFrameworkNamespace, name);
    return property ? TextOf(*property) : std::string();
}

std::string MakeParameterInit(const SchemaElement& definition, const std::string& value) {
    const SchemaElement* const property = definition.FindProperty(facts::kFrameworkNamespace, "DefaultValue");
    const SchemaElement* const typed = property ? property->FindChild(SchemaKind::Value) : nullptr;
    const std::string prefix = definition.prefix.empty() ? "" : definition.prefix + ":";
    const std::string* const type =
        typed ? typed->FindAttribute("type", "http://www.w3.org/2001/XMLSchema-instance") : nullptr;
    return "<" + prefix + "ParameterInit name=\"" + Escape(*definition.FindAttribute("name")) + "\"><" + prefix +
           "Value" + (type ? " xsi:type=\"" + Escape(*type) + "\"" : "") + ">" + Escape(value) + "</" + prefix +
           "Value></" + prefix + "ParameterInit>";
}

}  // namespace

OfferedOptions::OfferedOptions(std::string_view capabilities) : document_(ReadSchemaDocument(capabilities)) {
    std::set<std::string> references;
    AddReferences(*document_.root, references);
    for (const auto& child : document_.root->children) {
        if (child->kind == SchemaKind::ParameterDef && !references.contains(NameOf(*child))) {
            const std::string smallest = PropertyOf(*child, "MinValue"), largest = PropertyOf(*child, "MaxValue");
            if (!smallest.empty() && !largest.empty())
                parameters_.push_back(
                    {NameOf(*child), child.get(), {smallest, PropertyOf(*child, "DefaultValue"), largest}});
        }
        if (child->kind != SchemaKind::Feature) continue;
        for (const auto& option : child->children)
            if (option->kind == SchemaKind::Option) options_.push_back({NameOf(*child), NameOf(*option), option.get()});
    }
}

std::string OfferedOptions::MakeRootStart() const {
    const SchemaElement& root = *document_.root;
    std::string text = "<" + (root.prefix.empty() ? "" : root.prefix + ":") + "PrintTicket version=\"1\"";
    for (const auto& [prefix, uri] : root.declarations)
        text += " xmlns" + (prefix.empty() ? "" : ":" + prefix) + "=\"" + Escape(uri) + "\"";
    return text + ">";
}

std::string OfferedOptions::SelectOptions(const std::vector<const OfferedOption*>& options) const {
    const std::string prefix = document_.root->prefix.empty() ? "" : document_.root->prefix + ":";
    std::string text = MakeRootStart();
    std::set<std::string> references;
    for (const OfferedOption* const option : options) {
        const SchemaElement& feature = *option->place->parent;
        text.append("<").append(prefix).append("Feature name=\"").append(Escape(*feature.FindAttribute("name")));
        text.append("\">").append(Repeat(*option->place)).append("</").append(prefix).append("Feature>");
        AddReferences(*option->place, references);
    }
    for (const auto& child : document_.root->children)
        if (child->kind == SchemaKind::ParameterDef && references.contains(NameOf(*child)))
            text += MakeParameterInit(*child, PropertyOf(*child, "DefaultValue"));
    return text + "</" + prefix + "PrintTicket>";
}

std::string OfferedOptions::SetParameter(const OfferedParameter& parameter, const std::string& value) const {
    const std::string prefix = document_.root->prefix.empty() ? "" : document_.root->prefix + ":";
    return MakeRootStart() + MakeParameterInit(*parameter.place, value) + "</" + prefix + "PrintTicket>";
}

std::string OfferedOptions::Describe(const OfferedOption& option) {
    std::string text = *option.place->parent->FindAttribute("name");
    const std::string* const name = option.place->FindAttribute("name");
    if (name) text += " " + *name;
    for (const auto& [score, value] : ReadScores(*option.place)) text += " " + value;
    return text;
}

SelectedOptions ReadSelectedOptions(std::string_view ticket) {
    SelectedOptions selected;
    const SchemaDocument document = ReadSchemaDocument(ticket);
    for (const auto& feature : document.root->children) {
        const SchemaElement* const option =
            feature->kind == SchemaKind::Feature ? feature->FindChild(SchemaKind::Option) : nullptr;
        if (!option) continue;
        std::string text = NameOf(*option) + "\n";
        for (const auto& [name, value] : ReadScores(*option)) text.append(name).append("=").append(value).append("\n");
        selected[NameOf(*feature)] = text;
    }
    return selected;
}

std::string ReadParameter(std::string_view ticket, const OfferedParameter& parameter) {
    const SchemaDocument document = ReadSchemaDocument(ticket);
    const std::string local = parameter.place->GetName().local;
    for (const auto& child : document.root->children)
        if (child->kind == SchemaKind::ParameterInit && child->GetName().local == local) return TextOf(*child);
    return {};
}

bool IsSelected(const SelectedOptions& selected, const OfferedOption& option) {
    const auto found = selected.find(option.feature);
    if (found == selected.end() || !found->second.starts_with(option.name + "\n")) return false;
    const std::map<std::string, std::string> offered = ReadScores(*option.place);
    std::string_view lines = std::string_view(found->second).substr(option.name.size() + 1);
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(line.size() + 1);
        const std::size_t equals = line.rfind('=');
        const auto score = offered.find(std::string(line.substr(0, equals)));
        if (score == offered.end() || score->second != line.substr(equals + 1)) return false;
    }
    return true;
}
