// The table of the driver family's features.
#include "featurecatalogue.h"

#include <algorithm>
#include <array>

namespace {

constexpr auto kBoolean = ProductFeatureKind::Boolean;
constexpr auto kInteger = ProductFeatureKind::Integer;
constexpr auto kOption = ProductFeatureKind::Option;
constexpr auto kString = ProductFeatureKind::String;
constexpr auto kDimension = ProductFeatureKind::Dimension;
constexpr auto kResolution = ProductFeatureKind::Resolution;
constexpr auto kList = ProductFeatureKind::List;
constexpr auto kOwn = CatalogueFeature::Source::Features;
constexpr auto kLists = CatalogueFeature::Source::Lists;
constexpr auto kUser = CatalogueFeature::Source::User;

// Ascending by id.
// clang-format off
constexpr auto kCatalogue = std::to_array<CatalogueFeature>({
    // id, parent, kind,       source, values
    { 42,   0, kString,     kOwn,      0,    0},  // first protected string
    { 43,   0, kInteger,    kOwn,      0,    0},  // copies
    { 44,   0, kOption,     kOwn,   5400, 5409},  // where the copy count comes from
    { 45,   0, kOption,     kOwn,   5410, 5419},  // collation
    { 46,   0, kOption,     kOwn,   5420, 5429},  // sides
    { 50,   0, kOption,     kUser,  8120, 8129},
    { 59,   0, kOption,     kOwn,   5510, 5519},  // signature
    { 63,   0, kOption,     kOwn,   5530, 5539},  // disposition
    { 78,   0, kString,     kOwn,      0,    0},  // title
    { 79,   0, kString,     kOwn,      0,    0},
    { 80,   0, kString,     kOwn,      0,    0},
    { 82,   0, kString,     kOwn,      0,    0},  // sender
    { 83,   0, kString,     kOwn,      0,    0},  // recipient
    { 84,   0, kString,     kOwn,      0,    0},  // message
    { 85,   0, kString,     kOwn,      0,    0},  // message at the job's start
    { 88,   0, kOption,     kOwn,   5600, 5609},  // rotation
    { 94,   0, kResolution, kLists,    0,    0},
    { 95,   0, kDimension,  kOwn,      0,    0},  // image shifts
    { 96,   0, kDimension,  kOwn,      0,    0},
    { 97,   0, kDimension,  kOwn,      0,    0},
    { 98,   0, kDimension,  kOwn,      0,    0},
    {101,   0, kOption,     kOwn,   5750, 5799},  // highlight colour printing
    {102,   0, kOption,     kOwn,   5800, 5849},
    {103,   0, kOption,     kOwn,   5850, 5899},
    {104,   0, kOption,     kOwn,   5900, 5949},
    {144,   0, kOption,     kOwn,   6250, 6299},  // finishing position
    {145, 208, kOption,     kOwn,   5000, 9635},  // slip sheets
    {146,   0, kOption,     kOwn,   5000, 9635},  // output location
    {162,   0, kBoolean,    kOwn,      0,    0},
    {168, 477, kOption,     kLists, 6400, 9635},  // page size
    {172, 477, kDimension,  kOwn,    100, 3276700},  // width of a custom page: at most what a DEVMODE holds
    {173, 477, kDimension,  kOwn,    100, 3276700},  // length of a custom page
    {174,   0, kOption,     kOwn,   6750, 6799},  // paper colour
    {175, 210, kOption,     kLists, 6800, 6899},  // media type
    {176,   0, kInteger,    kOwn,      0,    0},  // tabs
    {178,   0, kOption,     kOwn,   6920, 6929},  // drilled paper
    {179,   0, kInteger,    kOwn,      0,    0},  // paper weight
    {191, 201, kOption,     kLists, 7100, 7199},  // trays
    {192,   0, kList,       kLists,    0,    0},
    {193,   0, kOption,     kLists, 7100, 7199},
    {201,   0, kList,       kLists,    0,    0},
    {208,   0, kList,       kOwn,      0,    0},
    {210, 477, kList,       kOwn,      0,    0},  // stock
    {236,   0, kOption,     kOwn,   8630, 8639},
    {237,   0, kOption,     kUser,  7490, 7499},  // units
    {238,   0, kOption,     kUser,  7490, 7499},
    {246,   0, kOption,     kOwn,   5000, 9635},
    {247,   0, kOption,     kOwn,   7730, 7739},  // colour printing
    {248,   0, kInteger,    kOwn,      0,    0},  // memory, KiB
    {249,   0, kInteger,    kOwn,      0,    0},  // pages a minute
    {250,   0, kInteger,    kOwn,      0,    0},  // print rate
    {251,   0, kOption,     kOwn,   7740, 7749},  // unit of the print rate
    {252,   0, kOption,     kOwn,   7720, 7729},  // stapler
    {285,   0, kOption,     kOwn,   8430, 8434},  // controller family
    {286,   0, kBoolean,    kOwn,      0,    0},  // job tickets
    {415,   0, kOption,     kOwn,   8090, 8099},  // where collation comes from
    {438,   0, kBoolean,    kUser,     0,    0},
    {439,   0, kBoolean,    kUser,     0,    0},
    {440,   0, kBoolean,    kUser,     0,    0},
    {441,   0, kString,     kUser,     0,    0},
    {442,   0, kBoolean,    kUser,     0,    0},
    {471,   0, kBoolean,    kUser,     0,    0},
    {472,   0, kBoolean,    kUser,     0,    0},
    {473,   0, kBoolean,    kUser,     0,    0},
    {477,   0, kList,       kOwn,      0,    0},  // paper
    {571,   0, kInteger,    kUser,     0,    0},
    {575,   0, kOption,     kOwn,   8710, 8719},
    {580,   0, kBoolean,    kUser,     0,    0},
    {581,   0, kBoolean,    kUser,     0,    0},
    {582,   0, kBoolean,    kUser,     0,    0},
    {583,   0, kBoolean,    kUser,     0,    0},
    {584,   0, kBoolean,    kUser,     0,    0},
    {585,   0, kBoolean,    kUser,     0,    0},
    {586,   0, kBoolean,    kUser,     0,    0},
    {587,   0, kBoolean,    kUser,     0,    0},
    {588,   0, kBoolean,    kUser,     0,    0},
    {589,   0, kBoolean,    kUser,     0,    0},
    {590,   0, kBoolean,    kUser,     0,    0},
    {591,   0, kOption,     kUser,  8710, 8719},
    {599,   0, kBoolean,    kOwn,      0,    0},  // trays are listed with what they hold
    {648,   0, kString,     kOwn,      0,    0},  // second protected string
    {710, 192, kOption,     kLists, 7100, 7199},
    {716,   0, kString,     kOwn,      0,    0},  // the print job's key
});
// clang-format on

}  // namespace

const CatalogueFeature* FindCatalogueFeature(DWORD id) noexcept {
    const auto row =
        std::lower_bound(kCatalogue.begin(), kCatalogue.end(), id,
                         [](const CatalogueFeature& feature, DWORD wanted) { return feature.id < wanted; });
    return row == kCatalogue.end() || row->id != id ? nullptr : &*row;
}

std::vector<DWORD> GetCataloguePath(DWORD id) {
    std::vector<DWORD> path;
    for (const CatalogueFeature* feature = FindCatalogueFeature(id); feature;
         feature = FindCatalogueFeature(feature->parent))
        path.insert(path.begin(), feature->id);
    return path;
}
