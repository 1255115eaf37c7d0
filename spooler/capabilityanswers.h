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

// Null: no answer.
template <class Item>
using AnswerList = std::shared_ptr<const std::vector<Item>>;

// The caches of a port: those of the local machine, else those of the current user. A cache that is absent, too short,
// damaged (its check word) or that counts more records than it has is no answer. None is read as long as the store is
// in the state in which it was read.
class CapabilityCaches {
public:
    CapabilityCaches(const WideString& port, StoreState state) : port_(port), state_(state) {}

    AnswerList<PaperAnswer> GetPapers() const;
    AnswerList<NumberedName> GetBins() const;
    AnswerList<NumberedName> GetMediaTypes() const;
    AnswerList<WideString> GetPapersReady() const;
    AnswerList<WideString> GetDependentFiles() const;
    AnswerList<ResolutionAnswer> GetResolutions() const;
    LimitAnswers GetLimits() const;
    std::optional<bool> GetStaples() const;

private:
    template <class Header, class Record, class Convert>
    auto GetAnswers(const WCHAR* name, Convert convert) const;

    const WideString& port_;
    StoreState state_;
};

std::vector<PaperAnswer> GetPapers(const ProductDescription& product);
std::vector<NumberedName> GetBins(const ProductDescription& product);
std::vector<NumberedName> GetMediaTypes(const ProductDescription& product);
std::vector<WideString> GetPapersReady(const ProductDescription& product);
std::vector<WideString> GetDependentFiles(const ProductDescription& product);
std::vector<ResolutionAnswer> GetResolutions(const ProductDescription& product);
LimitAnswers GetLimits(const ProductDescription& product);
