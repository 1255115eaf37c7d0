// The host's reading and writing of document files.
#include "domtest.h"

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/xmlfile.h>
#include <support/temporaryfolder.h>

namespace {

TEST(DocumentType, IsSeenInTheProlog) {
    const std::pair<const char*, bool> rows[] = {
        {"<!DOCTYPE a><a/>", true},
        {"<?xml version='1.0'?>\n<!-- > -- ?> --><?pi -- > ?>\r\n\t<!DOCTYPE a [ ]><a/>", true},
        {"<!-- <?x --><!DOCTYPE a><a/>", true},
        {"<?x <!-- ?><!DOCTYPE a><a/>", true},
        {"<!-- <!DOCTYPE a> --><a/>", false},
        {"<?pi <!DOCTYPE a> ?><a/>", false},
        {"<a><![CDATA[<!DOCTYPE a>]]></a>", false},
        {"<a/><!DOCTYPE a>", false},  // not well-formed, which the parser reports
        {"<!-- never closed <!DOCTYPE a>", false},
        {"<!--><!DOCTYPE a> --><a/>", false},
        {"", false},
    };
    for (const auto& [text, holds] : rows) {
        EXPECT_EQ(HoldsDocumentType(text), holds) << text;
        EXPECT_EQ(HoldsDocumentType(std::string("\xEF\xBB\xBF") + text), holds) << text;
        for (const bool bigEndian : {false, true}) {
            EXPECT_EQ(HoldsDocumentType(Utf16(text, bigEndian, true)), holds) << text;
        }
    }
    EXPECT_TRUE(HoldsDocumentType(Utf16("<!DOCTYPE a><a/>", false, false)));
    EXPECT_TRUE(HoldsDocumentType(Utf16("<!DOCTYPE a><a/>", true, false)));
    // U+2D2D and U+3E2D hold the bytes of "-->", which end no comment.
    EXPECT_FALSE(HoldsDocumentType(Utf16("<!--", false, true) + "--->" + Utf16("<!DOCTYPE a>--><a/>", false, false)));
}

TEST(XmlFile, IsReadAndWrittenWhole) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Write("document.xml", "<a><b/> </a>");
    const auto document = ReadDocumentFile(file);
    EXPECT_EQ(RootXml(document), "<a><b/> </a>");
    EXPECT_EQ(Root(document)->setAttribute(B("x").Get(), Variant(W("1")).Get()), S_OK);
    WriteDocumentFile(file, document.Get());
    EXPECT_THROW(WriteDocumentFile(file, NewDocument().Get()), OperationError) << "no root element";
    EXPECT_EQ(ReadWholeFile(file), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a x=\"1\"><b/> </a>\n");
}

}  // namespace
