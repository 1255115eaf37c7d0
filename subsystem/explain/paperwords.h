// Papers in words: sizes, and what a DEVMODE selects from the papers of a printer.
#pragma once

#include <printsubsystem/capabilityrecords.h>

#include <string>
#include <vector>

struct SelectedPaper {
    std::string name;            // empty for a size that no paper of the printer has
    LONG width = 0, length = 0;  // micrometres; 0 when they are not known
    bool isListed = false;       // the printer lists it

    std::string Describe() const;  // "A4, 210 x 297 mm"
};

// "104.775", from micrometres, with the decimals that are not zero.
std::string DescribeMillimetres(LONG micrometres);
// "210 x 297 mm", from micrometres, with the decimals that are not zero.
std::string DescribeSize(LONG width, LONG length);

class PrinterPapers {
public:
    explicit PrinterPapers(HANDLE printer);  // read once

    // The paper of the number, else that of the width and length, else that of the form name: as far as the flags of
    // dmFields say that they count.
    // As the printer's caches list them.
    const std::vector<_tag_FormsInfoRec>& GetRecords() const noexcept { return records_; }

    SelectedPaper Select(const DEVMODEW& devmode) const;

private:
    std::vector<_tag_FormsInfoRec> records_;
};
