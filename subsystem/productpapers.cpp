// What of a paper a printer can print on.
#include "productpapers.h"

#include <bstr.h>
#include <facts/units.h>
#include <marginfile.h>

#include <algorithm>

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

PrintableArea AskProvider(const PrintSession& session, WORD paperNumber) {
    DevmodeBuffer devmode =
        MakeDevmode(*session.GetPrinter().GetProduct(), session.GetPrinter().GetName().AsWideString(),
                    {{{"dmPaperSize", std::to_string(paperNumber)}, {"dmOrientation", "1"}}, {}});
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

PrintableArea ReadFiles(const ProductDescription& product, const ProductPaper& paper) {
    PageMargins margins = ReadSettings(product);
    if (const auto file = product.paths.find(kMarginFile); file != product.paths.end()) {
        const std::vector<MarginTableEntry> entries = ReadMarginTable(file->second.native().c_str());
        const auto isFor = [&](const MarginTableEntry& entry) { return entry.IsFor(paper.width, paper.length); };
        const auto entry = std::find_if(entries.begin(), entries.end(), isFor);
        if (entry != entries.end()) margins = entry->margins;
    }
    return {margins.left, margins.top, paper.width - margins.left - margins.right,
            paper.length - margins.top - margins.bottom};
}

}  // namespace

PrintableArea FindPrintableArea(const PrintSession& session, WORD paperNumber) {
    if (paperNumber == DMPAPER_USER) return {};
    const PrintableArea area = AskProvider(session, paperNumber);
    if (area.width > 0 && area.height > 0) return area;
    const ProductDescription& product = *session.GetPrinter().GetProduct();
    const ProductPaper* paper = product.FindPaper(paperNumber);
    return paper ? ReadFiles(product, *paper) : PrintableArea();
}
