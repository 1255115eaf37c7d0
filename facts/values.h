// The values of the data model's option features.
#pragma once

namespace facts::value {

// Not set, or automatic; also the controller family of a provider that is not bound.
inline constexpr unsigned kNotSet = 5001;

inline constexpr unsigned kCopiesOfDevmode = 5400, kCopiesOfDriver = 5401;
inline constexpr unsigned kCollated = 5410, kUncollated = 5411;
inline constexpr unsigned kOneSided = 5420, kTwoSidedLongEdge = 5421, kTwoSidedShortEdge = 5422;
inline constexpr unsigned kOff = 5510, kOn = 5511;
inline constexpr unsigned kPrint = 5530, kSave = 5531, kPrintAndSave = 5532;
inline constexpr unsigned kRotated0 = 5600, kRotated90 = 5601, kRotated180 = 5602, kRotated270 = 5603;

// Finishing positions.
inline constexpr unsigned kBooklet = 6252;
inline constexpr unsigned kStaplePortrait = 6254, kStapleLandscape = 6255;
inline constexpr unsigned kStapleRightPortrait = 6256, kStapleRightLandscape = 6257;
inline constexpr unsigned kTwoStaplesLandscape = 6258, kTwoStaplesPortrait = 6259;
inline constexpr unsigned kTwoStaplesRightLandscape = 6260, kTwoStaplesRightPortrait = 6261;
inline constexpr unsigned kBoundLeft = 6275, kBoundRight = 6276;

// Page sizes: those of the Print Schema and of products, then the size that is given by width and length alone and one
// that no page size may have.
inline constexpr unsigned kFirstPageSize = 6400, kLastPageSize = 6730;
inline constexpr unsigned kPageSizeLetter = 6430, kPageSizeA4 = 6436;
inline constexpr unsigned kPageSizeCustom = 6731;
inline constexpr unsigned kPageSizeReserved = 6732;

inline constexpr unsigned kNoColor = 6750, kWhite = 6751, kPink = 6752, kYellow = 6753, kBlue = 6754, kGreen = 6755,
                          kBuff = 6756, kGoldenrod = 6757, kRed = 6758, kGrey = 6759, kIvory = 6760, kOrange = 6761;

// Media types. The Print Schema has names for those up to the last named one, but for the reserved ones.
inline constexpr unsigned kFirstMediaType = 6800, kLastMediaType = 6899;
inline constexpr unsigned kPlain = kFirstMediaType, kTransparency = 6801, kPreCutTabs = 6803, kFullTabs = 6804,
                          kGlossy = 6820;
inline constexpr unsigned kFirstReservedMediaType = 6811, kLastReservedMediaType = 6819;
inline constexpr unsigned kLastNamedMediaType = 6869;
inline constexpr unsigned kPreprinted = 6890;

inline constexpr unsigned kNotDrilled = 6920, kDrilled = 6921;
inline constexpr unsigned kFirstTray = 7100, kLastTray = 7199;
// Units of lengths: whichever the system's paper sizes have, or a certain one.
inline constexpr unsigned kUnitsOfSystem = 7490, kUnitsMillimetres = 7491, kUnitsInches = 7492;
inline constexpr unsigned kStaplerInstalled = 7720, kStaplerNotInstalled = 7721;
inline constexpr unsigned kColor = 7730, kMonochrome = 7731;
inline constexpr unsigned kCollationOfDevmode = 8090, kCollationOfDriver = 8091;
inline constexpr unsigned kFirstUserPreference = 8120, kSecondUserPreference = 8121;
inline constexpr unsigned kControllerFamily8430 = 8430, kControllerFamily8431 = 8431, kControllerFamily8432 = 8432,
                          kControllerFamily8433 = 8433, kControllerFamily8434 = 8434;
inline constexpr unsigned kJobTicketWriter8630 = 8630, kJobTicketWriter8631 = 8631;
inline constexpr unsigned kFirstCompanion = 8710, kSecondCompanion = 8711;

// The values that the family gives; behind it what users and printers add: media types, custom sizes and forms.
inline constexpr unsigned kFirstFamilyValue = 5000, kLastFamilyValue = 9635;
inline constexpr unsigned kFirstOwnValue = kLastFamilyValue + 1;

}  // namespace facts::value
