// Documents that a provider leaves keep to the Print Schema. What the core driver's own break is not its fault.
#include <subsystem/schemacheck/schemacheck.h>

#include <algorithm>
#include <functional>

#include <verify/check.h>
#include <verify/documentset.h>
#include <verify/meaning.h>
#include <verify/xmlschema.h>

namespace {

using Sentences = std::vector<std::string>;
using FindBreaks = std::function<Sentences(const std::string& document)>;

Sentences FindRuleBreaks(const std::string& document) {
    Sentences sentences;
    for (const SchemaFinding& finding : CheckSchemaDocument(document))
        if (!finding.isNote) sentences.push_back(finding.sentence);
    return sentences;
}

void RequireNothingNew(TestBench& bench, const FindBreaks& findBreaks, const std::string& before,
                       const std::string& after) {
    const Sentences old = findBreaks(before);
    for (const std::string& sentence : findBreaks(after)) {
        if (std::find(old.begin(), old.end(), sentence) != old.end()) continue;
        bench.SetInput("xml", after);
        bench.Fail("the document that is left breaks a rule: " + sentence);
    }
}

void RequireSoundDocuments(TestBench& bench, const FindBreaks& findBreaks) {
    DocumentSet documents(bench);
    const auto require = [&](const std::string& before, const std::string& after) {
        RequireNothingNew(bench, findBreaks, before, after);
    };
    const std::string& coreCapabilities = documents.GetCoreCapabilities();
    require(coreCapabilities, documents.MakeCapabilities(coreCapabilities));
    for (const DevmodeSettings& settings : documents.GetSettings()) {
        const std::string coreTicket = documents.WriteCoreTicket(settings);
        const std::string ticket = documents.MakeTicket(coreTicket, settings);
        require(coreTicket, ticket);
        require(ticket, documents.Expand(ticket));
        require(ticket, documents.Validate(ticket));
        require(coreCapabilities, documents.MakeCapabilities(coreCapabilities, ticket));
    }
}

void KeepsTheRules(TestBench& bench) { RequireSoundDocuments(bench, FindRuleBreaks); }

void KeepsTheXmlSchema(TestBench& bench) {
    if (!FindSchemaBreaks("<none/>")) throw CheckNotApplicable("this build has no validator of XML Schemas");
    RequireSoundDocuments(bench, [](const std::string& document) { return *FindSchemaBreaks(document); });
}

void OffersTheSame(TestBench& bench) {
    DocumentSet documents(bench);
    const std::string expected = DescribeOffers(documents.MakeCapabilities(documents.GetCoreCapabilities()));
    for (const DevmodeSettings& settings : documents.GetSettings()) {
        const std::string ticket = documents.MakeTicket(documents.WriteCoreTicket(settings), settings);
        const std::string got = DescribeOffers(documents.MakeCapabilities(documents.GetCoreCapabilities(), ticket));
        bench.SetInput("xml", ticket);
        bench.Require(got == expected, "for a ticket the capabilities offer something else than without one: " +
                                           FindDifference(expected, got));
    }
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Documents, "schema-rules", "documents that are left break no rule of the Print Schema",
      KeepsTheRules}},
    {{CheckGroup::Documents, "xml-schema", "documents that are left are valid by an XML Schema", KeepsTheXmlSchema}},
    {{CheckGroup::Documents, "same-offers", "the capabilities offer the same whatever ticket they are for",
      OffersTheSame}},
};

}  // namespace
