// Node lists: the children of a node as they are, and what a query found.
#include "domplace.h"
#include "domwrappers.h"

namespace dom {
namespace {

// What every list does, over Derived's At(index) and Length(). After get_item of what a query found, nextNode gives the
// one behind it.
template <class Derived>
class NodeListObject : public DomObject<IXMLDOMNodeList, IID_IXMLDOMNodeList> {
public:
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override {
        return Guarded([&] {
            const HRESULT result = Self().At(index, item);
            if (Derived::kItemMovesOn && result == S_OK) next_ = index + 1;
            return result;
        });
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
    static constexpr bool kItemMovesOn = true;

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

class ChildList final : public NodeListObject<ChildList> {
public:
    static constexpr bool kItemMovesOn = false;

    explicit ChildList(const NodeCore& parent) : parent_(parent), holder_(ComPtr<IXMLDOMNode>::Share(parent.Face())) {}

    HRESULT At(LONG index, IXMLDOMNode** item) {
        return parent_.ReturnNode(place_.At(parent_.Tree(), FirstChildOf(parent_.Node()), index), item);
    }
    LONG Length() { return place_.Length(parent_.Tree(), FirstChildOf(parent_.Node())); }

private:
    const NodeCore& parent_;
    ComPtr<IXMLDOMNode> holder_;  // keeps parent_
    SiblingPlace place_;
};

}  // namespace

IXMLDOMNodeList* NewChildList(const NodeCore& parent) { return new ChildList(parent); }

IXMLDOMNodeList* NewSnapshotList(std::vector<ComPtr<IXMLDOMNode>> nodes) { return new SnapshotList(std::move(nodes)); }

}  // namespace dom
