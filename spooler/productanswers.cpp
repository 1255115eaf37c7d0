// What a product's description says of its capabilities.
#include "capabilityanswers.h"

#include <facts/units.h>

#include <cmath>
#include <set>
#include <utility>

namespace {

// Micrometres to tenths of a millimetre, to the nearest.
LONG ToTenths(LONG micrometres) noexcept {
    return static_cast<LONG>(std::floor(micrometres / double{facts::kMicrometresPerTenth} + facts::kToNearest));
}

int PackExtent(LONG width, LONG length) { return static_cast<WORD>(width) | static_cast<WORD>(length) << 16; }

// The custom size shows with the dimensions of the product's default paper.
const ProductPaper& GetDefaultPaper(const ProductDescription& product) {
    for (const ProductDevmodeField& field : product.devmode)
        if (field.name == "dmPaperSize")
            if (const ProductPaper* paper = product.FindPaper(static_cast<WORD>(field.value))) return *paper;
    return product.papers.front();
}

}  // namespace

std::vector<PaperAnswer> GetPapers(const ProductDescription& product) {
    std::vector<PaperAnswer> papers;
    for (const ProductPaper& paper : product.papers) {
        if (paper.type == facts::PageSizeType::Hidden) continue;
        const ProductPaper& sized = paper.type == facts::PageSizeType::Custom ? GetDefaultPaper(product) : paper;
        papers.push_back({paper.number, ToTenths(sized.width), ToTenths(sized.length), WidenUtf8(paper.name)});
        if (paper.formName.empty() || paper.formName == paper.name) continue;
        papers.push_back(papers.back());  // under the name of its form as well
        papers.back().name = WidenUtf8(paper.formName);
    }
    return papers;
}

std::vector<NumberedName> GetBins(const ProductDescription& product) {
    std::vector<NumberedName> bins;
    for (const ProductTray& tray : product.trays) bins.push_back({tray.number, WidenUtf8(tray.name)});
    return bins;
}

std::vector<NumberedName> GetMediaTypes(const ProductDescription& product) {
    std::vector<NumberedName> types;
    for (const ProductMediaType& type : product.mediaTypes) types.push_back({type.number, WidenUtf8(type.name)});
    return types;
}

// A name for each paper and media type that the trays hold together; the default paper's when nothing is known of them.
std::vector<WideString> GetPapersReady(const ProductDescription& product) {
    std::vector<WideString> names;
    std::set<std::pair<DWORD, DWORD>> named;
    for (const ProductTray& tray : product.trays)
        for (const ProductPaper& paper : product.papers)
            if (paper.value == tray.heldSize && named.insert({tray.heldSize, tray.heldMediaType}).second)
                names.push_back(WidenUtf8(paper.name));
    if (names.empty()) names.push_back(WidenUtf8(GetDefaultPaper(product).name));
    return names;
}

std::vector<WideString> GetDependentFiles(const ProductDescription& product) {
    std::vector<WideString> names;
    for (const std::string& name : ListDependentFiles(product)) names.push_back(WidenUtf8(name));
    return names;
}

std::vector<ResolutionAnswer> GetResolutions(const ProductDescription& product) {
    std::vector<ResolutionAnswer> resolutions;
    for (const ProductResolution& resolution : product.resolutions)
        resolutions.push_back({resolution.crossFeed, resolution.feed});
    return resolutions;
}

LimitAnswers GetLimits(const ProductDescription& product) {
    const ProductLimits& known = product.limits;
    LimitAnswers limits;
    limits.maximumCopies = known.maximumCopies;
    if (known.memory != 0) limits.memory = known.memory;
    if (known.pagesPerMinute != 0) limits.pagesPerMinute = known.pagesPerMinute;
    limits.collates = known.collates;
    limits.printsColor = known.printsColor;
    limits.printsDuplex = known.printsDuplex;
    limits.minimumExtent = PackExtent(known.minimumWidth, known.minimumLength);
    limits.maximumExtent = PackExtent(known.maximumWidth, known.maximumLength);
    return limits;
}
