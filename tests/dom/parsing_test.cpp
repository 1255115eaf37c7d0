// In and out: what a document says survives, whatever form it comes in; what is no document is refused.
#include "domtest.h"

namespace {

// Through the text that a file gets, and through the one that get_xml gives.
void ExpectRoundTrip(const std::string& bytes) {
    const Document document = Load(bytes);
    const std::string infoset = DumpInfoset(document.Get());
    const std::string written = Serialised(document);
    EXPECT_TRUE(written.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"")) << written.substr(0, 60);
    for (const std::string& text : {written, Xml(document.Get())})
        EXPECT_EQ(text.find("?>") > text.find("standalone=\"yes\""), bytes.find("?>") > bytes.find("standalone='yes'"));
    EXPECT_EQ(DumpInfoset(Load(written).Get()), infoset);
    EXPECT_EQ(DumpInfoset(Load(Xml(document.Get())).Get()), infoset);
}

TEST(Parsing, KeepsTheInfosetOfPeculiarDocuments) {
    const char* const documents[] = {
        "<a/>",
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<!--x--><?pi some data?>\n<a> x </a>\n<!--y-->",
        "<p:a xmlns:p='urn:1' x='1' xmlns:q='urn:2' q:x='2'><p:b xmlns:p='urn:3' p:y='3'/><q:c/></p:a>",
        "<a xmlns='urn:1'><b xmlns=''><c xmlns='urn:2'/></b><d/></a>",
        "<a><![CDATA[<&>]]> tail <![CDATA[]]]]><![CDATA[>]]></a>",
        "<a x='&lt;&amp;&#38;&quot;&apos;&#9;&#10;&#13;'>&lt;&amp;&#38;&gt;]]&gt;&#13;&#x1F600;</a>",
        "<a xml:space='preserve' xml:lang='de'>  <b/>\t</a>",
        "<a xmlns:unused=' urn:with blanks '><b xmlns:unused='urn:2'/></a>",
        "\xEF\xBB\xBF<a t='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'>\xE6\xBC\xA2</a>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><a t='\xE4'>\xFC</a>",
    };
    for (const char* const document : documents) {
        SCOPED_TRACE(document);
        ExpectRoundTrip(document);
    }
    const std::string text = "<?xml version='1.0' encoding='utf-16'?><a b='1'>text</a>";
    for (const bool bigEndian : {false, true}) {
        ExpectRoundTrip(Utf16(text, bigEndian, true));
        EXPECT_EQ(RootXml(Load(Utf16(text, bigEndian, false))), "<a b=\"1\">text</a>");
    }
}

