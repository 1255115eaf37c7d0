// What a document's wrapper learns on construction, what it finds, makes and deletes.
#include <ptpcprovider/printticketxmldocument.h>

#include <support/documents.h>

namespace {

TEST(PrintSchemaDocument, LearnsPrefixesFromTheRootOrRefusesIt) {
    const struct {
        const char *what, *xml, *expected;  // the prefixes, or what the constructor does
    } cases[] = {
        {"usual", "<psf:PrintTicket xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:mk='{mk}'/>", "psf: psk: mk:"},
        {"others, attributes among them, a comment before the root",
         "<!-- c --><a:PrintTicket version='1' xmlns:b='{psk}' xmlns:a='{psf}'/>", "a: b: ns0000:"},
        {"two prefixes for the framework", "<q:PrintTicket xmlns:p='{psf}' xmlns:q='{psf}'/>", "p:  ns0000:"},
        {"framework as default namespace", "<PrintTicket xmlns='{psf}'/>", "throws E_FAIL"},
        {"keywords as default namespace", "<psf:PrintTicket xmlns='{psk}' xmlns:psf='{psf}'/>", "throws E_FAIL"},
        {"private as default namespace", "<psf:PrintTicket xmlns:psf='{psf}' xmlns='{mk}'/>", "throws E_FAIL"},
        {"another root", "<psf:PrintCapabilities xmlns:psf='{psf}'/>", "throws S_FALSE"},
        {"inside another document", "<a><psf:PrintTicket xmlns:psf='{psf}'/></a>", "throws S_FALSE"},
    };
    for (const auto& test : cases) {
        const auto document = Load(test.xml);
        std::string prefixes;
        const std::string outcome = Outcome([&] {
            const PrintTicketXmlDocument ticket(document.Get());
            prefixes = Utf8(ticket.GetFrameworkPrefix()) + " " + Utf8(ticket.GetKeywordsPrefix()) + " ";
            return prefixes += Utf8(ticket.GetPrivatePrefix()), S_OK;
        });
        EXPECT_EQ(outcome == "S_OK" ? prefixes : outcome, test.expected) << test.what;
    }
}

TEST(PrintSchemaDocument, MakesThePrivatePrefixMkWhereThatChangesNoMeaning) {
    const struct {
        const char *what, *before, *after;  // null: unchanged
        const char* prefix;
    } cases[] = {
        {"names, every occurrence, and nothing but names",
         " xmlns:n1=\"{mk}\"><psf:Option name=\"n1:A-n1:B\"/><psf:Option name=\"n11:C\"/><psf:Value>n1:E</psf:Value>",
         " xmlns:mk=\"{mk}\"><psf:Option name=\"mk:A-mk:B\"/><psf:Option name=\"n11:C\"/><psf:Value>n1:E</psf:Value>",
         "mk:"},
        {"mk behind the prefix found first",
         " xmlns:a=\"{mk}\" xmlns:mk=\"{mk}\"><psf:Option name=\"a:A\"/><psf:Option name=\"mk:B\"/>",
         " xmlns:mk=\"{mk}\"><psf:Option name=\"mk:A\"/><psf:Option name=\"mk:B\"/>", "mk:"},
        {"mk taken at the root",
         " xmlns:a=\"{mk}\" xmlns:mk=\"urn:o\"><psf:Option name=\"a:A\"/><psf:Option name=\"mk:B\"/>", nullptr, "a:"},
        {"mk taken around a private name",
         " xmlns:a=\"{mk}\"><psf:Option name=\"a:A\"/><psf:Feature xmlns:mk=\"urn:o\"><psf:Option name=\"a:A\"/>"
         "</psf:Feature>",
         nullptr, "a:"},
        {"mk taken elsewhere",
         " xmlns:a=\"{mk}\"><psf:Feature xmlns:mk=\"urn:o\" name=\"mk:F\"/><psf:Option name=\"a:A\"/>",
         " xmlns:mk=\"{mk}\"><psf:Feature xmlns:mk=\"urn:o\" name=\"mk:F\"/><psf:Option name=\"mk:A\"/>", "mk:"},
        {"the prefix another maker's inside",
         " xmlns:a=\"{mk}\"><psf:Feature xmlns:a=\"urn:o\" name=\"a:F\"><psf:Option name=\"a:A\"/>"
         "<psf:Option xmlns:a=\"{mk}\" name=\"a:B\"/></psf:Feature><psf:Option name=\"a:C\"/>",
         " xmlns:mk=\"{mk}\"><psf:Feature xmlns:a=\"urn:o\" name=\"a:F\"><psf:Option name=\"a:A\"/>"
         "<psf:Option xmlns:a=\"{mk}\" name=\"mk:B\"/></psf:Feature><psf:Option name=\"mk:C\"/>",
         "mk:"},
        {"undeclared, and ns0000 somebody else's", " xmlns:ns0000=\"urn:o\"><psf:Option name=\"ns0000:A\"/>", nullptr,
         "ns0000:"},
    };
    const std::string head = "<psf:PrintTicket xmlns:psf=\"{psf}\"", tail = "</psf:PrintTicket>";
    for (const auto& test : cases) {
        const auto wrap = [&](const std::string& content) { return std::string(head).append(content).append(tail); };
        const auto document = Load(wrap(test.before));
        EXPECT_EQ(Utf8(PrintTicketXmlDocument(document.Get()).GetPrivatePrefix()), test.prefix) << test.what;
        EXPECT_EQ(TextOf(document), Expand(wrap(test.after ? test.after : test.before))) << test.what;
    }
}

TEST(PrintSchemaDocument, FindsValues) {
    const auto dom = LoadUsual("PrintTicket",
                               "<psf:Property name='psk:Own'><psf:Value>one</psf:Value></psf:Property>"
                               "<psf:Property name='psk:Empty'><psf:Value/></psf:Property>"
                               "<psf:Property name='psk:Bare'/>"
                               "<psf:Property name='psk:Ref'><psf:ParameterRef name='psk:P\"'/></psf:Property>"
                               "<psf:Property name='psk:Dangling'><psf:ParameterRef name='psk:p'/></psf:Property>"
                               "<psf:Property name='psk:Unnamed'><psf:ParameterRef/></psf:Property>"
                               "<psf:Feature><psf:ParameterInit name='psk:P&quot;'>\n <psf:Value>two</psf:Value>\n"
                               "</psf:ParameterInit></psf:Feature><psf:ParameterInit name='psk:P&quot;'/>");
    PrintTicketXmlDocument document(dom.Get());
    const std::pair<const WCHAR*, std::string> cases[] = {
        {W("Own"), "S_OK one"},       {W("Empty"), "S_OK null"},       {W("Bare"), "S_FALSE null"},
        {W("Ref"), "S_OK two"},       {W("Dangling"), "S_FALSE null"}, {W("Unnamed"), "S_FALSE null"},
        {W("Absent"), "S_FALSE null"}};
    for (const auto& [name, expected] : cases) {
        CXString query;
        query.Format(W("//psf:Property[@name = \"psk:%s\"]"), name);
        Bstr text(W("old"));
        const std::string outcome = Outcome([&] { return document.GetNodeValue(query, &text); });
        EXPECT_EQ(outcome + " " + (text.Get() ? Utf8(text) : "null"), expected) << Utf8(Bstr(name));
    }
    Bstr version;
    EXPECT_OUTCOME("S_OK", document.GetAttributeValue(document.GetRootNode(), W("version"), &version));
    EXPECT_EQ(Utf8(version), "1");
    EXPECT_OUTCOME("S_FALSE", document.GetAttributeValue(document.GetRootNode(), W("Version"), &version));
    EXPECT_OUTCOME("S_FALSE", document.GetAttributeValue(dom.Get(), W("version"), &version));
}

TEST(PrintSchemaDocument, DeletesByName) {
    const std::string nested = "<psf:Property name=\"psk:P\"><psf:Property name=\"psk:P\"/></psf:Property>";
    const auto features = [](const std::string& numbers) {
        std::string text;
        for (const char number : numbers) text += std::string("<psf:Feature name=\"psk:F\" id=\"") + number + "\"/>";
        return text;
    };
    for (const auto& [before, after] : {std::pair{"1", "1"}, {"12", "2"}, {"123", "23"}}) {
        const auto dom = LoadUsual("PrintTicket", nested + features(before));
        PrintTicketXmlDocument document(dom.Get());
        EXPECT_OUTCOME("S_OK", document.DeleteFeatureNodeIfADuplicateExists(W("psk:"), W("F")));
        EXPECT_EQ(ContentOf(dom), nested + features(after));
        EXPECT_OUTCOME("S_OK", document.DeletePropertyNodesIfExist(W("psk:"), W("P")));
        EXPECT_EQ(ContentOf(dom), features(after));
        ComPtr<IXMLDOMNode> feature;
        EXPECT_OUTCOME("S_OK", document.GetFeatureNode(W("psk:"), W("F"), feature.Put()));
        EXPECT_OUTCOME("S_OK", document.DeleteFeatureNodeIfExists(W("psk:"), W("F")));
        EXPECT_EQ(ContentOf(dom), features(after + 1)) << "the first in document order";
        EXPECT_OUTCOME("S_FALSE", document.DeleteNode(feature.Get()));
        EXPECT_OUTCOME("S_FALSE", document.DeleteFeatureNodeIfExists(W("psk:"), W("G")));
    }
}

TEST(PrintSchemaDocument, BuildsElementsInTheDocumentsOwnPrefixes) {
    const auto build = [](const ComPtr<IXMLDOMDocument2>& dom) {
        PrintTicketXmlDocument document(dom.Get());
        IXMLDOMNode* const root = document.GetRootNode();
        document.AppendChildIntegerProperty(root, W("A"), -5);
        document.AppendChildIntegerScoredProperty(root, W("B"), 5);
        document.AppendChildQNameScoredProperty(root, W("C"), W("Y"));
        document.AppendChildParameterRefScoredProperty(root, W("p:"), W("D"), W("q:"), W("R"));
        ComPtr<IXMLDOMElement> property;
        document.CreateProperty(NamespaceKind::Private, W("E"), W("string"), W(""), property.Put());
        document.AppendChildToRootNode(property.Get());
        return ContentOf(dom);
    };
    EXPECT_EQ(
        build(LoadUsual("PrintTicket", "")),
        "<psf:Property name=\"psk:A\"><psf:Value xsi:type=\"xsd:integer\">-5</psf:Value></psf:Property>"
        "<psf:ScoredProperty name=\"psk:B\"><psf:Value xsi:type=\"xsd:integer\">5</psf:Value></psf:ScoredProperty>"
        "<psf:ScoredProperty name=\"psk:C\"><psf:Value xsi:type=\"xsd:QName\">psk:Y</psf:Value></psf:ScoredProperty>"
        "<psf:ScoredProperty name=\"p:D\"><psf:ParameterRef name=\"q:R\"/></psf:ScoredProperty>"
        "<psf:Property name=\"mk:E\"><psf:Value xsi:type=\"xsd:string\"/></psf:Property>");
    EXPECT_TRUE(build(Load("<a:PrintTicket xmlns:a='{psf}' xmlns:c='{xsi}'></a:PrintTicket>"))
                    .starts_with("<a:Property name=\"A\"><a:Value c:type=\"integer\">-5</a:Value></a:Property>"));
}

TEST(PrintSchemaDocument, ChecksItsArguments) {
    const auto dom = LoadUsual("PrintTicket", "");
    PrintTicketXmlDocument document(dom.Get());
    PrintTicketXmlDocument empty(nullptr);
    ComPtr<IXMLDOMNode> node;
    ComPtr<IXMLDOMElement> element;
    EXPECT_OUTCOME("throws E_INVALIDARG", document.GetNode(W(""), node.Put()));
    EXPECT_OUTCOME("throws E_FAIL", document.GetNode(W("//nobody:*"), node.Put()));
    EXPECT_OUTCOME("throws 0x8000000A", empty.GetNode(W("//*"), node.Put()));
    EXPECT_OUTCOME("throws E_FAIL", document.GetFeatureNode(W("psk:"), W("F"), node.Put()));
    EXPECT_OUTCOME("throws E_FAIL", document.CreateXMLElement(W(""), element.Put()));
    EXPECT_OUTCOME("throws E_INVALIDARG", document.AppendChildIntegerProperty(nullptr, W("P"), 1));
    EXPECT_OUTCOME("throws 0x8000000A", empty.AppendChildToRootNode(document.GetRootNode()));
}

}  // namespace
