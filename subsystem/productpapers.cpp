// What a printer can print on of each of its product's papers.
#include "productpapers.h"

#include <bstr.h>
#include <facts/units.h>
#include <marginfile.h>

#include "devmodemaker.h"
#include "hosttext.h"
#include "productcheck.h"

namespace {

// The whole number that the first property of that keyword holds; 0 when there is none.
LONG ReadLength(IXMLDOMDocument2* capabilities, const WideString& keyword) {
    ComPtr<IXMLDOMNode> property;
    Bstr text;
    const WideString path = W("//*[@name='psk:") + keyword + W("']/*");
    if (capabilities->selectSingleNode(Bstr(path).Get(), property.Put()) != S_OK || !property) return 0;
    if (property->get_text(text.Put()) != S_OK) return 0;
    return static_cast<LONG>(ParseNumber(ToUtf8(text.View())).value_or(0));
}

// As the provider states it where a ticket selects the paper; without sides when it leaves that to the core driver.
PrintableArea AskProvider(const PrintSession& session, const ProductPaper& paper) {
    DevmodeBuffer devmode =
        MakeDevmode(*session.GetPrinter().GetProduct(), session.GetPrinter().GetName().AsWideString(),
                    {{{"dmPaperSize", std::to_string(paper.number)}, {"dmOrientation", "1"}}, {}});
    const PrintSession::Document ticket = session.MakeTicket(devmode);
    const PrintSession::Document capabilities = session.MakeCapabilities(ticket.Get());
    capabilities->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
    const auto read = [&](const WCHAR* keyword) { return ReadLength(capabilities.Get(), keyword); };
    return {read(W("OriginWidth")), read(W("OriginHeight")), read(W("ExtentWidth")), read(W("ExtentHeight"))};
}

// The margins that the product's files state for all papers.
PageMargins ReadSettings(const ProductDescription& product) {
    const auto read = [&](DWORD number) {
        const auto found = product.settings.find(number);
        return found == product.settings.end() ? LONG{0} : found->second.number * facts::kMicrometresPerTenth / 10;
    };
    return {read(kMarginSettings[0]), read(kMarginSettings[2]), read(kMarginSettings[1]), read(kMarginSettings[3])};
}

PrintableArea ReadFiles(const ProductDescription& product, const std::vector<MarginTableEntry>& entries,
                        const ProductPaper& paper) {
    PageMargins margins = ReadSettings(product);
    for (const MarginTableEntry& entry : entries) {
        if (!entry.IsFor(paper.width, paper.length)) continue;
        margins = entry.margins;
        break;
    }
    return {margins.left, margins.top, paper.width - margins.left - margins.right,
            paper.length - margins.top - margins.bottom};
}

}  // namespace

std::vector<PrintableArea> ReadPrintableAreas(const PrintSession& session) {
    const ProductDescription& product = *session.GetPrinter().GetProduct();
    const auto file = product.paths.find(kMarginFile);
    const std::vector<MarginTableEntry> entries =
        file == product.paths.end() ? std::vector<MarginTableEntry>() : ReadMarginTable(file->second.native().c_str());
    std::vector<PrintableArea> areas;
    for (const ProductPaper& paper : product.papers) {
        PrintableArea& area = areas.emplace_back();
        if (paper.type == facts::PageSizeType::Custom) continue;
        area = AskProvider(session, paper);
        if (area.width <= 0 || area.height <= 0) area = ReadFiles(product, entries, paper);
    }
    return areas;
}
