// What a product makes of DEVMODEs and tickets.
#include "converter.h"

#include <subsystem/devmodemaker.h>
#include <subsystem/explain/explain.h>
#include "throwawayprinter.h"

Converted Converter::ToTicket(const DevmodeBuffer& devmode) {
    const ExplainedTicket result = ConvertAndExplain(facts_, devmode, nullptr);
    return {FormatDocument(result.ticket.Get()), ListLosses(result.explanation)};
}

Converted Converter::ToDevmode(IXMLDOMDocument2* ticket, DevmodeBuffer base) {
    std::vector<std::string> losses = ListLosses(ApplyAndExplain(facts_, ticket, base));
    return {std::string(base.GetBytesView()), std::move(losses)};
}

Converted Converter::ToCapabilities(IXMLDOMDocument2* ticket) {
    return {FormatDocument(session_.MakeCapabilities(ticket).Get()), {}};
}

DevmodeBuffer Converter::MakeDefaultDevmode() const {
    const ProductDescription& product = facts_.GetProduct();
    return MakeDevmode(product, NameThrowawayPrinter(product).AsWideString(), {});
}

std::unique_ptr<Converter> Converters::Take() {
    {
        const std::lock_guard lock(mutex_);
        if (!free_.empty()) {
            std::unique_ptr<Converter> taken = std::move(free_.back());
            free_.pop_back();
            return taken;
        }
    }
    return std::make_unique<Converter>(printer_, source_);
}

void Converters::GiveBack(std::unique_ptr<Converter> converter) {
    const std::lock_guard lock(mutex_);
    free_.push_back(std::move(converter));
}
