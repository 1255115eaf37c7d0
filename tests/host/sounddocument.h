// ExpectSound: a document of the project's own breaks no rule of Print Schema documents.
#pragma once

#include <subsystem/printsession.h>
#include <subsystem/schemacheck/schemacheck.h>

#include <gtest/gtest.h>

#include <string>

// The document's text.
inline std::string ExpectSound(IXMLDOMDocument2* document) {
    std::string text = FormatDocument(document);
    for (const SchemaFinding& finding : CheckSchemaDocument(text)) {
        EXPECT_TRUE(finding.isNote) << finding.sentence << '\n' << text;
    }
    return text;
}
