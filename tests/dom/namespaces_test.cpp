// Namespace declarations as attributes, and names that keep their namespaces.
#include "domtest.h"

namespace {

TEST(Declarations, AreListedAsWritten) {
    const Document document =
        Load("<p:a version='1' xmlns:p='urn:1' q:x='2' xmlns='urn:0' xmlns:q='urn:2'><b xmlns:r='urn:3'/></p:a>");
    EXPECT_EQ(AttributeNames(Root(document).Get()), "version xmlns:p q:x xmlns xmlns:q ");
    const auto map = Attributes(Root(document).Get());
    Node node;
    EXPECT_EQ(map->getNamedItem(B("xmlns:q").Get(), node.Put()), S_OK);
    EXPECT_EQ(Text(node.Get()), "urn:2");
    EXPECT_EQ(map->getNamedItem(B("xmlns:r").Get(), node.Put()), S_FALSE) << "only the element's own";
}

TEST(Declarations, AreNoAttributesToQueries) {
    const Document document = Load("<a xmlns:name='urn:1' xmlns='urn:0' xmlns:p='urn:2'><b name='1'/></a>");
    const std::pair<const char*, bool> queries[] = {{"/*/@*", false},     {"/*/@node()", false},  {"/*/@name", false},
                                                    {"/*/@xmlns", false}, {"//*[@xmlns]", false}, {"//*[@name]", true}};
    for (const auto& [query, found] : queries)
        EXPECT_EQ(static_cast<bool>(Select(document.Get(), query)), found) << query;
}

TEST(Declarations, GiveNamesTheirNamespaces) {
    const Document document =
        Load("<a xmlns='urn:0' xmlns:p='urn:1' x='1' p:x='2'><b/><p:b xmlns='' x='3'><c/></p:b></a>");
    EXPECT_EQ(DumpInfoset(document.Get()),
              "  {urn:0}a {urn:1}x=\"2\" {}x=\"1\" xmlns:p=\"urn:1\" xmlns=\"urn:0\"\n    {urn:0}b\n"
              "    {urn:1}b {}x=\"3\" xmlns=\"\"\n      {}c\n");
}

TEST(Declarations, AreAddedAndRemovedByName) {
    const Document document = Load("<p:a xmlns:p='urn:1' xmlns:old='urn:2' p:x='1'/>");
    const auto root = Root(document);
    EXPECT_EQ(Put(document, root.Get(), "xmlns:mk", "", "urn:2"), S_OK);
    Node taken;
    EXPECT_EQ(Attributes(root.Get())->removeNamedItem(B("xmlns:old").Get(), taken.Put()), S_OK);
    EXPECT_EQ(Value(taken.Get()), "urn:2");
    EXPECT_EQ(RootXml(document), "<p:a xmlns:p=\"urn:1\" p:x=\"1\" xmlns:mk=\"urn:2\"/>");
    EXPECT_EQ(Attributes(root.Get())->removeNamedItem(B("xmlns:old").Get(), taken.Put()), S_FALSE);
    EXPECT_FALSE(taken);
}

TEST(Declarations, NamesKeepTheirNamespaceWhenOneGoes) {
    const char* const xml = "<p:a xmlns:p='urn:1' xmlns:q='urn:2' q:x='1'><p:b q:y='2'><c/></p:b><p:d/></p:a>";
    const Document document = Load(xml);
    const std::string before = DumpInfoset(document.Get(), kIgnoreDeclarations);
    for (const char* const name : {"xmlns:p", "xmlns:q"}) {
        EXPECT_EQ(Attributes(Root(document).Get())->removeNamedItem(B(name).Get(), nullptr), S_OK);
    }
    EXPECT_EQ(DumpInfoset(document.Get(), kIgnoreDeclarations), before);
    EXPECT_EQ(DumpInfoset(Load(Serialised(document)).Get(), kIgnoreDeclarations), before);
    EXPECT_EQ(AttributeNames(Root(document).Get()), "q:x ") << "writing leaves no declaration behind";
    EXPECT_EQ(Xml(Select(document.Get(), "/*/*[2]").Get()), "<p:d xmlns:p=\"urn:1\"/>");
}

TEST(Declarations, ThatContradictTheElementAreRefused) {
    struct Row {
        const char* name;
        const char* uri;
        const char* value;
        HRESULT result;
    };
    const Row rows[] = {
        {"xmlns:p", "", "urn:1", S_OK},
        {"xmlns:p", "", "urn:other", E_FAIL},
        {"xmlns:q", "", "urn:other", E_FAIL},
        {"xmlns:p", "", "", E_FAIL},
        {"xmlns:new", "", "urn:other", S_OK},
        {"xmlns:new", "http://www.w3.org/2000/xmlns/", "urn:5", S_OK},
        {"xmlns", "", "urn:other", S_OK},
        {"p:y", "urn:other", "1", E_FAIL},
        {"q:y", "urn:2", "1", S_OK},
        {"r:y", "urn:2", "1", S_OK},
        {"xml:lang", "", "de", S_OK},
        {"type", "urn:2", "1", S_OK},
        {"xmlns:xml", "", "http://www.w3.org/XML/1998/namespace", E_FAIL},
    };
    for (const Row& row : rows) {
        const Document document = Load("<p:a xmlns:p='urn:1' q:x='1' xmlns:q='urn:2'/>");
        const auto root = Root(document);
        EXPECT_EQ(Put(document, root.Get(), row.name, row.uri, row.value), row.result) << row.name << ' ' << row.value;
        const std::string written = Serialised(document);
        EXPECT_EQ(DumpInfoset(Load(written).Get(), kIgnoreDeclarations).substr(0, 8), "  {urn:1") << written;
    }
    const Document document = Load("<p:a xmlns:p='urn:1'/>");
    Node found;
    EXPECT_EQ(Attributes(Root(document).Get())->getNamedItem(B("xmlns:p").Get(), found.Put()), S_OK);
    EXPECT_EQ(found->put_text(B("urn:other").Get()), E_FAIL);
    EXPECT_EQ(Value(found.Get()), "urn:1");
}

TEST(NewNodes, AreWrittenSoThatTheyReadBack) {
    struct Row {
        const char* name;
        const char* uri;
        const char* written;  // under <p:a xmlns:p="urn:1">
    };
    const Row rows[] = {
        {"p:b", "urn:1", "<p:b/>"},
        {"p:b", "urn:2", "<p:b xmlns:p=\"urn:2\"/>"},
        {"q:b", "urn:1", "<q:b xmlns:q=\"urn:1\"/>"},
        {"Value", "urn:1", "<Value xmlns=\"urn:1\"/>"},
        {"Value", "", "<Value/>"},
    };
    for (const Row& row : rows) {
        const Document document = Load("<p:a xmlns:p='urn:1'/>");
        const Node child = Create(document, NODE_ELEMENT, row.name, row.uri);
        EXPECT_EQ(Name(child.Get()), row.name);
        EXPECT_EQ(Root(document)->appendChild(child.Get(), nullptr), S_OK);
        EXPECT_EQ(RootXml(document), std::string("<p:a xmlns:p=\"urn:1\">") + row.written + "</p:a>");
    }
    const Document document = Load("<a xmlns='urn:1'/>");
    EXPECT_EQ(Root(document)->appendChild(Create(document, NODE_ELEMENT, "b").Get(), nullptr), S_OK);
    EXPECT_EQ(Put(document, Root(document).Get(), "xsi:type", "urn:xsi", "xsd:integer"), S_OK);
    EXPECT_EQ(Put(document, Root(document).Get(), "type", "urn:xsi", "x"), S_OK);
    EXPECT_EQ(RootXml(document),
              "<a xmlns:xsi=\"urn:xsi\" xmlns=\"urn:1\" xsi:type=\"xsd:integer\" type=\"x\">"
              "<b xmlns=\"\"/></a>");
}

TEST(NewNodes, NeedANameThatGoesWithItsNamespace) {
    const Document document = Load("<a xmlns:p='urn:1'/>");
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},   {"p:b", ""},        {":b", "urn:1"},  {"p:", "urn:1"}, {"a b", ""},
        {"1b", ""}, {"a:b:c", "urn:1"}, {"xmlns:b", "u"}, {"xml:b", "u"},  {"p:b", "http://www.w3.org/2000/xmlns/"},
    };
    for (const auto& [name, uri] : rows) {
        for (const DOMNodeType type : {NODE_ELEMENT, NODE_ATTRIBUTE}) {
            Node node;
            EXPECT_EQ(document->createNode(Variant(LONG{type}).Get(), B(name).Get(), B(uri).Get(), node.Put()),
                      *name ? E_INVALIDARG : E_FAIL)
                << name;
        }
    }
}

}  // namespace
