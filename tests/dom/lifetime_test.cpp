// Who keeps what alive: nodes and documents live as long as anyone holds either. (The test program's main also checks
// that nothing is left after each test.)
#include "domtest.h"

namespace {

TEST(Lifetime, ANodeKeepsItsDocument) {
    Document document = Load("<a><b><c/></b></a>");
    const Node c = Select(document.Get(), "//c");
    document.Reset();
    EXPECT_EQ(Xml(Select(c.Get(), "ancestor::a").Get()), "<a><b><c/></b></a>");
}

TEST(Lifetime, ARemovedSubtreeLivesWhileAPartOfItIsHeld) {
    const Document document = Load("<a><b x='1'><c><d/></c></b><e/></a>");
    Node b = Select(document.Get(), "//b"), d = Select(document.Get(), "//d"), x = Select(document.Get(), "//@x");
    EXPECT_EQ(Root(document)->removeChild(b.Get(), nullptr), S_OK);
    b.Reset();
    Node parent;
    EXPECT_EQ(d->get_parentNode(parent.Put()), S_OK);
    EXPECT_EQ(Xml(parent.Get()), "<c><d/></c>");
    EXPECT_EQ(Value(x.Get()), "1");
    // Out of the removed subtree and back into the document: the rest may go.
    EXPECT_EQ(Select(document.Get(), "//e")->appendChild(d.Get(), nullptr), S_OK);
    parent.Reset();
    x.Reset();
    EXPECT_EQ(RootXml(document), "<a><e><d/></e></a>");
    EXPECT_EQ(Root(document)->put_text(nullptr), S_OK);
    EXPECT_EQ(Name(d.Get()), "d");
}

TEST(Lifetime, ListsKeepTheirNodes) {
    const Document document = Load("<a><b n='1'/><b n='2'><b n='3'/></b></a>");
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(document->selectNodes(B("//b").Get(), list.Put()), S_OK);
    const ComPtr<IXMLDOMNamedNodeMap> map = Attributes(Select(document.Get(), "//b").Get());
    VARIANT_BOOL loaded = VARIANT_FALSE;
    EXPECT_EQ(document->loadXML(B("<new/>").Get(), &loaded), S_OK);
    Node node;
    EXPECT_EQ(list->get_item(1, node.Put()), S_OK);
    EXPECT_EQ(Xml(node.Get()), "<b n=\"2\"><b n=\"3\"/></b>");
    EXPECT_EQ(map->nextNode(node.Put()), S_OK);
    EXPECT_EQ(Value(node.Get()), "1");
    EXPECT_EQ(RootXml(document), "<new/>");
}

TEST(Lifetime, ANodeHasOneIdentityAndTheDocumentsCountIsItsOwn) {
    const Document document = Load("<a><b/></a>");
    const auto count = [&document] {
        document->AddRef();
        return document->Release();
    };
    const ULONG before = count();
    const Node first = Select(document.Get(), "//b"), second = Select(Root(document).Get(), "b");
    EXPECT_EQ(first.Get(), second.Get());
    EXPECT_EQ(first.As<IUnknown>(IID_IUnknown).Get(),
              first.As<IXMLDOMElement>(IID_IXMLDOMElement).As<IUnknown>(IID_IUnknown).Get());
    EXPECT_FALSE(first.As<IUnknown>(IID_IXMLDOMAttribute));
    EXPECT_FALSE(first.As<IUnknown>(IID_IXMLDOMDocument));
    EXPECT_EQ(count(), before) << "nodes do not count on the document's object";
}

TEST(Lifetime, NodesMoveBetweenDocuments) {
    const Document to = Load("<to xmlns:p='urn:1'/>");
    Document from = Load("<q:from xmlns:q='urn:1'><q:b q:x='1' xmlns:r='urn:2'>t<r:c/></q:b></q:from>");
    const Node b = Select(from.Get(), "/*/*"), c = Select(from.Get(), "/*/*/*");
    EXPECT_EQ(Root(to)->appendChild(b.Get(), nullptr), S_OK);
    EXPECT_EQ(RootXml(from), "<q:from xmlns:q=\"urn:1\"/>");
    from.Reset();
    EXPECT_EQ(RootXml(to),
              "<to xmlns:p=\"urn:1\"><q:b xmlns:q=\"urn:1\" q:x=\"1\" xmlns:r=\"urn:2\">t<r:c/></q:b></to>");
    EXPECT_EQ(Xml(Select(c.Get(), "ancestor::to").Get()), RootXml(to));
}

}  // namespace
