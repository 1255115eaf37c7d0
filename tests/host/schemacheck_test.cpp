// Each rule of Print Schema documents: a document that breaks it and one that does not. (The round trips check the
// project's own documents.)
#include "hostrun.h"

#include <subsystem/hosterror.h>
#include <subsystem/schemacheck/schemacheck.h>
#include <support/sampledocuments.h>

namespace {

const std::string kSpaces =
    " version='1' xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
    " xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'"
    " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:xsd='http://www.w3.org/2001/XMLSchema'";

// The content starts on line 2.
std::string Wrap(const std::string& root, const std::string& content) {
    return "<psf:" + root + kSpaces + ">\n" + content + "</psf:" + root + ">";
}
std::string Ticket(const std::string& content) { return Wrap("PrintTicket", content); }
std::string Capabilities(const std::string& content) { return Wrap("PrintCapabilities", content); }

std::string Value(const std::string& type, const std::string& text) {
    return "<psf:Value xsi:type='xsd:" + type + "'>" + text + "</psf:Value>";
}
std::string Named(const std::string& element, const std::string& name, const std::string& content) {
    return "<psf:" + element + " name='" + name + "'>" + content + "</psf:" + element + ">";
}
std::string Feature(const std::string& name, const std::string& options) { return Named("Feature", name, options); }
std::string Scored(const std::string& name, const std::string& content) {
    return Named("ScoredProperty", name, content);
}
std::string Init(const std::string& name, const std::string& content) { return Named("ParameterInit", name, content); }
const std::string kPickOne = Named("Property", "psf:SelectionType", Value("QName", "psk:PickOne"));
std::string Offered(const std::string& options) { return Feature("psk:PageX", kPickOne + options); }
std::string Referring(const std::string& content) {
    return Feature("psk:PageX", Named("Option", "psk:A", Scored("psk:S", Named("ParameterRef", "psk:JobP", content))));
}
std::string Nested(int depth, const std::string& inner) {
    return depth == 0 ? inner : Scored("psk:S", Value("integer", "1") + Nested(depth - 1, inner));
}

const std::string kMultiple = Named("Property", "psf:Multiple", Value("integer", "1"));
std::string Definition(const std::string& least, const std::string& value, const std::string& most,
                       const std::string& multiple = kMultiple, const std::string& name = "psk:JobP") {
    return Named("ParameterDef", name,
                 Named("Property", "psf:DataType", Value("QName", "xsd:integer")) +
                     Named("Property", "psf:DefaultValue", Value("integer", value)) +
                     Named("Property", "psf:MinValue", Value("integer", least)) +
                     Named("Property", "psf:MaxValue", Value("integer", most)) +
                     Named("Property", "psf:Mandatory", Value("QName", "psk:Optional")) +
                     Named("Property", "psf:UnitType", Value("string", "copies")) + multiple);
}

struct Twins {
    SchemaRule rule;
    std::string broken, sound;
    int line = 2;
};

const std::string kOption = "<psf:Option name='psk:A'/>";
const std::string kDone = Feature("psk:PageX", kOption);

const Twins kTwins[] = {
    {SchemaRule::Document, "<PrintTicket version='1'/>", Ticket(""), 1},
    {SchemaRule::Document, Wrap("Other", ""), Capabilities(""), 1},
    {SchemaRule::Document, "<?xml version='1.0' encoding='ISO-8859-1'?>\n" + Ticket(kDone),
     "<?xml version='1.0' encoding='utf-8'?>\n" + Ticket(kDone)},
    {SchemaRule::Document,
     "<p:PrintTicket\n\nversion='2' xmlns:p='" + std::string("http://schemas.microsoft.com/windows/2003/08/printing/"
                                                             "printschemaframework'/>"),
     Ticket(""), 1},
    {SchemaRule::RootContent, Ticket(Definition("1", "1", "9")), Capabilities(Definition("1", "1", "9"))},
    {SchemaRule::RootContent, Ticket("<other xmlns='urn:x'/>"), Ticket("<!-- <other/> -->")},
    {SchemaRule::Content, Ticket("text" + kDone), Ticket(" \n" + kDone), 1},
    {SchemaRule::Content, Ticket("<psf:Feature name='psk:PageX' Name='x'>" + kOption + "</psf:Feature>"),
     Ticket(kDone)},
    {SchemaRule::Names, Ticket("<psf:Property>" + Value("string", "") + "</psf:Property>"),
     Ticket(Named("Property", "psk:PageP", Value("string", "")))},
    {SchemaRule::Names, Ticket(Feature("PageX", kOption)), Ticket("\n\n" + kDone)},
    {SchemaRule::Names, Ticket(Feature("mk:PageX", kOption)),
     Ticket("<psf:Feature xmlns:mk='urn:m' name='mk:PageX'>" + kOption + "</psf:Feature>")},
    {SchemaRule::Names, Ticket(Feature("psk:Page:X", kOption)), Ticket(kDone)},
    {SchemaRule::Names, Ticket(Feature("psk:Page\u00D7", kOption)),
     Ticket(Feature("psk:Page\u00D8\U00010000", kOption))},
    {SchemaRule::Names, Ticket(Feature("psk:PageX", "<psf:Option name='psk:\u0301A'/>")),
     Ticket(Feature("psk:PageX", "<psf:Option name='psk:A\u0301'/>"))},
    {SchemaRule::Names, Ticket(Feature("ns0000:PageX", kOption)), Ticket(kDone)},
    {SchemaRule::Names, Ticket(Init("ns0000:JobP", Value("string", ""))), Ticket(kDone)},
    {SchemaRule::Duplicates, Ticket(kDone + "\n" + kDone), Ticket(kDone + Feature("psk:PageY", kOption)), 3},
    {SchemaRule::Duplicates,
     Ticket(kDone + "\n<psf:Feature xmlns:k='http://schemas.microsoft.com/windows/2003/08/printing/" +
            "printschemakeywords' name='k:PageX'>" + kOption + "</psf:Feature>"),
     Ticket(Init("psk:PageX", Value("string", "")) + kDone), 3},
    {SchemaRule::NameStart, Ticket(Feature("psk:Paper", kOption)),
     Ticket(Feature("psk:DocumentX", Feature("psk:Paper", kOption)))},
    {SchemaRule::Structure, Ticket(Feature("psk:PageX", "")), Ticket(kDone)},
    {SchemaRule::Structure, Ticket(Feature("psk:PageX", "<psf:Option>" + kOption + "</psf:Option>")),
     Ticket(Feature("psk:PageX", "<psf:Option/>"))},
    {SchemaRule::Structure, Ticket(Feature("psk:PageX", Named("Option", "psk:A", Scored("psk:S", "")))),
     Ticket(Feature("psk:PageX", Named("Option", "psk:A", Scored("psk:S", Value("string", "")))))},
    {SchemaRule::Structure, Ticket(Feature("psk:PageX", Named("Option", "psk:A", Nested(11, "")))),
     Ticket(Feature("psk:PageX", Named("Option", "psk:A", Nested(10, ""))))},
    {SchemaRule::Structure, Ticket(Init("psk:JobP", Value("integer", "1")) + Referring(" ")),
     Ticket(Init("psk:JobP", Value("integer", "1")) + Referring("<!-- -->"))},
    {SchemaRule::Structure, Capabilities(Feature("psk:PageColorManagement", kPickOne)), Capabilities(Offered(kOption))},
    {SchemaRule::Structure, Ticket(Init("psk:JobP", "")), Ticket(Init("psk:JobP", Value("string", "")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", Value("integer", "1.5"))),
     Ticket(Init("psk:JobP", Value("decimal", "-1.5")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", "<psf:Value>1</psf:Value>")),
     Ticket(Init("psk:JobP", Value("integer", " +1 ")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", Value("QName", "mk:A"))),
     Ticket(Init("psk:JobP", Value("QName", "psk:A")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", Value("string", "a<!-- b -->c"))),
     Ticket("<!-- a -->" + Init("psk:JobP", "<?b?>" + Value("string", "<![CDATA[c]]>")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", Value("boolean", "true"))),
     Ticket(Init("psk:JobP", Value("string", "true")))},
    {SchemaRule::Values, Ticket(Init("psk:JobP", Value("string", " "))), Ticket(Init("psk:JobP", Value("string", "")))},
    {SchemaRule::Choices, Capabilities(kDone), Capabilities(Offered(kOption))},
    {SchemaRule::Choices, Capabilities(Feature("psk:PageICMRenderingIntent", kOption)), Capabilities(Offered(kOption))},
    {SchemaRule::Choices, Capabilities(Offered("<psf:Option name='psk:A' constrained='None'/>")),
     Capabilities(Offered("<psf:Option name='psk:A' constrained='psk:None'/>"))},
    {SchemaRule::Definitions, Capabilities(Definition("1", "10", "9")), Capabilities(Definition("-9", "9", "9"))},
    {SchemaRule::Definitions, Capabilities(Definition("1", "1", "9", "")), Capabilities(Definition("1", "1", "1"))},
    {SchemaRule::References, Ticket(Referring("")), Ticket(Init("psk:JobP", Value("integer", "1")) + Referring(""))},
    {SchemaRule::DistinctOptions, Capabilities(Offered(kOption + "\n" + kOption)),
     Capabilities(Offered(kOption + "<psf:Option name='psk:B'/><psf:Option/>")), 3},
    {SchemaRule::DistinctOptions,
     Ticket(Feature("psk:PageX", "<psf:Option>" + Scored("psk:S", Value("integer", "1")) + "</psf:Option>\n" +
                                     "<psf:Option>" + Scored("psk:S", Value("integer", "1")) + "</psf:Option>")),
     Ticket(Feature("psk:PageX", "<psf:Option>" + Scored("psk:S", Value("integer", "1")) + "</psf:Option>\n" +
                                     "<psf:Option>" + Scored("psk:S", Value("integer", "2")) + "</psf:Option>")),
     3},
    {SchemaRule::Sizes, Ticket(Init("psk:PageMediaSizeMediaSizeWidth", Value("integer", "0"))),
     Ticket(Init("psk:PageMediaSizeMediaSizeWidth", Value("integer", "1")))},
    {SchemaRule::Sizes, Ticket(Init("psk:PageMediaSizePSWidth", Value("decimal", "1"))),
     Ticket(Init("psk:PageMediaSizePSWidth", Value("integer", "+1")))},
    {SchemaRule::Sizes, Capabilities(Definition("-1", "1", "9", kMultiple, "psk:PageMediaSizePSWidth")),
     Capabilities(Definition("0", "1", "9", kMultiple, "psk:PageMediaSizePSWidth"))},
};

std::string Tell(const std::vector<SchemaFinding>& findings) {
    std::string text;
    for (const SchemaFinding& finding : findings)
        text += std::to_string(finding.line) + (finding.isNote ? " note " : " ") + finding.sentence + "\n";
    return text;
}

TEST(SchemaCheck, EachRuleIsBrokenByOneTwinAlone) {
    for (const Twins& twins : kTwins) {
        const std::vector<SchemaFinding> broken = CheckSchemaDocument(twins.broken);
        ASSERT_EQ(broken.size(), 1u) << twins.broken << '\n' << Tell(broken);
        EXPECT_EQ(broken[0].rule, twins.rule) << twins.broken << '\n' << Tell(broken);
        EXPECT_EQ(broken[0].line, twins.line) << Tell(broken);
        EXPECT_FALSE(broken[0].isNote) << Tell(broken);
        EXPECT_EQ(Tell(CheckSchemaDocument(twins.sound)), "") << twins.sound;
    }
}

TEST(SchemaCheck, WhatTheComponentMustWriteIsANote) {
    const std::string data = Definition("1", "1", "9", kMultiple, "psk:JobMorvaneDriverData");
    for (const std::string& document : {Ticket(Init("ns0000:JobMorvaneDriverData", Value("string", "")) +
                                               Init("ns0000:JobCopiesAllDocuments", Value("integer", "1"))),
                                        Capabilities(data + Feature("psk:PageICMRenderingIntent", kOption)),
                                        Capabilities(data + Feature("psk:PageColorManagement", kPickOne))}) {
        const std::vector<SchemaFinding> findings = CheckSchemaDocument(document);
        ASSERT_EQ(findings.size(), 1u) << Tell(findings);
        EXPECT_TRUE(findings[0].isNote) << Tell(findings);
    }
}

TEST(SchemaCheck, WhatIsNoXmlIsUnreadable) {
    for (const char* bytes : {"", "text", "<a>", "<p:a/>", "<!DOCTYPE a><a/>",
                              "<?xml version='1.0' encoding='UTF-7'?>+ADw-!DOCTYPE a>+ADw-a/>", "<a b='1' b='2'/>",
                              "<a>&x;</a>", "\xEF\xBB\xBF<?xml version='1.0' encoding='latin1'?><a/>"}) {
        EXPECT_THROW(CheckSchemaDocument(bytes), InputError) << bytes;
    }
    std::string wide = "\xFF\xFE";
    for (const char character : "<?xml version='1.0' encoding='UTF-8'?>" + Ticket(kDone)) {
        wide += character;
        wide += '\0';
    }
    EXPECT_THROW(CheckSchemaDocument(wide), InputError);
    EXPECT_EQ(Tell(CheckSchemaDocument(wide.replace(wide.find('8'), 1, "1\0006", 3))), "");
}

class CheckCommand : public HostRun {};

TEST_F(CheckCommand, TellsLineAndStatus) {
    const std::string sound = Write("sound.xml", Ticket(kDone));
    EXPECT_EQ(Do({"check", sound}), sound + ": no rule is broken.\n");

    const std::string broken = Write("broken.xml", Ticket(kDone + "\n" + kDone));
    const Outcome outcome = Run({"check", broken});
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_EQ(outcome.out, broken + ":3: the Feature 'psk:PageX' occurs twice in the root; the first is on line 2.\n" +
                               broken + ": 1 rule is broken, in 1 place.\n");

    std::string repeated;
    for (int count = 0; count < 25; ++count) repeated += "\n" + Feature("psk:X" + std::to_string(count), kOption);
    const std::string many = Run({"check", Write("broken.xml", Ticket(repeated))}).out;
    EXPECT_EQ(std::count(many.begin(), many.end(), '\n'), 12) << many;
    EXPECT_NE(many.find(":13: ... and 15 more of this rule, from here on.\n"), std::string::npos) << many;
    EXPECT_NE(many.find(": 1 rule is broken, in 25 places.\n"), std::string::npos) << many;

    for (const char* bytes : {"no XML", "<!DOCTYPE a><a/>"}) {
        EXPECT_EQ(Run({"check", Write("unreadable.xml", bytes)}).status, 2) << bytes;
    }
    EXPECT_EQ(Run({"check", File("absent.xml")}).status, 2);
}

// Documents of other software break rules; they must not break the check.
class SampleCheck : public HostRun, public testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(Folders, SampleCheck, testing::Values(kOwnDocuments, kRealDocuments));

TEST_P(SampleCheck, ForeignDocumentsAreChecked) {
    const auto files = ListSampleDocuments(GetParam());
    REQUIRE_SAMPLE_DOCUMENTS(GetParam(), files);
    for (const auto& file : files) EXPECT_LE(Run({"check", PathToUtf8(file)}).status, 1) << file;
}

}  // namespace
