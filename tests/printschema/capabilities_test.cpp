// What a PrintCapabilities' wrapper builds, finds and renames.
#include <ptpcprovider/printcapabilitiesxmldocument.h>

#include "printschema/documents.h"

namespace {

std::string Property(const std::string& name, const std::string& type, const std::string& text) {
    const std::string start = "<psf:Property name=\"" + name + "\"><psf:Value xsi:type=\"xsd:" + type + "\"";
    return start + (text.empty() ? "/>" : ">" + text + "</psf:Value>") + "</psf:Property>";
}

std::string Shown(const std::string& name) { return Property("psk:DisplayName", "string", name); }

TEST(PrintCapabilitiesDocument, BuildsItsShapes) {
    using Document = PrintCapabilitiesXmlDocument;
    using Element = IXMLDOMElement**;
    struct Case {
        const char* what;
        HRESULT (*create)(Document&, Element);
        std::string expected;
    };
    const Case cases[] = {
        {"feature without a name to show", [](Document& d, Element e) { return d.CreateFeature(W("F"), W(""), e); },
         "<psf:Feature name=\"psk:F\"/>"},
        {"pick-one feature", [](Document& d, Element e) { return d.CreatePickOneFeature(W("F"), W("Name"), e); },
         "<psf:Feature name=\"psk:F\">" + Shown("Name") + Property("psf:SelectionType", "QName", "psk:PickOne") +
             "</psf:Feature>"},
        {"option", [](Document& d, Element e) { return d.CreateOption(W("O"), W("mk:"), W("Name"), W("None"), e); },
         "<psf:Option name=\"mk:O\" constrained=\"psk:None\">" + Shown("Name") + "</psf:Option>"},
        {"bare option", [](Document& d, Element e) { return d.CreateOption(W("O"), W("psk:"), W(""), W(""), e); },
         "<psf:Option name=\"psk:O\"/>"},
        {"integer parameter",
         [](Document& d, Element e) {
             return d.CreateIntegerParameterDef(W("psk:"), W("P"), W("Unconditional"), W("Name"), 1, -2, 999, 3,
                                                W("copies"), e);
         },
         "<psf:ParameterDef name=\"psk:P\">" + Property("psf:DataType", "QName", "xsd:integer") +
             Property("psf:DefaultValue", "integer", "1") + Property("psf:MaxValue", "integer", "999") +
             Property("psf:MinValue", "integer", "-2") + Property("psf:Mandatory", "QName", "psk:Unconditional") +
             Property("psf:UnitType", "string", "copies") + Property("psf:Multiple", "integer", "3") + Shown("Name") +
             "</psf:ParameterDef>"},
        {"string parameter",
         [](Document& d, Element e) {
             return d.CreateStringParameterDef(W("mk:"), W("P"), W("Optional"), W("Name"), W(""), 0, 20000, W("base64"),
                                               e);
         },
         "<psf:ParameterDef name=\"mk:P\">" + Property("psf:DataType", "QName", "xsd:string") +
             Property("psf:MaxLength", "integer", "20000") + Property("psf:MinLength", "integer", "0") +
             Property("psf:Mandatory", "QName", "psk:Optional") + Property("psf:UnitType", "string", "base64") +
             Shown("Name") + Property("psf:DefaultValue", "string", "") + "</psf:ParameterDef>"},
    };
    for (const Case& test : cases) {
        const auto dom = LoadUsual("PrintCapabilities", "");
        Document document(dom.Get());
        ComPtr<IXMLDOMElement> element;
        EXPECT_EQ(Outcome([&] { return test.create(document, element.Put()); }), "S_OK") << test.what;
        EXPECT_EQ(ContentOf(dom), "") << test.what << ": not attached yet";
        document.AppendChildToRootNode(element.Get());
        EXPECT_EQ(ContentOf(dom), test.expected) << test.what;
    }
}

TEST(PrintCapabilitiesDocument, FindsAndRenames) {
    const std::string nested = "<psf:Feature name=\"psk:Sub\"><psf:Option name=\"psk:A\"/></psf:Feature>";
    const auto content = [&](const std::string& feature, const std::string& a) {
        return "<psf:Feature name=\"psk:F\">" + Shown(feature) + "<psf:Option name=\"psk:A\">" + Shown(a) +
               "<psf:ScoredProperty name=\"psk:X\"><psf:Value>600</psf:Value></psf:ScoredProperty>" +
               "<psf:ScoredProperty name=\"psk:Y\"><psf:Value/></psf:ScoredProperty></psf:Option>" +
               "<psf:Option name=\"psk:B\"/>" + nested + "</psf:Feature>";
    };
    const auto dom = LoadUsual("PrintCapabilities", content("f", "a") + "<psf:ParameterDef name='mk:P'/>");
    PrintCapabilitiesXmlDocument document(dom.Get());
    ComPtr<IXMLDOMNode> feature, option;
    document.GetFeatureNode(W("psk:"), W("F"), feature.Put());

    EXPECT_EQ(document.DeleteParameterDefNodeIfExists(W("psk:"), W("P")), S_FALSE);
    EXPECT_EQ(document.DeleteParameterDefNodeIfExists(W("mk:"), W("P")), S_OK);
    LONG options = 0;
    EXPECT_EQ(document.GetChildOptionNodes(feature.Get())->get_length(&options), S_OK);
    EXPECT_EQ(options, 2) << "its own, not its sub-feature's";
    EXPECT_EQ(document.GetChildOptionNodeIfExists(feature.Get(), W("psk:"), W("B"), option.Put()), S_OK);
    EXPECT_EQ(document.GetChildOptionNodeIfExists(feature.Get(), W("psk:"), W("C"), option.Put()), S_FALSE);
    EXPECT_EQ(document.GetChildScoredPropertyValueAsString(feature.Get(), W("X")).ToUtf8(), "600");

    const WCHAR* const psk = W("psk:");
    EXPECT_EQ(document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("C"), W("new")), S_FALSE);
    EXPECT_EQ(document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("B"), W("new")), S_OK);
    EXPECT_EQ(ContentOf(dom), content("f", "a")) << "no such option, and one without a name to replace";
    EXPECT_EQ(document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("A"), W("new")), S_OK);
    EXPECT_EQ(ContentOf(dom), content("f", "new"));
    EXPECT_EQ(document.ReplaceDisplayNamePropertyValue(feature.Get(), W("F & G")), S_OK);
    EXPECT_EQ(ContentOf(dom), content("F &amp; G", "new"));
    EXPECT_EQ(Name(document.ReplaceDisplayNamePropertyValue(document.GetRootNode(), W("x"))), "0x80070490");

    ComPtr<IXMLDOMElement> element;
    EXPECT_OUTCOME("throws E_FAIL", (document.GetChildScoredPropertyValueAsString(feature.Get(), W("Y")), S_OK));
    EXPECT_OUTCOME("throws E_POINTER", (document.GetChildOptionNodes(nullptr), S_OK));
    EXPECT_OUTCOME("throws E_INVALIDARG", document.ReplaceDisplayNamePropertyValue(nullptr, W("x")));
    EXPECT_OUTCOME("throws E_POINTER", document.ReplaceOptionDisplayNamePropertyValue(nullptr, psk, W("A"), W("x")));
    EXPECT_OUTCOME("throws E_INVALIDARG",
                   document.ReplaceOptionDisplayNamePropertyValue(feature.Get(), psk, W("A"), W("")));
    EXPECT_OUTCOME("throws E_INVALIDARG", document.CreateOption(W(""), psk, W(""), W(""), element.Put()));
    EXPECT_OUTCOME("throws E_POINTER", document.AppendChildOption(W("O"), psk, W(""), W(""), nullptr));
}

}  // namespace
