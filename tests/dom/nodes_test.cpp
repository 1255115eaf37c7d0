// Nodes: children, texts, attributes, and what failing calls do to out pointers.
#include "domtest.h"

#include <functional>

namespace {

TEST(Children, AreInsertedMovedAndRemoved) {
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
    EXPECT_EQ(root->removeChild(d.Get(), out.Put()), S_OK);
    EXPECT_EQ(out.Get(), d.Get());
    for (const auto get : {&IXMLDOMNode::get_parentNode, &IXMLDOMNode::get_nextSibling, &IXMLDOMNode::get_firstChild}) {
        EXPECT_EQ((d.Get()->*get)(out.Put()), S_FALSE);
        EXPECT_FALSE(out);
    }
    const Node text = Create(document, NODE_TEXT, "");
    EXPECT_EQ(text->put_text(B(" more").Get()), S_OK);
    EXPECT_EQ(root->appendChild(text.Get(), nullptr), S_OK);
    EXPECT_EQ(text->put_text(B(" & more").Get()), S_OK) << "neighbouring texts stay nodes of their own";
    EXPECT_EQ(RootXml(document), "<a><b><c/></b>text<e/> &amp; more</a>");
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
    EXPECT_EQ(RootXml(document), "<a><b><c/></b><e/></a>");
}

TEST(Texts, AreTrimmedOutsideUnlessWhiteSpaceIsPreservedAndValuesAreExact) {
    struct Row {
        const char* xml;
        const char* trimmed;
        const char* preserved;
    };
    const Row rows[] = {
        {"<a>  x  y \n</a>", "x  y", "  x  y \n"},
        {"<a> <b> x </b> <!-- no --><?no no?> y </a>", "x  y", "  x   y "},
        {"<a><![CDATA[ x ]]></a>", " x ", " x "},
        {"<a> <b/><![CDATA[ ]]>y </a>", " y", "  y "},
        {"<a> \n </a>", "", " \n "},
        {"<a/>", "", ""},
        {"<a xml:space='preserve'> x <b> </b></a>", " x  ", " x  "},
        {"<a xml:space='preserve'><b xml:space='default'> x </b> </a>", " x  ", " x  "},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Text(Root(Load(row.xml, VARIANT_FALSE)).Get()), row.trimmed) << row.xml;
        EXPECT_EQ(Text(Root(Load(row.xml)).Get()), row.preserved) << row.xml;
    }
    const Document document = Load("<a x=' 1 '> y </a>");
    EXPECT_EQ(Value(Select(document.Get(), "/a/text()").Get()), " y ");
    EXPECT_EQ(Text(Select(document.Get(), "/a/@x").Get()), " 1 ");
    Variant value;
    EXPECT_EQ(Root(document)->get_nodeValue(value.Put()), S_FALSE);
    EXPECT_EQ(value.Get().vt, VT_NULL);
    for (const auto& [between, text] : {std::pair{"", " x "}, {" xml:space='default'", "x"}}) {
        const Document inherited =
            Load(std::string("<a xml:space='preserve'><b") + between + "><c> x </c></b></a>", VARIANT_FALSE);
        EXPECT_EQ(Text(Select(inherited.Get(), "//c").Get()), text) << between;
    }
}

TEST(Attributes, OfOneNameTakeEachOthersPlace) {
    const Document document = Load("<a b='1' xmlns:p='u' p:c='2'/>");
    const auto root = Root(document);
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
    EXPECT_EQ(root->setAttributeNode(b.Get(), nullptr), E_FAIL) << "its own already";
    EXPECT_EQ(Attributes(root.Get())->removeNamedItem(nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(root->setAttribute(B("").Get(), Variant(W("1")).Get()), E_FAIL);
    EXPECT_EQ(Root(Load("<x/>"))->setAttributeNode(b.Get(), nullptr), E_FAIL) << "another element's";
}

TEST(Attributes, AreOneByNamespaceWhateverTheirPrefix) {
    const Document document = Load("<a xmlns:p='u' xmlns:q='v' p:b='1' q:b='2' b='3'/>");
    EXPECT_EQ(Put(document, Root(document).Get(), "r:b", "u", "4"), S_OK);
    EXPECT_EQ(Put(document, Root(document).Get(), "b", "", "5"), S_OK);
    EXPECT_EQ(RootXml(document), "<a xmlns:r=\"u\" xmlns:p=\"u\" xmlns:q=\"v\" r:b=\"4\" q:b=\"2\" b=\"5\"/>");
}

TEST(Attributes, OfWhichThereAreManyAreFoundUntilTheyGo) {
    const int count = 50;
    std::string xml = "<a xmlns:p='u'";
    for (int i = 0; i < count; ++i) xml += " p:b" + std::to_string(i) + "='" + std::to_string(i) + '\'';
    const Document document = Load(xml + "/>");
    const auto map = Attributes(Root(document).Get());
    for (int last = count; last > count - 3; --last) {
        Node node;
        for (int i = 0; i < count; ++i) {
            const Bstr name = B("p:b" + std::to_string(i));
            EXPECT_EQ(map->getNamedItem(name.Get(), node.Put()), i < last ? S_OK : S_FALSE) << i;
            if (i >= last) continue;
            EXPECT_EQ(Value(node.Get()), std::to_string(i));
            EXPECT_EQ(map->get_item(i + 1, node.Put()), S_OK);
            EXPECT_EQ(Value(node.Get()), std::to_string(i));
        }
        EXPECT_EQ(map->removeNamedItem(B("p:b" + std::to_string(last - 1)).Get(), nullptr), S_OK);
        EXPECT_EQ(map->get_item(last, node.Put()), S_FALSE);
    }
}

TEST(Calls, ThatFailLeaveOutPointersAloneButForInsertionsAndRemovals) {
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
    EXPECT_EQ(document->createNode(Variant(LONG{NODE_DOCUMENT}).Get(), nullptr, nullptr, &node), E_INVALIDARG);
    EXPECT_EQ(node, before);
    const std::function<HRESULT()> changes[] = {
        [&] { return root->appendChild(nullptr, &node); },
        [&] { return root->insertBefore(nullptr, Variant().Get(), &node); },
        [&] { return root->removeChild(root.Get(), &node); },
        [&] { return root->replaceChild(nullptr, nullptr, &node); },
    };
    for (const auto& change : changes) {
        node = before;
        EXPECT_EQ(change(), E_INVALIDARG);
        EXPECT_EQ(node, nullptr);
    }
}

}  // namespace
