// Node lists: the children of a node as they are, and what a query found.
#include "domwrappers.h"

namespace dom {
namespace {

// What every list does, over Derived's At(index) and Length().
template <class Derived>
class NodeListObject : public DomObject<IXMLDOMNodeList, IID_IXMLDOMNodeList> {
public:
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override {
        return Guarded([&] { return Self().At(index, item); });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override {
        if (!length) return E_INVALIDARG;
        *length = Self().Length();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** item) override {
        return Guarded([&] {
            const HRESULT result = Self().At(next_, item);
            if (result == S_OK) ++next_;
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override { return E_NOTIMPL; }

private:
    Derived& Self() { return static_cast<Derived&>(*this); }

    LONG next_ = 0;
};

class SnapshotList final : public NodeListObject<SnapshotList> {
public:
    explicit SnapshotList(std::vector<ComPtr<IXMLDOMNode>> nodes) : nodes_(std::move(nodes)) {}

    HRESULT At(LONG index, IXMLDOMNode** item) const {
        if (!item) return E_INVALIDARG;
        const bool isThere = index >= 0 && index < Length();
        *item = isThere ? ComPtr<IXMLDOMNode>(nodes_[static_cast<std::size_t>(index)]).Detach() : nullptr;
        return isThere ? S_OK : S_FALSE;
    }
    LONG Length() const { return static_cast<LONG>(nodes_.size()); }

private:
    std::vector<ComPtr<IXMLDOMNode>> nodes_;
};

// Remembers the last position and the length for as long as nothing in the tree is linked or unlinked, so that a loop
// over the indices is linear.
class ChildList final : public NodeListObject<ChildList> {
public:
    explicit ChildList(const NodeCore& parent) : parent_(parent), holder_(ComPtr<IXMLDOMNode>::Share(parent.Face())) {}

    HRESULT At(LONG index, IXMLDOMNode** item) {
        if (index < 0) return parent_.ReturnNode(nullptr, item);
        Refresh();
        if (!node_ || index < index_) {
            node_ = FirstChildOf(parent_.Node());
            index_ = 0;
        }
        xmlNode* node = node_;
        LONG position = index_;
        for (; node && position < index; ++position) node = node->next;
        if (node) {
            node_ = node;
            index_ = position;
        }
        return parent_.ReturnNode(node, item);
    }
    LONG Length() {
        Refresh();
        if (length_ >= 0) return length_;
        length_ = 0;
        for (const xmlNode* node = FirstChildOf(parent_.Node()); node; node = node->next) ++length_;
        return length_;
    }

private:
    void Refresh() {
        if (changes_ == parent_.Tree().Changes()) return;
        changes_ = parent_.Tree().Changes();
        node_ = nullptr;
        length_ = -1;
    }

    const NodeCore& parent_;
    ComPtr<IXMLDOMNode> holder_;  // keeps parent_
    std::uint64_t changes_ = static_cast<std::uint64_t>(-1);
    xmlNode* node_ = nullptr;
    LONG index_ = 0;
    LONG length_ = -1;
};

}  // namespace

IXMLDOMNodeList* NewChildList(const NodeCore& parent) { return new ChildList(parent); }

IXMLDOMNodeList* NewSnapshotList(std::vector<ComPtr<IXMLDOMNode>> nodes) { return new SnapshotList(std::move(nodes)); }

}  // namespace dom
