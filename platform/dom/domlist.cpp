// Node lists: the children of a node as they are, and what a query found.
#include "domplace.h"
#include "domsequence.h"
#include "domwrappers.h"

namespace dom {
namespace {

class SnapshotList final : public DomSequence<IXMLDOMNodeList, IID_IXMLDOMNodeList, SnapshotList> {
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

class ChildList final : public DomSequence<IXMLDOMNodeList, IID_IXMLDOMNodeList, ChildList> {
public:
    static constexpr bool kItemMovesOn = false;

    explicit ChildList(const NodeCore& parent)
        : parent_(parent), holder_(ComPtr<IXMLDOMNode>::Share(parent.GetFace())) {}

    HRESULT At(LONG index, IXMLDOMNode** item) {
        return parent_.ReturnNode(place_.At(parent_.GetTree(), FirstChildOf(parent_.GetNode()), index), item);
    }
    LONG Length() { return place_.Length(parent_.GetTree(), FirstChildOf(parent_.GetNode())); }

private:
    const NodeCore& parent_;
    ComPtr<IXMLDOMNode> holder_;  // keeps parent_
    SiblingPlace place_;
};

}  // namespace

IXMLDOMNodeList* NewChildList(const NodeCore& parent) { return new ChildList(parent); }

IXMLDOMNodeList* NewSnapshotList(std::vector<ComPtr<IXMLDOMNode>> nodes) { return new SnapshotList(std::move(nodes)); }

}  // namespace dom
