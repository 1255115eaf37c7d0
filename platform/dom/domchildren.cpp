// Changes below a node: insertion, removal, moves between documents, copies, and new content.
#include "domname.h"
#include "domnode.h"

namespace dom {
namespace {

bool CanHold(const xmlNode* parent, const xmlNode* child, const xmlNode* replaced) {
    const bool isContent = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
    const bool isRemark = child->type == XML_COMMENT_NODE || child->type == XML_PI_NODE;
    if (parent->type == XML_ELEMENT_NODE) return isContent || isRemark || child->type == XML_ELEMENT_NODE;
    if (parent->type != XML_DOCUMENT_NODE) return false;
    if (child->type != XML_ELEMENT_NODE) return isRemark;
    for (const xmlNode* other = parent->children; other; other = other->next) {
        if (other->type == XML_ELEMENT_NODE && other != child && other != replaced) return false;  // one root
    }
    return true;
}

// CR LF and CR alone as LF, which is how a document that is read has them.
std::string WithPlainLineEnds(std::string_view content) {
    std::string plain;
    plain.reserve(content.size());
    for (std::size_t i = 0; i < content.size(); ++i) {
        if (content[i] == '\r' && i + 1 < content.size() && content[i + 1] == '\n') continue;
        plain.push_back(content[i] == '\r' ? '\n' : content[i]);
    }
    return plain;
}

// A comment or processing instruction has no way to write these.
bool CanSay(xmlElementType type, std::string_view content) {
    if (type == XML_COMMENT_NODE) return content.find("--") == std::string_view::npos && !content.ends_with('-');
    if (type == XML_PI_NODE) return content.find("?>") == std::string_view::npos;
    return true;
}

void Share(const NodeCore& node, IXMLDOMNode** out) {
    if (out) *out = ComPtr<IXMLDOMNode>::Share(node.GetFace()).Detach();
}

}  // namespace

HRESULT NodeCore::CheckInsertion(const NodeCore& child, const xmlNode* replaced) const {
    if (!CanHold(node_, child.node_, replaced)) return E_FAIL;
    for (const xmlNode* ancestor = node_; ancestor; ancestor = ancestor->parent) {
        if (ancestor == child.node_) return E_FAIL;
    }
    return S_OK;
}

HRESULT NodeCore::Insert(IXMLDOMNode* newChild, xmlNode* before, const xmlNode* replaced) {
    NodeCore* const child = Of(newChild);
    if (!child) return E_INVALIDARG;
    if (const HRESULT result = CheckInsertion(*child, replaced); FAILED(result)) return result;
    if (before == child->node_) before = before->next;
    child->tree_->Detach(child->node_);
    if (child->tree_ != tree_) tree_->TakeOver(*child->tree_, child->node_);
    tree_->Attach(node_, before, child->node_);
    return S_OK;
}

HRESULT NodeCore::InsertBefore(IXMLDOMNode* newChild, const VARIANT& reference, IXMLDOMNode** outNewChild) {
    if (outNewChild) *outNewChild = nullptr;
    xmlNode* before = nullptr;
    if (reference.vt == VT_DISPATCH || reference.vt == VT_UNKNOWN) {
        if (reference.punkVal) {  // the same pointer in either kind
            const NodeCore* const sibling = Of(reference.punkVal);
            if (!sibling || sibling->node_->parent != node_ || IsAttribute(sibling->node_)) return E_INVALIDARG;
            before = sibling->node_;
        }
    } else if (reference.vt != VT_EMPTY && reference.vt != VT_NULL) {
        return E_INVALIDARG;
    }
    const HRESULT result = Insert(newChild, before, nullptr);
    if (SUCCEEDED(result)) Share(*Of(newChild), outNewChild);
    return result;
}

HRESULT NodeCore::AppendChild(IXMLDOMNode* newChild, IXMLDOMNode** outNewChild) {
    if (outNewChild) *outNewChild = nullptr;
    const HRESULT result = Insert(newChild, nullptr, nullptr);
    if (SUCCEEDED(result)) Share(*Of(newChild), outNewChild);
    return result;
}

HRESULT NodeCore::ReplaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild, IXMLDOMNode** outOldChild) {
    if (outOldChild) *outOldChild = nullptr;
    const NodeCore* const old = Of(oldChild);
    const NodeCore* const child = Of(newChild);
    if (!old || !child || old->node_->parent != node_ || IsAttribute(old->node_)) return E_INVALIDARG;
    if (old != child) {
        if (const HRESULT result = Insert(newChild, old->node_, old->node_); FAILED(result)) return result;
        tree_->Detach(old->node_);
    }
    Share(*old, outOldChild);
    return S_OK;
}

HRESULT NodeCore::RemoveChild(IXMLDOMNode* child, IXMLDOMNode** outOldChild) {
    if (outOldChild) *outOldChild = nullptr;
    const NodeCore* const old = Of(child);
    if (!old || old->node_->parent != node_ || IsAttribute(old->node_)) return E_INVALIDARG;
    tree_->Detach(old->node_);
    Share(*old, outOldChild);
    return S_OK;
}

HRESULT NodeCore::CloneNode(VARIANT_BOOL deep, IXMLDOMNode** clone) const {
    if (!clone) return E_INVALIDARG;
    if (node_->type != XML_DOCUMENT_NODE) {
        *clone = WrapNew(tree_, CopyNode(*tree_, node_, deep != VARIANT_FALSE)).Detach();
        return S_OK;
    }
    const auto copy = std::make_shared<DomTree>();
    copy->settings = tree_->settings;
    copy->GetDocument()->standalone = tree_->GetDocument()->standalone;
    for (xmlNode* child = deep != VARIANT_FALSE ? node_->children : nullptr; child; child = child->next) {
        LinkLast(AsNode(copy->GetDocument()), CopyNode(*copy, child, true));
    }
    *clone = Wrap(copy, AsNode(copy->GetDocument())).Detach();
    return S_OK;
}

HRESULT NodeCore::PutContent(std::string_view given) {
    const bool isPlain = IsAttribute(node_) || given.find('\r') == std::string_view::npos;
    const std::string plain = isPlain ? std::string() : WithPlainLineEnds(given);
    const std::string_view content = isPlain ? given : plain;
    if (node_->type == XML_DOCUMENT_NODE || !CanSay(node_->type, content)) return E_FAIL;
    if (node_->type != XML_ELEMENT_NODE && !IsAttribute(node_)) {
        xmlNodeSetContent(node_, XmlChars(std::string(content).c_str()));
        return S_OK;
    }
    if (node_->type == kDeclarationType && node_->parent) {
        const xmlAttr* const declaration = AsAttribute(node_);
        if (!CanDeclare(node_->parent, declaration, declaration, content)) return E_FAIL;
    }
    OwnedNode text = content.empty() ? nullptr : NewText(node_->doc, content);
    while (node_->children) tree_->Discard(node_->children);
    if (text) tree_->AttachNew(node_, std::move(text));
    return S_OK;
}

}  // namespace dom
