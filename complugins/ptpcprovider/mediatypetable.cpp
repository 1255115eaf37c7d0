// The table of media types: data-model values with their Print Schema options.
#include <ptpcprovider/mediatypetable.h>

#include <facts/mediatypes.h>

#include <iterator>

namespace {

namespace value = facts::value;

constexpr const WCHAR* kUnset = W("");
constexpr const WCHAR* kNone = W("None");
constexpr const WCHAR* kPaper = W("Paper");
constexpr const WCHAR* kFilm = W("Transparency");
constexpr const WCHAR* kGlossy = W("Glossy");
constexpr const WCHAR* kLetterhead = W("Letterhead");
constexpr const WCHAR* kPrinted = W("PrePrinted");
constexpr const WCHAR* kPunched = W("PrePunched");
constexpr const WCHAR* kStandard = W("Standard");

// Behind the first row the values count up. value, option, keyword, {BackCoating, FrontCoating, Material, PrePrinted,
// PrePunched, Recycled}
constexpr MediaTypeRow kTable[] = {
    {value::kNotSet, W("AutoSelect"), true, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {value::kPlain, W("Plain"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {value::kTransparency, W("Transparency"), true, {kNone, kNone, kFilm, kNone, kNone, kNone}},
    {6802, W("tab-stock"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {value::kPreCutTabs, W("TabStockPreCut"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {value::kFullTabs, W("TabStockFull"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6805, W("Label"), true, {kUnset, kUnset, kUnset, kNone, kNone, kNone}},
    {6806, W("EnvelopePlain"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6807, W("heavyweight"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6808, W("Bond"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6809, W("other"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6810, W("system-default"), false, {kUnset, kUnset, kPaper, kUnset, kUnset, kUnset}},
    {value::kFirstReservedMediaType, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6812, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6813, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6814, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6815, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6816, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6817, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6818, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {value::kLastReservedMediaType, W(""), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {value::kGlossy, W("glossy"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6821, W("letterhead"), false, {kNone, kNone, kPaper, kLetterhead, kNone, kNone}},
    {6822, W("CardStock"), true, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6823, W("thin-cardstock"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6824, W("thick-cardstock"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6825, W("Photographic"), true, {kUnset, kUnset, kPaper, kNone, kNone, kNone}},
    {6826, W("business-cards"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6827, W("greeting-cards"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6828, W("cd-dvd-labels"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6829, W("cd-dvd-inserts"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6830, W("colored-paper"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6831, W("special"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6832, W("light-plain"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6833, W("prepunched"), false, {kNone, kNone, kPaper, kNone, kPunched, kNone}},
    {6834, W("pre-printed"), false, {kNone, kNone, kPaper, kPrinted, kNone, kNone}},
    {6835, W("extra-thick-cardstock"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6836, W("thin-glossy"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6837, W("thick-glossy"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6838, W("second-side"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6839, W("recycled"), false, {kNone, kNone, kPaper, kNone, kNone, kStandard}},
    {6840, W("custom1"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6841, W("custom2"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6842, W("custom3"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6843, W("custom4"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6844, W("custom5"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6845, W("custom6"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6846, W("custom7"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6847, W("custom8"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6848, W("custom9"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6849, W("custom10"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6850, W("extra-heavyweight"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6851, W("extra-heavyweight-reloaded"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6852, W("extra-heavyweight-plus"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6853, W("extra-heavyweight-plus-reloaded"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6854, W("heavyweight-labels"), false, {kNone, kUnset, kPaper, kNone, kNone, kNone}},
    {6855, W("extra-heavyweight-labels"), false, {kNone, kUnset, kPaper, kNone, kNone, kNone}},
    {6856, W("gloss"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6857, W("gloss-reloaded"), false, {kGlossy, kUnset, kPaper, kNone, kNone, kNone}},
    {6858, W("heavyweight-gloss"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6859, W("heavyweight-gloss-reloaded"), false, {kGlossy, kUnset, kPaper, kNone, kNone, kNone}},
    {6860, W("extra-heavyweight-gloss"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6861, W("extra-heavyweight-gloss-reloaded"), false, {kGlossy, kUnset, kPaper, kNone, kNone, kNone}},
    {6862, W("stationery2"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6863, W("heavyweight-reloaded"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6864, W("textured-surface"), false, {kUnset, kUnset, kPaper, kNone, kNone, kNone}},
    {6865, W("ordered-stock"), false, {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset}},
    {6866, W("gloss-f"), false, {kUnset, kGlossy, kPaper, kNone, kNone, kNone}},
    {6867, W("heavyweight-f"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {6868, W("archive"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
    {value::kLastNamedMediaType, W("postcard"), false, {kNone, kNone, kPaper, kNone, kNone, kNone}},
};

constexpr bool IsInOrder() {
    for (std::size_t row = 1; row < std::size(kTable); ++row)
        if (kTable[row].value != value::kFirstMediaType - 1 + row) return false;
    return kTable[0].value == value::kNotSet && kTable[std::size(kTable) - 1].value == value::kLastNamedMediaType;
}
static_assert(IsInOrder(), "rows are found by their value");

}  // namespace

const MediaTypeRow* FindMediaType(DWORD number) noexcept {
    const DWORD mediaType = facts::MediaTypeOfNumber(number);
    if (mediaType == value::kNotSet || IsUserDefinedMediaType(mediaType)) return &kTable[0];
    const bool isKnown = mediaType >= value::kFirstMediaType - 1 && mediaType <= value::kLastNamedMediaType;
    return isKnown ? &kTable[mediaType - (value::kFirstMediaType - 1)] : nullptr;
}
