// What is in a document already: foreign content stays, a second run and a validation change nothing, documents of
// another kind stay as they are.
#include <subsystem/xmlfile.h>

#include <algorithm>

#include <verify/check.h>
#include <verify/documentset.h>
#include <verify/meaning.h>

namespace {

constexpr const char* kForeignNamespace = "http://example.org/another maker/printing";

// Content of another maker, for a ticket or for capabilities; the parameters stand in for all that differs.
std::string MakeForeignContent(bool isForCapabilities) {
    const std::string feature = R"(<psf:Feature name="fo:PageShine">
  <psf:Property name="fo:Since"><psf:Value xsi:type="xsd:string">always</psf:Value></psf:Property>
  <psf:Option name="fo:Matt">
    <psf:ScoredProperty name="fo:Grade"><psf:Value xsi:type="xsd:integer">3</psf:Value></psf:ScoredProperty>
    <psf:ScoredProperty name="fo:Number"><psf:ParameterRef name="fo:PageNumber"/></psf:ScoredProperty>
    <psf:Property name="fo:Kind"><psf:Value xsi:type="xsd:QName">fo:Soft</psf:Value></psf:Property>
  </psf:Option>
  <psf:Feature name="fo:Depth"><psf:Option name="psk:None"/></psf:Feature>
</psf:Feature>)";
    const std::string definition = R"(<psf:ParameterDef name="fo:PageNumber">
  <psf:Property name="psf:DataType"><psf:Value xsi:type="xsd:QName">xsd:integer</psf:Value></psf:Property>
</psf:ParameterDef>)";
    const std::string value =
        R"(<psf:ParameterInit name="fo:PageNumber"><psf:Value xsi:type="xsd:integer">-12</psf:Value></psf:ParameterInit>)";
    const std::string others =
        R"(<psf:Property name="fo:PageNote"><psf:Value xsi:type="xsd:string"> &#228; &lt;&amp;&gt; </psf:Value></psf:Property>
<fo:Own kept="yes"><fo:Inner>text</fo:Inner></fo:Own>)";
    return feature + (isForCapabilities ? definition : value) + others;
}

// Into the root, at its start or its end.
std::string Insert(std::string document, const std::string& content, bool atEnd) {
    const std::size_t root = document.find('<', document.find("?>"));
    const std::size_t tagEnd = document.find('>', root), lastTag = document.rfind("</");
    document.insert(atEnd ? lastTag : tagEnd + 1, content);
    document.insert(tagEnd, std::string(" xmlns:fo=\"") + kForeignNamespace + "\" xmlns:unused=\"urn:unused\"");
    return document;
}

void KeepsForeignContent(TestBench& bench) {
    DocumentSet documents(bench);
    for (const DocumentOperation& operation : documents.ListOperations()) {
        for (const bool atEnd : {false, true}) {
            const std::string core =
                operation.isForCapabilities ? documents.GetCoreCapabilities() : documents.GetCoreTicket();
            const std::string before = Insert(core, MakeForeignContent(operation.isForCapabilities), atEnd);
            const std::string after = operation.run(before);
            const std::vector<std::string> old = ListMeanings(core), kept = ListMeanings(after);
            for (const std::string& meaning : ListMeanings(before)) {
                const bool isForeign = std::find(old.begin(), old.end(), meaning) == old.end();
                bench.Require(!isForeign || std::find(kept.begin(), kept.end(), meaning) != kept.end(),
                              std::string(operation.name) + " loses or changes foreign content: " + meaning);
            }
            const std::vector<std::string> namespaces = ListRootNamespaces(after);
            for (const std::string& uri : ListRootNamespaces(before))
                bench.Require(std::find(namespaces.begin(), namespaces.end(), uri) != namespaces.end(),
                              std::string(operation.name) + " takes away the declaration of " + uri);
        }
    }
}

