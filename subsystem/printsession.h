// PrintSession: one printer with its PrintTicket provider, driven as the print subsystem drives it.
#pragma once

#include <comptr.h>
#include <msxml2.h>
#include <printsubsystem/printticketprovider.h>

#include "coredriver.h"
#include "devmodefile.h"
#include "installedprinter.h"
#include "providerlibrary.h"

// For one thread at a time; sessions of several printers, or of one, may live side by side.
class PrintSession {
public:
    using Document = ComPtr<IXMLDOMDocument2>;

    // Opens the printer and binds a provider to it. Throws what InstalledPrinter throws, and OperationError when the
    // provider refuses the printer.
    explicit PrintSession(const CXString& printer, const ProviderSource& source = GetOwnProvider());

    const InstalledPrinter& GetPrinter() const noexcept { return printer_; }
    const CoreDriver& GetCoreDriver() const noexcept { return coreDriver_; }
    IPrintOemPrintTicketProvider* GetProvider() const noexcept { return provider_.Get(); }

    // Whether the printer's workflow library can be loaded. A provider binds without it, and then has no product texts
    // and no controller family.
    bool HasWorkflowLibrary() const;

    // The calls on the provider, as it answers them. Each throws OperationError when the provider keeps a reference to
    // a document, or gives one away.
    HRESULT CallTicket(DevmodeBuffer& devmode, IXMLDOMDocument2* ticket) const;
    HRESULT CallApply(IXMLDOMDocument2* ticket, DevmodeBuffer& devmode) const;
    HRESULT CallCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2* capabilities) const;  // the ticket may be null
    HRESULT CallExpand(IXMLDOMDocument2* ticket) const;
    HRESULT CallValidate(IXMLDOMDocument2* ticket) const;

    // What the print subsystem makes of them. A document that the core driver has left may be handed in; without one
    // the session's core driver writes it. Each throws OperationError when the provider fails.
    Document MakeTicket(DevmodeBuffer& devmode, Document coreTicket = nullptr) const;
    void ApplyTicket(IXMLDOMDocument2* ticket, DevmodeBuffer& devmode) const;
    Document MakeCapabilities(IXMLDOMDocument2* ticket = nullptr, Document coreCapabilities = nullptr) const;

    // Declares on the document's root what it does not declare with a prefix: the namespace of the device's own names
    // under ns0000, those of every Print Schema document under psf, psk, xsi and xsd; where the prefix is taken, under
    // the next nsNNNN that is free. The documents that the print subsystem hands over have them all.
    void DeclareNamespaces(IXMLDOMDocument2* document) const;

private:
    void Bind();

    InstalledPrinter printer_;
    CoreDriver coreDriver_;
    std::shared_ptr<const ProviderLibrary> library_;  // goes after its provider
    ComPtr<IPrintOemPrintTicketProvider> provider_;   // goes before the printer's handle does
    WideString deviceNamespace_;                      // the provider's; empty when it has none
};

// The document as UTF-8 with an XML declaration. Throws OperationError when it cannot be read.
std::string FormatDocument(IXMLDOMDocument2* document);
