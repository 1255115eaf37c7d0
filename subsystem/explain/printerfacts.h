// PrinterFacts: what explanations ask of a printer, each thing once.
#pragma once

#include <subsystem/printsession.h>

#include <optional>

#include <subsystem/schemasettings.h>
#include "explanation.h"
#include "paperwords.h"

// For one thread at a time. The session must outlive the object.
class PrinterFacts {
public:
    explicit PrinterFacts(const PrintSession& session);

    // What the printer offers according to another document than the one that the session makes.
    void SetCapabilities(IXMLDOMDocument2* capabilities) { offered_.emplace(capabilities); }

    const PrintSession& GetSession() const noexcept { return session_; }
    const ProductDescription& GetProduct() const noexcept { return session_.GetCoreDriver().GetProduct(); }
    const PrinterPapers& GetPapers();
    // The features and options that the printer offers. Throws what the session throws.
    const SchemaSettings& GetOffered();

    // A row about the printer's workflow library when it is missing.
    void AddMissingLibrary(Explanation& rows) const;

    DevmodeBuffer MakeDefaultDevmode() const;  // as the driver makes it
    SchemaSettings MakeTicketSettings(DevmodeBuffer devmode) const;

private:
    const PrintSession& session_;
    std::optional<PrinterPapers> papers_;
    std::optional<SchemaSettings> offered_;
};