TEST(Parsing, WritesAttributesAndDeclarationsInTheOrderRead) {
    const std::string xml =
        "<p:a version=\"1\" xmlns:q=\"urn:2\" q:y=\"2\" xmlns:p=\"urn:1\" z=\"\xC3\xA4 &amp; "
        "&#10;\"><b/>\xE6\xBC\xA2</p:a>";
    EXPECT_EQ(Serialised(Load(xml)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + xml + "\n");
}

TEST(Parsing, RefusesWithASentence) {
    std::string deep;
    for (int i = 0; i < 300; ++i) deep += "<a>";
    const std::pair<std::string, const char*> refusals[] = {
        {"", "empty"},
        {"no xml", "line 1, column"},
        {"</a>", "line 1, column"},
        {std::string("<a/>\0x", 6), "behind"},
        {"<a b='1'c='2'/>", "malformed"},
        {"<a>\n<b>\n</a>", "line 3, column"},
        {"<a b='1' b='2'/>", "redefined"},
        {"<a>&unknown;</a>", "unknown"},
        {"<!DOCTYPE a><a/>", "DOCTYPE"},
        {"<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", "DOCTYPE"},
        {"<!-- x --><!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>", "DOCTYPE"},
        {"<p:a/>", "prefix 'p'"},
        {"<a p:b='1'/>", "prefix 'p'"},
        {"<a xmlns:p=''/>", "xmlns:p"},
        {"<a xmlns:xml='urn:1'/>", "xmlns:xml"},
        {"<a xmlns:xml='http://www.w3.org/XML/1998/namespace'/>", "xmlns:xml"},
        {"<a:b:c xmlns:a='urn:1'/>", "qualified name"},
        {"<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'/>", "twice"},
        {"<a>\x01</a>", "line 1"},
        {"<a>\xFF\xFE</a>", "line 1"},
        {deep, "depth"},
    };
    for (const auto& [bytes, words] : refusals) {
        const Document document = NewDocument();
        std::string error;
        EXPECT_EQ(LoadDomDocument(document.Get(), bytes.data(), bytes.size(), &error), E_FAIL) << bytes;
        EXPECT_NE(error.find(words), std::string::npos) << bytes << "\ngives: " << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        EXPECT_FALSE(Root(document));
    }
}

TEST(Parsing, RefusesADocumentCutAtAnyByte) {
    const std::string xml =
        "<?xml version='1.0'?><!--c--><?p d?><p:a xmlns:p='urn:1' b='&amp;'><![CDATA[x]]>\xC3\xA4&#65;<c/></p:a>";
    for (std::size_t length = 0; length < xml.size(); ++length) {
        for (const bool wide : {false, true}) {
            const std::string cut = wide ? Utf16(xml, false, true).substr(0, 2 * length + 1) : xml.substr(0, length);
            const Document document = NewDocument();
            std::string error;
            EXPECT_EQ(LoadDomDocument(document.Get(), cut.data(), cut.size(), &error), E_FAIL) << length;
            EXPECT_FALSE(error.empty());
        }
    }
    ExpectRoundTrip(xml);
}

TEST(Parsing, LoadXmlAnswersAsPublished) {
    const Document document = NewDocument();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    EXPECT_EQ(document->loadXML(B("<?xml version='1.0' encoding='utf-16'?><a> <b> x </b>\n</a>").Get(), &loaded), S_OK);
    EXPECT_EQ(loaded, VARIANT_TRUE);
    EXPECT_EQ(RootXml(document), "<a><b> x </b></a>") << "texts of nothing but white space go, unless they are to stay";
    const WCHAR lone[] = {'<', 'a', '>', 0xD800, '<', '/', 'a', '>'};
    for (const Bstr& text : {B("<a>\n<b></a>"), Bstr(), Bstr({lone, 8})}) {
        EXPECT_EQ(document->loadXML(text.Get(), &loaded), S_FALSE);
        EXPECT_EQ(loaded, VARIANT_FALSE);
        EXPECT_FALSE(Root(document));
    }
}

TEST(Parsing, LineEndsBecomeLineFeedsAsTextEnters) {
    const Document document = Load("<a x=''><?p?><!--c--><![CDATA[d]]>t</a>");
    const std::pair<const char*, const char*> rows[] = {{"/a/text()[1]", "\n1\n\n2\n"},
                                                        {"/a/text()[2]", "\n1\n\n2\n"},
                                                        {"/a/comment()", "\n1\n\n2\n"},
                                                        {"/a/processing-instruction()", "\n1\n\n2\n"},
                                                        {"/a/@x", "\r1\r\r\n2\r\n"}};
    for (const auto& [query, value] : rows) {
        const Node node = Select(document.Get(), query);
        EXPECT_EQ(node->put_text(B("\r1\r\r\n2\r\n").Get()), S_OK);
        EXPECT_EQ(Value(node.Get()), value) << query;
    }
}

TEST(Parsing, TextThatXmlCannotHoldIsReplacedAsItEnters) {
    const WCHAR raw[] = {'a', 0x0001, 0xD800, 'b', 0xDC00, 0xFFFE, 0, 0xD83D, 0xDE00, 0x1F};
    const std::string kept =
        "a\xEF\xBF\xBD\xEF\xBF\xBD"
        "b\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD";
    const Bstr text({raw, std::size(raw)});
    const Document document = Load("<a/>");
    EXPECT_EQ(Root(document)->put_text(text.Get()), S_OK);
    EXPECT_EQ(Text(Root(document).Get()), kept);
    EXPECT_EQ(Root(document)->setAttribute(B("b").Get(), Variant(text.View()).Get()), S_OK);
    const Document again = Load(Serialised(document));
    EXPECT_EQ(Text(Root(again).Get()), kept);
    EXPECT_EQ(Value(Select(again.Get(), "/a/@b").Get()), kept);
}

}  // namespace