void SecondRunChangesNothing(TestBench& bench) {
    DocumentSet documents(bench);
    for (const DocumentOperation& operation : documents.ListOperations()) {
        const std::string once =
            operation.run(operation.isForCapabilities ? documents.GetCoreCapabilities() : documents.GetCoreTicket());
        const std::string before = DescribeMeaning(once), after = DescribeMeaning(operation.run(once));
        bench.Require(before == after, std::string("a second ") + operation.name +
                                           " changes the document again: " + FindDifference(before, after));
    }
}

void ValidationChangesNothing(TestBench& bench) {
    DocumentSet documents(bench);
    for (const DevmodeSettings& settings : documents.GetSettings()) {
        const std::string ticket = documents.MakeTicket(documents.WriteCoreTicket(settings), settings);
        const std::string before = DescribeMeaning(ticket);
        const std::string expanded = DescribeMeaning(documents.Expand(ticket));
        bench.Require(expanded == before,
                      "ExpandIntentOptions changes a ticket without intents: " + FindDifference(before, expanded));
        const std::string validated = DescribeMeaning(documents.Validate(ticket));
        bench.Require(validated == before,
                      "ValidatePrintTicket changes a valid ticket: " + FindDifference(before, validated));
    }
}

// Each operation on each document that is none of its own; whether it refuses it is the provider's to say.
void LeavesOtherKindsAlone(TestBench& bench) {
    DocumentSet documents(bench);
    const auto session = bench.OpenSession();
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const ULONG bytes = devmode.GetBytes();
    const std::string before(devmode.GetBytesView());
    const auto require = [&](const char* call, const std::string& text, auto run) {
        const auto document = ReadDocumentBytes(text, "the document");
        const std::string as = FormatDocument(document.Get());
        bench.SetInput("xml", text);
        bench.Step(std::string(call) + " on a document of another kind");
        run(document.Get());
        bench.Require(FormatDocument(document.Get()) == as, std::string(call) + " changes a document of another kind");
        bench.Require(devmode.GetBytesView() == before,
                      std::string(call) + " changes the DEVMODE by a document of another kind");
    };
    std::vector<std::string> noTickets = {
        "<PrintTicket xmlns='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' version='1'/>",
        "<psf:PrintTicket xmlns:psf='https://schemas.example/other' version='1'><psf:Feature "
        "name='a'/></psf:PrintTicket>",
        "<html><body>no ticket</body></html>", "<psf:PrintCapabilities xmlns:psf='urn:x' version='2'/>"};
    std::vector<std::string> noCapabilities = noTickets;
    noTickets.push_back(documents.GetCoreCapabilities());
    noCapabilities.push_back(documents.GetCoreTicket());
    for (const std::string& text : noTickets) {
        require("ConvertPrintTicketToDevMode", text, [&](IXMLDOMDocument2* document) {
            provider->ConvertPrintTicketToDevMode(document, bytes, devmode.Get(), 0, nullptr);
        });
        require("ConvertDevModeToPrintTicket", text, [&](IXMLDOMDocument2* document) {
            provider->ConvertDevModeToPrintTicket(bytes, devmode.Get(), 0, nullptr, document);
        });
        require("ExpandIntentOptions", text,
                [&](IXMLDOMDocument2* document) { provider->ExpandIntentOptions(document); });
        require("ValidatePrintTicket", text,
                [&](IXMLDOMDocument2* document) { provider->ValidatePrintTicket(document); });
    }
    for (const std::string& text : noCapabilities)
        require("CompletePrintCapabilities", text,
                [&](IXMLDOMDocument2* document) { provider->CompletePrintCapabilities(nullptr, document); });
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Documents, "foreign-content",
      "features, parameters, properties and namespaces of other makers survive", KeepsForeignContent}},
    {{CheckGroup::Documents, "second-run", "each operation on its own result changes nothing",
      SecondRunChangesNothing}},
    {{CheckGroup::Documents, "validation", "validating and expanding change nothing in a valid ticket",
      ValidationChangesNothing}},
    {{CheckGroup::Documents, "other-kinds", "documents of another kind, and DEVMODEs beside them, stay as they are",
      LeavesOtherKindsAlone}},
};

}  // namespace
