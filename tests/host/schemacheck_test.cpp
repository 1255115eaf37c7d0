// Documents that the check reads, and what it notes. (The transcripts break each rule.)
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
std::string Init(const std::string& name, const std::string& content) { return Named("ParameterInit", name, content); }
const std::string kPickOne = Named("Property", "psf:SelectionType", Value("QName", "psk:PickOne"));
const std::string kOption = "<psf:Option name='psk:A'/>";
const std::string kDone = Feature("psk:PageX", kOption);
const std::string kData = Named("ParameterDef", "psk:JobMorvaneDriverData",
                                Named("Property", "psf:DataType", Value("QName", "xsd:string")) +
                                    Named("Property", "psf:DefaultValue", Value("string", "")) +
                                    Named("Property", "psf:MinLength", Value("integer", "0")) +
                                    Named("Property", "psf:MaxLength", Value("integer", "9")) +
                                    Named("Property", "psf:Mandatory", Value("QName", "psk:Optional")) +
                                    Named("Property", "psf:UnitType", Value("string", "base64")));

std::string Tell(const std::vector<SchemaFinding>& findings) {
    std::string text;
    for (const SchemaFinding& finding : findings)
        text += std::to_string(finding.line) + (finding.isNote ? " note " : " ") + finding.sentence + "\n";
    return text;
}

TEST(SchemaCheck, WhatTheComponentMustWriteIsANote) {
    for (const std::string& document : {Ticket(Init("ns0000:JobMorvaneDriverData", Value("string", "")) +
                                               Init("ns0000:JobCopiesAllDocuments", Value("integer", "1"))),
                                        Capabilities(kData + Feature("psk:PageICMRenderingIntent", kOption)),
                                        Capabilities(kData + Feature("psk:PageColorManagement", kPickOne))}) {
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

// Documents of other software break rules; they must not break the check.
class SampleCheck : public HostRun, public testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(Folders, SampleCheck, testing::Values(kOwnDocuments, kRealDocuments));

TEST_P(SampleCheck, ForeignDocumentsAreChecked) {
    const auto files = ListSampleDocuments(GetParam());
    REQUIRE_SAMPLE_DOCUMENTS(GetParam(), files);
    for (const auto& file : files) EXPECT_LE(Run({"check", PathToUtf8(file)}).status, 1) << file;
}

}  // namespace
