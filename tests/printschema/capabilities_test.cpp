// What a PrintCapabilities' wrapper builds, finds and renames.
#include <ptpcprovider/printcapabilitiesxmldocument.h>

#include <support/documents.h>

namespace {

std::string Property(const std::string& name, const std::string& type, const std::string& text) {
    const std::string start = "<psf:Property name=\"" + name + "\"><psf:Value xsi:type=\"xsd:" + type + "\"";
    return start + (text.empty() ? "/>" : ">" + text + "</psf:Value>") + "</psf:Property>";
}

std::string Shown(const std::string& name) { return Property("psk:DisplayName", "string", name); }

TEST(PrintCapabilitiesDocument, BuildsItsShapes) {
    using Document = PrintCapabilitiesXmlDocument;
    using Element = IXMLDOMElement**;
    const struct {
        HRESULT (*create)(Document&, Element);
        std::string expected;
    } cases[] = {
        {[](Document& d, Element e) { return d.CreatePickOneFeature(W("F"), W("Name"), e); },
         "<psf:Feature name=\"psk:F\">" + Shown("Name") + Property("psf:SelectionType", "QName", "psk:PickOne") +
             "</psf:Feature>"},
        {[](Document& d, Element e) { return d.CreateOption(W("O"), W("mk:"), W("Name"), W("None"), e); },
         "<psf:Option name=\"mk:O\" constrained=\"psk:None\">" + Shown("Name") + "</psf:Option>"},
    };
    for (const auto& test : cases) {
        const auto dom = LoadUsual("PrintCapabilities", "");
        Document document(dom.Get());
        ComPtr<IXMLDOMElement> element;
        EXPECT_OUTCOME("S_OK", test.create(document, element.Put()));
        document.AppendChildToRootNode(element.Get());
        EXPECT_EQ(ContentOf(dom), test.expected);
    }
}

TEST(PrintCapabilitiesDocument, FindsAndRenames) {
    const auto content = [&](const std::string& feature, const std::string& a) {
        return "<psf:Feature name=\"psk:F\">" + Shown(feature) + "<psf:Option name=\"psk:A\">" + Shown(a) +
               "<psf:ScoredProperty name=\"psk:X\"><psf:Value>600</psf:Value></psf:ScoredProperty>" +
               "<psf:ScoredProperty name=\"psk:Y\"><psf:Value/></psf:ScoredProperty></psf:Option>" +
               "<psf:Option name=\"psk:B\"/>" +
               "<psf:Feature name=\"psk:Sub\"><psf:Option name=\"psk:C\"/></psf:Feature></psf:Feature>";
    };
    const auto dom = LoadUsual("PrintCapabilities", content("f", "a") + "<psf:ParameterDef name='mk:P'/>");
    PrintCapabilitiesXmlDocument document(dom.Get());
    ComPtr<IXMLDOMNode> feature;
    document.GetFeatureNode(W("psk:"), W("F"), feature.Put());
    const WCHAR* const psk = W("psk:");

    EXPECT_OUTCOME("S_FALSE", document.DeleteParameterDefNodeIfExists(psk, W("P")));
    EXPECT_OUTCOME("S_OK", document.DeleteParameterDefNodeIfExists(W("mk:"), W("P")));
    LONG options = 0;
    document.GetChildOptionNodes(feature.Get())->get_length(&options);
    EXPECT_EQ(options, 2) << "its own, not its sub-feature's";
    EXPECT_EQ(document.GetChildScoredPropertyValueAsString(feature.Get(), W("X")).ToUtf8(), "600");
    EXPECT_OUTCOME("throws E_FAIL", (document.GetChildScoredPropertyValueAsString(feature.Get(), W("Y")), S_OK));

    EXPECT_OUTCOME("S_FALSE", document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("C"), W("new")));
    EXPECT_OUTCOME("S_OK", document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("B"), W("new")));
    EXPECT_EQ(ContentOf(dom), content("f", "a")) << "no such option, and one without a name to replace";
    EXPECT_OUTCOME("S_OK", document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("A"), W("new")));
    EXPECT_OUTCOME("S_OK", document.ReplaceDisplayNamePropertyValue(feature.Get(), W("F & G")));
    EXPECT_EQ(ContentOf(dom), content("F &amp; G", "new"));
    EXPECT_OUTCOME("0x80070490", document.ReplaceDisplayNamePropertyValue(document.GetRootNode(), W("x")));
    EXPECT_OUTCOME("throws E_POINTER", document.ReplaceOptionDisplayNamePropertyValue(nullptr, psk, W("A"), W("x")));
}

}  // namespace
