// The user's custom sizes as page sizes of a model, with the paper numbers that they keep.
#include <facts/papernumbers.h>
#include <facts/units.h>
#include <mvcore/mvcorelibrary.h>
#include <mvutil/customsizes.h>
#include <mvutil/user.h>
#include <products/reader/featurecatalogue.h>

#include "productsource.h"

#include <set>

namespace {

struct UserSize {
    CXString name, key;
    LONG width, length;
    bool isMetric;
    LONG number;  // 0 as long as it has none
};

bool IsSide(LONG micrometres) noexcept { return micrometres > 0 && micrometres <= facts::kLongestSide; }

bool IsUserPaper(LONG number) noexcept { return number >= facts::kFirstUserPaper && number <= facts::kLastUserPaper; }

std::vector<UserSize> ReadUserSizes() {
    std::vector<UserSize> sizes;
    for (const CXString& name : User::EnumUserKeyNames(kCustomSizesKey)) {
        const CXString key = CXString(kCustomSizesKey) + W("\\") + name;
        const UserSize size = {name,
                               key,
                               User::GetUserDataLongFromRegistry(key, kCustomSizeWidthValue, 0),
                               User::GetUserDataLongFromRegistry(key, kCustomSizeLengthValue, 0),
                               User::GetUserDataBooleanFromRegistry(key, kCustomSizeIsMetricValue, false),
                               User::GetUserDataLongFromRegistry(key, kCustomSizeNumberValue, 0)};
        if (IsSide(size.width) && IsSide(size.length)) sizes.push_back(size);
    }
    return sizes;
}

constexpr DWORD kNumbers = facts::kLastUserPaper - facts::kFirstUserPaper + 1;

// The number that the name leads to, or the next one; one of them must be free.
LONG ChooseNumber(const CXString& name, const std::set<LONG>& taken) {
    for (DWORD step = GetMvCoreLibrary()->GetCustomSizeMsId(name.GetString()) >> 16;; ++step) {
        const LONG number = facts::kFirstUserPaper + static_cast<LONG>(step % kNumbers);
        if (!taken.contains(number)) return number;
    }
}

// A size keeps the number that it got first, whatever other sizes come and go: DEVMODEs name it by that number. When
// all are taken, a further size has none and is left out.
void GiveNumbers(std::vector<UserSize>& sizes) {
    std::set<LONG> taken;
    for (UserSize& size : sizes)
        if (!IsUserPaper(size.number) || !taken.insert(size.number).second) size.number = 0;
    for (UserSize& size : sizes) {
        if (size.number != 0 || taken.size() == kNumbers) continue;
        size.number = ChooseNumber(size.name, taken);
        taken.insert(size.number);
        User::StoreUserDataLongInRegistry(size.key, kCustomSizeNumberValue, size.number);
    }
}

}  // namespace

void AddUserPaperSizes(ModelParts& parts) {
    std::vector<UserSize> sizes = ReadUserSizes();
    GiveNumbers(sizes);
    std::vector<DWORD> values;
    for (const UserSize& size : sizes) {
        if (size.number == 0) continue;
        const DWORD units = size.isMetric ? DataModelIds::kUnitsMillimetres : DataModelIds::kUnitsInches;
        const WORD number = static_cast<WORD>(size.number);
        values.push_back(
            parts.media.AddUserSize(size.width, size.length, units, number, size.name).GetValueId().GetValueEnum());
    }
    parts.root.Declare(GetCataloguePath(facts::feature::kPageSize)).AddOptions(values);
}
