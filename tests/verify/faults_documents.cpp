// Providers that write or keep documents badly.
#include "documentedit.h"
#include "referenceprovider.h"

namespace {

// Edits each document of one kind.
struct Edits : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG bytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override {
        const HRESULT result =
            ReferenceProvider::ConvertDevModeToPrintTicket(bytes, devmode, privateBytes, privateDevmode, ticket);
        if (SUCCEEDED(result)) EditTicket(ticket);
        return result;
    }
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* ticket,
                                                        IXMLDOMDocument2* capabilities) override {
        if (ticket && capabilities) EditCapabilities(ticket, capabilities);
        return ReferenceProvider::CompletePrintCapabilities(ticket, capabilities);
    }
    virtual void EditTicket(IXMLDOMDocument2*) {}
    virtual void EditCapabilities(IXMLDOMDocument2*, IXMLDOMDocument2*) {}
};

constexpr const char* kEnd = "</psf:PrintTicket>";

struct WritesABareName : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, kEnd,
                  "<psf:Feature name=\"PageOdd\"><psf:Option name=\"psk:None\"/></psf:Feature></psf:PrintTicket>");
    }
};

struct WritesTwice : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, kEnd,
                  "<psf:Feature name=\"psk:PageOrientation\"><psf:Option name=\"psk:Portrait\"/></psf:Feature>"
                  "</psf:PrintTicket>");
    }
};

struct WritesAValueWithoutAName : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, kEnd, "<psf:Property><psf:Value/></psf:Property></psf:PrintTicket>");
    }
};

struct WritesANumberThatIsNone : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(
            ticket, kEnd,
            "<psf:Property name=\"psk:PageOdd\"><psf:Value xsi:type=\"xsd:integer\">many</psf:Value></psf:Property>"
            "</psf:PrintTicket>");
    }
};

struct OffersByTicket : Edits {
    void EditCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2* capabilities) override {
        if (GetText(ticket).find(Widen("psk:Landscape")) != DocumentText::npos)
            ReplaceIn(capabilities, "psk:Portrait", "psk:ReversePortrait");
    }
};

struct DropsForeignFeatures : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override { ReplaceIn(ticket, "fo:Depth", "fo:Deep"); }
};

struct DropsADeclaration : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override { ReplaceIn(ticket, "xmlns:unused=\"urn:unused\"", ""); }
};

struct AddsEachTime : Edits {
    void EditTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, kEnd,
                  "<psf:Property name=\"psk:PageTimes\"><psf:Value>1</psf:Value></psf:Property></psf:PrintTicket>");
    }
};

struct ValidatesByChanging : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, "psk:Landscape", "psk:Portrait");
        return S_CONFLICT_RESOLVED;
    }
};

struct ChangesAnyDocument : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override {
        ReplaceIn(ticket, "no ticket", "a ticket");
        return S_OK;
    }
};

struct KnowsOnePrefix : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        const bool isLandscape = GetText(ticket).find(Widen("\"psk:Landscape\"")) != DocumentText::npos;
        devmode->dmOrientation = isLandscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
        return S_OK;
    }
};

const FaultRegistration registrations[] = {
    {"writes a name without a prefix", "schema-rules", MakeFaulty<WritesABareName>()},
    {"writes a feature twice", "schema-rules", MakeFaulty<WritesTwice>()},
    {"writes a property without a name", "xml-schema", MakeFaulty<WritesAValueWithoutAName>()},
    {"writes a number that is none", "schema-rules", MakeFaulty<WritesANumberThatIsNone>()},
    {"offers by ticket", "same-offers", MakeFaulty<OffersByTicket>()},
    {"changes a foreign feature", "foreign-content", MakeFaulty<DropsForeignFeatures>()},
    {"drops a foreign declaration", "foreign-content", MakeFaulty<DropsADeclaration>()},
    {"adds to the document each time", "second-run", MakeFaulty<AddsEachTime>()},
    {"changes what it validates", "validation", MakeFaulty<ValidatesByChanging>()},
    {"changes documents of another kind", "other-kinds", MakeFaulty<ChangesAnyDocument>()},
    {"knows one prefix", "dress", MakeFaulty<KnowsOnePrefix>()},
};

}  // namespace
