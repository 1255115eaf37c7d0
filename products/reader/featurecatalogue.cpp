// The table of the driver family's features, with the names that people use for them.
#include "featurecatalogue.h"

#include <facts/features.h>
#include <facts/units.h>
#include <facts/values.h>

#include <algorithm>
#include <array>

namespace {

namespace feature = facts::feature;
namespace value = facts::value;
using Range = CatalogueFeature::Range;

constexpr auto kBoolean = facts::FeatureKind::Boolean;
constexpr auto kInteger = facts::FeatureKind::Integer;
constexpr auto kOption = facts::FeatureKind::Option;
constexpr auto kString = facts::FeatureKind::String;
constexpr auto kDimension = facts::FeatureKind::Dimension;
constexpr auto kResolution = facts::FeatureKind::Resolution;
constexpr auto kList = facts::FeatureKind::List;
constexpr auto kOwn = CatalogueFeature::Source::Features;
constexpr auto kLists = CatalogueFeature::Source::Lists;
constexpr auto kUser = CatalogueFeature::Source::User;

constexpr Range kAny = {0, 0};
constexpr Range kWholeFamily = {value::kFirstFamilyValue, value::kLastFamilyValue};
constexpr Range kPageSizes = {value::kFirstPageSize, value::kLastFamilyValue};
constexpr Range kMediaTypes = {value::kFirstMediaType, value::kLastMediaType};
constexpr Range kControllerFamilies = {value::kControllerFamily8430, value::kControllerFamily8434};
constexpr Range kTrayValues = {value::kFirstTray, value::kLastTray};
constexpr Range kUnitValues = {value::kUnitsOfSystem, 7499};
constexpr Range kCompanions = {value::kFirstCompanion, 8719};
constexpr Range kSide = {facts::kShortestSide, facts::kLongestSide};  // of a custom page

// Ascending by id; no name stands twice.
constexpr auto kCatalogue = std::to_array<CatalogueFeature>({
    // id, name, parent, kind, source, values
    {feature::kProtectedString, "PIN", 0, kString, kOwn, kAny, true},
    {feature::kCopies, "Copies", 0, kInteger, kOwn, kAny},
    {feature::kCopiesSource, "Copies come from", 0, kOption, kOwn, {value::kCopiesOfDevmode, 5409}},
    {feature::kCollation, "Collation", 0, kOption, kOwn, {value::kCollated, 5419}},
    {feature::kSides, "Duplex", 0, kOption, kOwn, {value::kOneSided, 5429}},
    {feature::kUserPreference, "User preference", 0, kOption, kUser, {value::kFirstUserPreference, 8129}},
    {feature::kSignature, "Signature", 0, kOption, kOwn, {value::kOff, 5519}},
    {feature::kDisposition, "Disposition", 0, kOption, kOwn, {value::kPrint, 5539}},
    {feature::kTitle, "Title", 0, kString, kOwn, kAny},
    {feature::kJobText1, "Job text 1", 0, kString, kOwn, kAny},
    {feature::kJobText2, "Job text 2", 0, kString, kOwn, kAny},
    {feature::kSender, "Sender", 0, kString, kOwn, kAny},
    {feature::kRecipient, "Recipient", 0, kString, kOwn, kAny},
    {feature::kMessage, "Message", 0, kString, kOwn, kAny},
    {feature::kStartMessage, "Start message", 0, kString, kOwn, kAny},
    {feature::kRotation, "Rotation", 0, kOption, kOwn, {value::kRotated0, 5609}},
    {feature::kResolution, "Resolution", 0, kResolution, kLists, kAny},
    {feature::kImageShiftX, "Image shift X", 0, kDimension, kOwn, kAny},
    {feature::kImageShiftY, "Image shift Y", 0, kDimension, kOwn, kAny},
    {feature::kImageShiftX2, "Image shift X, side 2", 0, kDimension, kOwn, kAny},
    {feature::kImageShiftY2, "Image shift Y, side 2", 0, kDimension, kOwn, kAny},
    {feature::kHighlightPrintingColor, "Highlight printing colour", 0, kOption, kOwn, {5750, 5799}},
    {feature::kHighlightMappingColor, "Highlight mapping colour", 0, kOption, kOwn, {5800, 5849}},
    {feature::kHighlightMapping, "Highlight mapping", 0, kOption, kOwn, {5850, 5899}},
    {feature::kHighlightMismatch, "Highlight mismatch", 0, kOption, kOwn, {5900, 5949}},
    {feature::kFinishing, "Finishing", 0, kOption, kOwn, {6250, 6299}},
    {feature::kSlipSheets, "Slip sheets", feature::kFinishingSheets, kOption, kOwn, kWholeFamily},
    {feature::kOutputLocation, "Output location", 0, kOption, kOwn, kWholeFamily},
    {feature::kPreferencesAreUsed, "Preferences are used", 0, kBoolean, kOwn, kAny},
    {feature::kPageSize, "Page size", feature::kPaper, kOption, kLists, kPageSizes},
    {feature::kCustomWidth, "Custom width", feature::kPaper, kDimension, kOwn, kSide},
    {feature::kCustomLength, "Custom length", feature::kPaper, kDimension, kOwn, kSide},
    {feature::kPaperColor, "Paper colour", 0, kOption, kOwn, {value::kNoColor, 6799}},
    {feature::kMediaType, "Paper type", feature::kStock, kOption, kLists, kMediaTypes},
    {feature::kTabs, "Tabs", 0, kInteger, kOwn, kAny},
    {feature::kDrilledPaper, "Drilled paper", 0, kOption, kOwn, {value::kNotDrilled, 6929}},
    {feature::kPaperWeight, "Paper weight", 0, kInteger, kOwn, kAny},
    {feature::kTray, "Tray", feature::kTrays, kOption, kLists, kTrayValues},
    {feature::kLoadedTrays, "Trays with contents", 0, kList, kLists, kAny},
    {feature::kPaperSource, "Paper source", 0, kOption, kLists, kTrayValues},
    {feature::kTrays, "Trays", 0, kList, kLists, kAny},
    {feature::kFinishingSheets, "Finishing sheets", 0, kList, kOwn, kAny},
    {feature::kStock, "Stock", feature::kPaper, kList, kOwn, kAny},
    {feature::kJobTicketWriter, "Job ticket writer", 0, kOption, kOwn, {value::kJobTicketWriter8630, 8639}},
    {feature::kUnits, "Units", 0, kOption, kUser, kUnitValues},
    {feature::kPaperUnits, "Units of papers", 0, kOption, kUser, kUnitValues},
    {feature::kIdentification, "Identification", 0, kOption, kOwn, kWholeFamily},
    {feature::kColor, "Colour", 0, kOption, kOwn, {value::kColor, 7739}},
    {feature::kMemory, "Memory", 0, kInteger, kOwn, kAny},
    {feature::kPagesPerMinute, "Pages a minute", 0, kInteger, kOwn, kAny},
    {feature::kPrintRate, "Print rate", 0, kInteger, kOwn, kAny},
    {feature::kPrintRateUnit, "Unit of the print rate", 0, kOption, kOwn, {7740, 7749}},
    {feature::kStapler, "Stapler", 0, kOption, kOwn, {value::kStaplerInstalled, 7729}},
    {feature::kControllerFamily, "Controller family", 0, kOption, kOwn, kControllerFamilies},
    {feature::kJobTickets, "Job tickets", 0, kBoolean, kOwn, kAny},
    {feature::kCollationSource, "Collation comes from", 0, kOption, kOwn, {value::kCollationOfDevmode, 8099}},
    {feature::kTitleIsOfJob, "Title is the job's", 0, kBoolean, kUser, kAny},
    {feature::kSenderIsOfJob, "Sender is the job's", 0, kBoolean, kUser, kAny},
    {feature::kRecipientIsOfJob, "Recipient is the job's", 0, kBoolean, kUser, kAny},
    {feature::kUserText, nullptr, 0, kString, kUser, kAny},
    {feature::kUserSwitch, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kRecipientIsRemembered, "Recipient is remembered", 0, kBoolean, kUser, kAny},
    {feature::kSenderIsRemembered, "Sender is remembered", 0, kBoolean, kUser, kAny},
    {feature::kTitleIsRemembered, "Title is remembered", 0, kBoolean, kUser, kAny},
    {feature::kPaper, "Paper", 0, kList, kOwn, kAny},
    {feature::kUserInteger, nullptr, 0, kInteger, kUser, kAny},
    {feature::kCompanion, "Companion option", 0, kOption, kOwn, kCompanions},
    {feature::kFirstMaskedPreference, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 1, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 2, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 3, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 4, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 5, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 6, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 7, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 8, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kFirstMaskedPreference + 9, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kLastMaskedPreference, nullptr, 0, kBoolean, kUser, kAny},
    {feature::kCompanionPreference, "Companion preference", 0, kOption, kUser, kCompanions},
    {feature::kTraysAreListed, "Trays are listed with contents", 0, kBoolean, kOwn, kAny},
    {feature::kSecondProtectedString, "Second PIN", 0, kString, kOwn, kAny, true},
    {feature::kTrayOfRow, "Tray with contents", feature::kLoadedTrays, kOption, kLists, kTrayValues},
    {feature::kJobKey, "Key of the job", 0, kString, kOwn, kAny},
});

}  // namespace

std::string CatalogueFeature::GetName() const { return name ? name : "Feature " + std::to_string(id); }

std::span<const CatalogueFeature> GetFeatureCatalogue() noexcept { return kCatalogue; }

const CatalogueFeature* FindCatalogueFeature(DWORD id) noexcept {
    const auto found = std::lower_bound(kCatalogue.begin(), kCatalogue.end(), id,
                                        [](const CatalogueFeature& row, DWORD wanted) { return row.id < wanted; });
    return found == kCatalogue.end() || found->id != id ? nullptr : &*found;
}

std::vector<DWORD> GetCataloguePath(DWORD id) {
    std::vector<DWORD> path;
    for (const CatalogueFeature* step = FindCatalogueFeature(id); step; step = FindCatalogueFeature(step->parent))
        path.insert(path.begin(), step->id);
    return path;
}
