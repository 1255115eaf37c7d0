// What a product makes of DEVMODEs and tickets.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <subsystem/explain/printerfacts.h>

struct Converted {
    std::string bytes;
    std::vector<std::string> losses;  // one line for each setting that is lost or ignored, as ListLosses makes them
};

// The printer that stands for the product, for one thread at a time. Each conversion throws what the session's does.
class Converter {
public:
    Converter(const CXString& printer, const ProviderSource& source) : session_(printer, source), facts_(session_) {}

    // Documents are UTF-8 with an XML declaration.
    Converted ToTicket(const DevmodeBuffer& devmode);
    Converted ToDevmode(IXMLDOMDocument2* ticket, DevmodeBuffer base);
    Converted ToCapabilities(IXMLDOMDocument2* ticket);  // null: as the printer is by itself
    // The product's own settings; the same whatever the printer is called.
    DevmodeBuffer MakeDefaultDevmode() const;

private:
    PrintSession session_;
    PrinterFacts facts_;
};

// As many converters as threads want at once; each is used again.
class Converters {
public:
    explicit Converters(const CXString& printer, const ProviderSource& source = GetOwnProvider())
        : printer_(printer), source_(source) {}

    // Returns what operation(Converter&) returns. A converter in which something was thrown is not used again.
    template <class Operation>
    auto Use(Operation operation) {
        std::unique_ptr<Converter> converter = Take();
        auto result = operation(*converter);
        GiveBack(std::move(converter));
        return result;
    }

private:
    std::unique_ptr<Converter> Take();
    void GiveBack(std::unique_ptr<Converter> converter);

    CXString printer_;
    ProviderSource source_;
    std::mutex mutex_;
    std::vector<std::unique_ptr<Converter>> free_;
};
