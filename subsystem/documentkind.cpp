// What kind of document an XML document is.
#include "documentkind.h"

#include <bstr.h>
#include <comptr.h>
#include <printsubsystem/printschema.h>

#include "hosterror.h"
#include "hosttext.h"

namespace {

struct Root {
    WideString name, uri;  // both empty when the document has no root
};

Root GetRoot(IXMLDOMDocument2* document) {
    ComPtr<IXMLDOMElement> root;
    if (document->get_documentElement(root.Put()) != S_OK || !root) return {};
    Bstr name, uri;
    if (FAILED(root->get_baseName(name.Put())) || FAILED(root->get_namespaceURI(uri.Put()))) return {};
    return {WideString(name.View()), WideString(uri.View())};
}

}  // namespace

bool HasRoot(IXMLDOMDocument2* document, WideStringView rootName) {
    const Root root = GetRoot(document);
    return root.name == rootName && root.uri == kFrameworkNamespace;
}

std::string DescribeRoot(IXMLDOMDocument2* document) {
    const Root root = GetRoot(document);
    if (root.name.empty()) return "an XML document without a root";
    std::string text = "an XML document whose root is " + ToUtf8(root.name);
    if (root.uri == kFrameworkNamespace) return text;
    if (root.uri.empty()) return text + " of no namespace";
    const bool isNamesake = root.name == kTicketRoot || root.name == kCapabilitiesRoot;
    return text + (isNamesake ? " of another framework (" : " of the namespace ") + ToUtf8(root.uri) +
           (isNamesake ? ")" : "");
}

void RequireRoot(IXMLDOMDocument2* document, WideStringView rootName, const std::string& source) {
    if (HasRoot(document, rootName)) return;
    throw InputError("'" + source + "' is " + DescribeRoot(document) + "; a " + ToUtf8(rootName) + " is wanted here");
}
