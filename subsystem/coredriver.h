// CoreDriver: a small core printer driver. It does the translations that come before the PrintTicket provider's: the
// public DEVMODE fields and the standard features of the Print Schema.
#pragma once

#include <msxml2.h>
#include <mvutil/cxstring.h>
#include <products/reader/productdescription.h>

#include <memory>
#include <string>

class SchemaSettings;

class CoreDriver {
public:
    // The names are the printer's and its port's.
    CoreDriver(std::shared_ptr<const ProductDescription> product, const CXString& printer, const CXString& port);

    const ProductDescription& GetProduct() const noexcept { return *product_; }
    // Namespace of the core driver's own names for this product: documents declare it where the provider has none.
    WideString GetOwnNamespace() const;

    // A PrintTicket with orientation, resolution, colour, duplex, collation, copies and media size, as far as the
    // printer has them; UTF-8 text.
    std::string WriteTicket(const DEVMODEW& devmode) const;
    // A PrintCapabilities with the same features, as the printer offers them; UTF-8 text.
    std::string WriteCapabilities() const;
    // Sets the public fields that the ticket states, with their flags. What it does not state, or states in another
    // way, stays, and so does what the printer has not.
    void ReadTicket(IXMLDOMDocument2* document, DEVMODEW& devmode) const;

private:
    LONG QueryNumber(WORD capability) const;
    std::vector<std::pair<LONG, LONG>> QueryResolutions() const;
    std::string WriteResolution(const DEVMODEW& devmode) const;
    std::string WriteMediaSize(const DEVMODEW& devmode) const;
    std::string WriteResolutionChoices() const;
    std::string WriteMediaSizeChoices() const;
    void ReadMediaSize(const SchemaSettings& ticket, DEVMODEW& devmode) const;

    std::shared_ptr<const ProductDescription> product_;
    CXString printer_;
    CXString port_;
};
