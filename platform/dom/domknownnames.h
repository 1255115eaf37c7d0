// KnownNames: what the names of a document's new elements and attributes stand for. A document has few names and many
// nodes, so each name is judged, split and converted once.
#pragma once

#include <libxml/tree.h>
#include <widetext.h>
#include <windows.h>

#include <string>
#include <vector>

namespace dom {

struct KnownName {
    LONG type = 0;  // of the node, a DOMNodeType
    WideString name, uri;
    xmlElementType kind = XML_ELEMENT_NODE;
    xmlNs* space = nullptr;
    std::string local;  // of a declaration: the whole name
};

class KnownNames {
public:
    // Null for one that was not met, or that another has taken the place of.
    const KnownName* Find(LONG type, WideStringView name, WideStringView uri) const noexcept;
    void Keep(KnownName name);

private:
    std::vector<KnownName> places_;
};

}  // namespace dom
