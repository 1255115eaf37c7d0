// What a printer can do, in the terms of DeviceCapabilitiesW: from its capability caches, or from its product.
#pragma once

#include "spoolertext.h"

#include <printsubsystem/capabilityrecords.h>
#include <products/reader/productdescription.h>
#include <storestate.h>

#include <memory>
#include <optional>
#include <vector>

struct PaperAnswer {
    WORD number;
    LONG width, length;  // tenths of a millimetre
    WideString name;
};

struct NumberedName {
    DWORD number;
    WideString name;
};

struct ResolutionAnswer {
    LONG crossFeed, feed;  // dots per inch
};

// Those of a cache hold what its validity bits vouch for.
struct LimitAnswers {
    std::optional<int> maximumCopies, memory, pagesPerMinute;
    std::optional<bool> collates, printsColor, printsDuplex;
    std::optional<int> minimumExtent, maximumExtent;  // width in the low word, length in the high word
};

// The caches of a port: those of the local machine, else those of the current user. A cache that is absent, too short,
// damaged (its check word) or that counts more records than it has is no answer. None is read as long as the store is
// in the state in which it was read.
class CapabilityCaches {
public:
    CapabilityCaches(const WideString& port, StoreState state);

    std::optional<std::vector<PaperAnswer>> ReadPapers() const;
    std::optional<std::vector<NumberedName>> ReadBins() const;
    std::optional<std::vector<NumberedName>> ReadMediaTypes() const;
    std::optional<std::vector<WideString>> ReadPapersReady() const;
    std::optional<std::vector<WideString>> ReadDependentFiles() const;
    std::optional<std::vector<ResolutionAnswer>> ReadResolutions() const;
    LimitAnswers ReadLimits() const;
    std::optional<bool> ReadStaples() const;

private:
    using Blob = std::vector<BYTE>;
    std::shared_ptr<const Blob> GetBlob(const WCHAR* name, std::size_t minimumBytes, std::size_t checkOffset) const;
    template <class Header, class Record, class Convert>
    auto ReadAnswers(const WCHAR* name, Convert convert) const;

    WideString path_;
    StoreState state_;
};

std::vector<PaperAnswer> GetPapers(const ProductDescription& product);
std::vector<NumberedName> GetBins(const ProductDescription& product);
std::vector<NumberedName> GetMediaTypes(const ProductDescription& product);
std::vector<WideString> GetPapersReady(const ProductDescription& product);
std::vector<WideString> GetDependentFiles(const ProductDescription& product);
std::vector<ResolutionAnswer> GetResolutions(const ProductDescription& product);
LimitAnswers GetLimits(const ProductDescription& product);
