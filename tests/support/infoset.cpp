// The dump of a document, over its COM interface alone.
#include "infoset.h"

#include <bstr.h>
#include <comptr.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

void Check(HRESULT result, const char* call) {
    if (FAILED(result)) throw std::runtime_error(std::string(call) + " failed");
}

template <class Get>
std::string TextOf(Get get, const char* call) {
    Bstr text;
    Check(get(text.Put()), call);
    return Utf8Text(text.View());
}

std::string ValueOf(IXMLDOMNode* node) {
    Variant value;
    Check(node->get_nodeValue(value.Put()), "get_nodeValue");
    return Utf8Text(value.Text());
}

std::string NameOf(IXMLDOMNode* node) {
    return '{' + TextOf([node](BSTR* text) { return node->get_namespaceURI(text); }, "get_namespaceURI") + '}' +
           TextOf([node](BSTR* text) { return node->get_baseName(text); }, "get_baseName");
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
    return quoted + '"';
}

class Dump {
public:
    explicit Dump(InfosetOptions options) : options_(options) {}

    void Add(IXMLDOMNode* node, std::size_t depth) {
        DOMNodeType type = NODE_INVALID;
        Check(node->get_nodeType(&type), "get_nodeType");
        switch (type) {
            case NODE_TEXT:
            case NODE_CDATA_SECTION:
                text_ += ValueOf(node);
                textDepth_ = depth;
                return;
            case NODE_ELEMENT:
                Line(depth, NameOf(node) + AttributesOf(node));
                break;
            case NODE_COMMENT:
                Line(depth, "comment " + Quoted(ValueOf(node)));
                return;
            case NODE_PROCESSING_INSTRUCTION:
                AddInstruction(node, depth);
                return;
            default:
                break;
        }
        ComPtr<IXMLDOMNode> child;
        Check(node->get_firstChild(child.Put()), "get_firstChild");
        while (child) {
            Add(child.Get(), depth + 1);
            ComPtr<IXMLDOMNode> next;
            Check(child->get_nextSibling(next.Put()), "get_nextSibling");
            child = next;
        }
        FlushText();
    }
    std::string Take() {
        FlushText();
        return std::move(dump_);
    }

private:
    void AddInstruction(IXMLDOMNode* node, std::size_t depth) {
        const std::string name = TextOf([node](BSTR* text) { return node->get_nodeName(text); }, "get_nodeName");
        // MSXML shows the XML declaration as one; it is no part of what the document says.
        if (name != "xml") Line(depth, "instruction " + name + ' ' + Quoted(ValueOf(node)));
    }
    std::string AttributesOf(IXMLDOMNode* element) const {
        ComPtr<IXMLDOMNamedNodeMap> map;
        Check(element->get_attributes(map.Put()), "get_attributes");
        std::vector<std::string> attributes;
        std::vector<std::string> declarations;
        ComPtr<IXMLDOMNode> attribute;
        while (map && map->nextNode(attribute.Put()) == S_OK) {
            const std::string name = TextOf([&](BSTR* text) { return attribute->get_nodeName(text); }, "get_nodeName");
            const bool isDeclaration = name == "xmlns" || name.starts_with("xmlns:");
            (isDeclaration ? declarations : attributes)
                .push_back((isDeclaration ? name : NameOf(attribute.Get())) + '=' + Quoted(ValueOf(attribute.Get())));
        }
        std::sort(attributes.begin(), attributes.end());
        std::sort(declarations.begin(), declarations.end());
        if (options_ != kIgnoreDeclarations)
            attributes.insert(attributes.end(), declarations.begin(), declarations.end());
        std::string line;
        for (const std::string& text : attributes) line += ' ' + text;
        return line;
    }
    void FlushText() {
        if (!text_.empty()) dump_ += std::string(textDepth_ * 2, ' ') + Quoted(text_) + '\n';
        text_.clear();
    }
    void Line(std::size_t depth, const std::string& text) {
        FlushText();
        dump_ += std::string(depth * 2, ' ') + text + '\n';
    }

    const InfosetOptions options_;
    std::string dump_;
    std::string text_;  // not yet written: a neighbour may follow
    std::size_t textDepth_ = 0;
};

}  // namespace

std::string DumpInfoset(IXMLDOMNode* node, InfosetOptions options) {
    Dump dump(options);
    dump.Add(node, 0);
    return dump.Take();
}

std::string Utf8Text(std::basic_string_view<WCHAR> text) {
    std::string utf8;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned c = static_cast<unsigned short>(text[i]);
        const unsigned next = i + 1 < text.size() ? static_cast<unsigned short>(text[i + 1]) : 0;
        if ((c & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00) {
            c = 0x10000 + ((c & 0x3FF) << 10) + (next & 0x3FF);
            ++i;
        } else if ((c & 0xF800) == 0xD800) {
            c = '?';
        }
        const int more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        constexpr unsigned kLead[] = {0x00, 0xC0, 0xE0, 0xF0};
        utf8.push_back(static_cast<char>(kLead[more] | (c >> (6 * more))));
        for (int left = more - 1; left >= 0; --left)
            utf8.push_back(static_cast<char>(0x80 | ((c >> (6 * left)) & 0x3F)));
    }
    return utf8;
}
