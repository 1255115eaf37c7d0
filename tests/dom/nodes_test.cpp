// Nodes: children, texts, attributes, and what failing calls leave alone.
#include "domtest.h"

namespace {

TEST(Children, AreInsertedMovedReplacedAndRemoved) {
    const Document document = Load("<a><b/>text<c/></a>");
    const auto root = Root(document);
    const Node b = Select(document.Get(), "/a/b"), c = Select(document.Get(), "/a/c");
    const Node d = Create(document, NODE_ELEMENT, "d"), e = Create(document, NODE_ELEMENT, "e");
    Node out;
    EXPECT_EQ(root->insertBefore(d.Get(), Variant(static_cast<IDispatch*>(b.Get())).Get(), out.Put()), S_OK);
    EXPECT_EQ(out.Get(), d.Get());
    EXPECT_EQ(root->insertBefore(e.Get(), Variant().Get(), nullptr), S_OK);
    EXPECT_EQ(RootXml(document), "<a><d/><b/>text<c/><e/></a>");
    EXPECT_EQ(root->insertBefore(d.Get(), Variant(static_cast<IDispatch*>(nullptr)).Get(), nullptr), S_OK);
    EXPECT_EQ(root->insertBefore(c.Get(), Variant(static_cast<IDispatch*>(c.Get())).Get(), nullptr), S_OK);
    EXPECT_EQ(RootXml(document), "<a><b/>text<c/><e/><d/></a>");
    EXPECT_EQ(b->appendChild(c.Get(), nullptr), S_OK);
    EXPECT_EQ(root->replaceChild(e.Get(), b.Get(), out.Put()), S_OK);
    EXPECT_EQ(out.Get(), b.Get());
    EXPECT_EQ(RootXml(document), "<a><e/>text<d/></a>");
    EXPECT_EQ(Xml(b.Get()), "<b><c/></b>");
    EXPECT_EQ(root->removeChild(d.Get(), out.Put()), S_OK);
    Node none;
    EXPECT_EQ(out->get_parentNode(none.Put()), S_FALSE);
    Node text = Create(document, NODE_TEXT, "");
    EXPECT_EQ(text->put_text(B(" more").Get()), S_OK);
    EXPECT_EQ(root->appendChild(text.Get(), nullptr), S_OK);
    EXPECT_EQ(text->put_text(B(" & more").Get()), S_OK) << "neighbouring texts stay nodes of their own";
    EXPECT_EQ(RootXml(document), "<a><e/>text &amp; more</a>");
}

TEST(Children, KnowTheirRelatives) {
    const Document document = Load("<?pi?><a x='1'><b/><!--c--></a>");
    const Node b = Select(document.Get(), "//b"), x = Select(document.Get(), "//@x");
    Node node, back;
    EXPECT_EQ(b->get_nextSibling(node.Put()), S_OK);
    EXPECT_EQ(Name(node.Get()), "#comment");
    EXPECT_EQ(node->get_previousSibling(back.Put()), S_OK);
    EXPECT_EQ(back.Get(), b.Get());
    EXPECT_EQ(b->get_previousSibling(node.Put()), S_FALSE);
    EXPECT_EQ(document->get_firstChild(node.Put()), S_OK);
    EXPECT_EQ(Name(node.Get()), "pi");
    EXPECT_EQ(Root(document)->get_parentNode(node.Put()), S_OK);
    EXPECT_EQ(Name(node.Get()), "#document");
    for (const auto get : {&IXMLDOMNode::get_parentNode, &IXMLDOMNode::get_nextSibling, &IXMLDOMNode::get_firstChild}) {
        EXPECT_EQ((x.Get()->*get)(node.Put()), S_FALSE);
        EXPECT_FALSE(node);
    }
    ComPtr<IXMLDOMDocument> owner;
    EXPECT_EQ(x->get_ownerDocument(owner.Put()), S_OK);
    EXPECT_EQ(owner.Get(), static_cast<IXMLDOMDocument*>(document.Get()));
    EXPECT_EQ(document->get_ownerDocument(owner.Put()), S_FALSE);
}

TEST(Children, ListFollowsTheTree) {
    const Document document = Load("<a><b/><c/><d/></a>");
    ComPtr<IXMLDOMNodeList> list;
    EXPECT_EQ(Root(document)->get_childNodes(list.Put()), S_OK);
    Node node;
    LONG length = 0;
    EXPECT_EQ(list->get_item(2, node.Put()), S_OK);
    EXPECT_EQ(Root(document)->removeChild(node.Get(), nullptr), S_OK);
    EXPECT_EQ(list->get_length(&length), S_OK);
    EXPECT_EQ(length, 2);
    for (const LONG index : {-1, 2, 1000}) EXPECT_EQ(list->get_item(index, node.Put()), S_FALSE) << index;
}

TEST(Children, ImpossibleOnesAreRefused) {
    const Document document = Load("<a><b><c/></b><e/></a>");
    const auto root = Root(document);
    const Node b = Select(document.Get(), "//b"), c = Select(document.Get(), "//c"), e = Select(document.Get(), "//e");
    const Node attribute = Create(document, NODE_ATTRIBUTE, "x"), text = Create(document, NODE_TEXT, "");
    const Variant notAChild(static_cast<IDispatch*>(c.Get()));
    EXPECT_EQ(c->appendChild(b.Get(), nullptr), E_FAIL) << "into itself";
    EXPECT_EQ(root->appendChild(attribute.Get(), nullptr), E_FAIL);
    EXPECT_EQ(root->appendChild(document.Get(), nullptr), E_FAIL);
    EXPECT_EQ(text->appendChild(b.Get(), nullptr), E_FAIL);
    EXPECT_EQ(document->appendChild(e.Get(), nullptr), E_FAIL) << "a second root";
    EXPECT_EQ(document->appendChild(text.Get(), nullptr), E_FAIL);
    EXPECT_EQ(root->insertBefore(text.Get(), notAChild.Get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(root->removeChild(c.Get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(root->replaceChild(text.Get(), c.Get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(RootXml(document), "<a><b><c/></b><e/></a>");
    EXPECT_EQ(document->replaceChild(e.Get(), root.Get(), nullptr), S_OK) << "the root itself can be replaced";
    EXPECT_EQ(RootXml(document), "<e/>");
}

TEST(Texts, AreTrimmedOutsideAndValuesAreExact) {
    const std::pair<const char*, const char*> rows[] = {
        {"<a>  x  y \n</a>", "x  y"},
        {"<a> <b> x </b> <!-- no --><?no no?> y </a>", "x   y"},
        {"<a><![CDATA[ x ]]></a>", " x "},
        {"<a> <b/><![CDATA[ ]]>y </a>", " y"},
        {"<a> \n </a>", ""},
        {"<a/>", ""},
        {"<a xml:space='preserve'> x </a>", " x "},
        {"<a xml:space='preserve'><b xml:space='default'> x </b></a>", " x "},
    };
    for (const auto& [xml, text] : rows) EXPECT_EQ(Text(Root(Load(xml)).Get()), text) << xml;
    const Document document = Load("<a x=' 1 '> y </a>");
    EXPECT_EQ(Value(Select(document.Get(), "/a/text()").Get()), " y ");
    EXPECT_EQ(Text(Select(document.Get(), "/a/@x").Get()), " 1 ");
    EXPECT_EQ(document->put_preserveWhiteSpace(VARIANT_TRUE), S_OK);
    EXPECT_EQ(Text(Root(document).Get()), " y ");
    Variant value;
    EXPECT_EQ(Root(document)->get_nodeValue(value.Put()), S_FALSE);
    EXPECT_EQ(value.Get().vt, VT_NULL);
}

TEST(Texts, ReplaceWhatWasThere) {
    const Document document = Load("<a><b/>x<c/></a>");
    const Node b = Select(document.Get(), "//b");
    EXPECT_EQ(Root(document)->put_text(B("1 < 2 & 3 ]]>\r\n").Get()), S_OK);
    EXPECT_EQ(RootXml(document), "<a>1 &lt; 2 &amp; 3 ]]&gt;&#13;\n</a>");
    EXPECT_EQ(Xml(b.Get()), "<b/>") << "what was held lives on";
    EXPECT_EQ(Root(document)->put_text(nullptr), S_OK);
    EXPECT_EQ(RootXml(document), "<a/>");
    EXPECT_EQ(Root(document)->put_nodeTypedValue(Variant(LONG{-5}).Get()), S_OK);

    ComPtr<IXMLDOMCDATASection> section;
    ComPtr<IXMLDOMComment> comment;
    EXPECT_EQ(document->createCDATASection(B("a]]>b").Get(), section.Put()), S_OK);
    EXPECT_EQ(document->createComment(B("a").Get(), comment.Put()), S_OK);
    EXPECT_EQ(Root(document)->appendChild(section.Get(), nullptr), S_OK);
    EXPECT_EQ(comment->put_data(B("a--b").Get()), E_FAIL);
    EXPECT_EQ(comment->put_data(B("a-").Get()), E_FAIL);
    EXPECT_EQ(Root(document)->appendChild(comment.Get(), nullptr), S_OK);
    EXPECT_EQ(DumpInfoset(Load(Serialised(document)).Get()), "  {}a\n    \"-5a]]>b\"\n    comment \"a\"\n");
}

TEST(Attributes, AreSetFoundAndRemoved) {
    const Document document = Load("<a b='1' xmlns:p='u' p:c='2'/>");
    const auto root = Root(document);
    Variant value;
    EXPECT_EQ(root->getAttribute(B("p:c").Get(), value.Put()), S_OK);
    EXPECT_EQ(Utf8Text(value.Text()), "2");
    EXPECT_EQ(root->getAttribute(B("c").Get(), value.Put()), S_FALSE);
    EXPECT_EQ(value.Get().vt, VT_NULL);
    EXPECT_EQ(root->setAttribute(B("b").Get(), Variant(LONG{7}).Get()), S_OK);
    EXPECT_EQ(root->setAttribute(B("d").Get(), Variant(W("<\"&\">")).Get()), S_OK);
    EXPECT_EQ(RootXml(document), "<a b=\"7\" xmlns:p=\"u\" p:c=\"2\" d=\"&lt;&quot;&amp;&quot;&gt;\"/>");

    // One of the same name takes the other's place; one with the same expanded name is the same.
    const auto b = Create(document, NODE_ATTRIBUTE, "b").As<IXMLDOMAttribute>(IID_IXMLDOMAttribute);
    ComPtr<IXMLDOMAttribute> replaced;
    EXPECT_EQ(root->setAttributeNode(b.Get(), replaced.Put()), S_OK);
    EXPECT_EQ(Value(replaced.Get()), "7");
    EXPECT_EQ(Put(document, root.Get(), "q:c", "u", "3"), S_OK);
    EXPECT_EQ(AttributeNames(root.Get()), "b xmlns:p q:c d ");
    EXPECT_EQ(root->setAttributeNode(b.Get(), replaced.Put()), S_OK) << "its own already";
    EXPECT_FALSE(replaced);
    EXPECT_EQ(Root(Load("<x/>"))->setAttributeNode(b.Get(), nullptr), E_FAIL) << "another element's";
    EXPECT_EQ(root->removeAttributeNode(b.Get(), replaced.Put()), S_OK);
    EXPECT_EQ(replaced.Get(), b.Get());
    EXPECT_EQ(root->removeAttribute(B("d").Get()), S_OK);
    EXPECT_EQ(root->removeAttribute(B("d").Get()), S_FALSE);
    Node item;
    EXPECT_EQ(Attributes(root.Get())->setNamedItem(b.Get(), item.Put()), S_OK);
    EXPECT_EQ(Attributes(root.Get())->removeQualifiedItem(B("c").Get(), B("u").Get(), item.Put()), S_OK);
    EXPECT_EQ(RootXml(document), "<a xmlns:p=\"u\" b=\"\"/>");
}

TEST(Calls, WithNullPointersFailAndFailuresLeaveOutPointersAlone) {
    const Document document = Load("<a x='1'/>");
    const auto root = Root(document);
    const HRESULT results[] = {root->get_nodeName(nullptr),      root->get_nodeValue(nullptr),
                               root->get_childNodes(nullptr),    root->get_attributes(nullptr),
                               root->get_text(nullptr),          root->selectNodes(B("a").Get(), nullptr),
                               root->get_ownerDocument(nullptr), root->getAttribute(B("x").Get(), nullptr)};
    for (std::size_t i = 0; i < std::size(results); ++i) EXPECT_EQ(results[i], E_INVALIDARG) << i;

    IXMLDOMNode* const before = document.Get();
    IXMLDOMNode* node = before;
    EXPECT_EQ(root->selectSingleNode(B("][").Get(), &node), E_FAIL);
    EXPECT_EQ(root->selectSingleNode(nullptr, &node), E_INVALIDARG);
    EXPECT_EQ(root->appendChild(nullptr, &node), E_INVALIDARG);
    EXPECT_EQ(root->removeChild(root.Get(), &node), E_INVALIDARG);
    EXPECT_EQ(document->createNode(Variant(LONG{NODE_DOCUMENT}).Get(), nullptr, nullptr, &node), E_INVALIDARG);
    EXPECT_EQ(node, before);
}

}  // namespace
