// What is wrong with a product.
#include "productcheck.h"

#include <facts/producttexts.h>
#include <facts/units.h>
#include <marginfile.h>
#include <products/reader/productdescription.h>
#include <textcodec.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "devmodemaker.h"
#include "hosterror.h"
#include "hostfiles.h"
#include "hostplatform.h"
#include "hosttext.h"
#include "inputs/inputform.h"

namespace {

std::string At(const std::filesystem::path& file, std::size_t line) {
    return PathToUtf8(file) + ":" + std::to_string(line) + ": ";
}

void CheckTexts(const ProductDescription& product, ProductFaults& faults) {
    for (const facts::ProductText& text : facts::kProductTexts)
        if (!product.strings.contains(text.number))
            faults.push_back(At(product.file, 1) + "no string table has the text " + std::to_string(text.number) +
                             " (" + text.meaning + "); programs would show an empty name");
}

// Lines of the file's section that hold no margins. What the component reads is bounded, so the section is as well.
void CheckMarginLines(const std::filesystem::path& file, ProductFaults& faults) {
    std::istringstream lines(DecodeText(ReadWholeFile(file)));
    const std::string header = "[" + ToUtf8(kMarginSection) + "]";
    bool isInside = false, hasSection = false;
    std::size_t number = 0, characters = 1;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.erase(line.find_last_not_of(" \t\r") + 1);
        line.erase(0, line.find_first_not_of(" \t"));
        if (line.starts_with('[')) {
            isInside = !hasSection && LowerSchemaWord(line) == LowerSchemaWord(header);
            hasSection = hasSection || isInside;
        } else if (isInside && !line.empty() && !line.starts_with(';')) {
            const bool fitted = characters <= kMarginSectionCharacters - 2;
            characters += line.size() + 1;
            if (!ReadMarginLine(ToWide(line).value_or(WideString())))
                faults.push_back(At(file, number) + "'" + line +
                                 "' is no margin line; WIDTHxHEIGHT=LEFT BOTTOM RIGHT TOP is expected, in points");
            if (fitted && characters > kMarginSectionCharacters - 2)
                faults.push_back(At(file, number) + "the section is too long from here on; its first " +
                                 std::to_string(kMarginSectionCharacters - 2) + " characters are read");
        }
    }
    if (!hasSection) faults.push_back(At(file, 1) + "there is no section " + header);
}

// A product that names a margin file lists each of its papers there; one without has the same margins for all.
void CheckMargins(const ProductDescription& product, ProductFaults& faults) {
    const auto path = product.paths.find(kMarginFile);
    if (path == product.paths.end()) {
        for (const DWORD number : kMarginSettings)
            if (!product.settings.contains(number))
                faults.push_back(At(product.file, 1) +
                                 "papers have no margins: there is neither a margin file (paths." +
                                 std::to_string(kMarginFile) + ") nor the setting " + std::to_string(number));
        return;
    }
    CheckMarginLines(path->second, faults);
    const std::vector<MarginTableEntry> entries = ReadMarginTable(path->second.native().c_str());
    for (const ProductPaper& paper : product.papers) {
        const auto isFor = [&](const MarginTableEntry& entry) { return entry.IsFor(paper.width, paper.length); };
        if (paper.type != facts::PageSizeType::Custom && std::none_of(entries.begin(), entries.end(), isFor))
            faults.push_back(At(product.file, paper.line) + "the paper '" + paper.name +
                             "' has no margins: no line of " + PathToUtf8(path->second.filename()) +
                             " is for its size");
    }
}

// A size of the product's own may come back as a custom size, which is printed on the same paper.
bool IsPaper(const DEVMODEW& devmode, const ProductPaper& paper) {
    if (devmode.dmPaperSize != DMPAPER_USER) return devmode.dmPaperSize == static_cast<short>(paper.number);
    const auto isSame = [](short tenths, LONG micrometres) {
        return std::abs(tenths * facts::kMicrometresPerTenth - micrometres) <= facts::kMicrometresPerTenth;
    };
    return paper.keyword.empty() && isSame(devmode.dmPaperWidth, paper.width) &&
           isSame(devmode.dmPaperLength, paper.length);
}

}  // namespace

ProductFaults CheckProductFiles(const std::filesystem::path& file) {
    ProductFaults faults = FindProductFaults(file);
    if (!faults.empty()) return faults;
    const auto product = LoadProduct(file);
    CheckTexts(*product, faults);
    CheckMargins(*product, faults);
    return faults;
}

ProductFaults CheckProductPapers(const PrintSession& session) {
    const ProductDescription& product = *session.GetPrinter().GetProduct();
    const WideString printer = session.GetPrinter().GetName().AsWideString();
    ProductFaults faults;
    for (const ProductPaper& paper : product.papers) {
        if (paper.type == facts::PageSizeType::Custom) continue;
        DevmodeBuffer devmode = MakeDevmode(product, printer, {{{"dmPaperSize", std::to_string(paper.number)}}, {}});
        const PrintSession::Document ticket = session.MakeTicket(devmode);
        DevmodeBuffer back = MakeDevmode(product, printer, {});
        session.ApplyTicket(ticket.Get(), back);
        const DEVMODEW found = back.CopyPublicPart();
        if (IsPaper(found, paper)) continue;
        const ProductPaper* other = product.FindPaper(static_cast<WORD>(found.dmPaperSize));
        faults.push_back(At(product.file, paper.line) + "no ticket selects the paper '" + paper.name + "' (number " +
                         std::to_string(paper.number) + "): what it becomes in a ticket is read as " +
                         (other ? "'" + other->name + "'" : "paper number " + std::to_string(found.dmPaperSize)));
    }
    return faults;
}
