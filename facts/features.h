// The features of the driver family's data model: their numbers, and what kinds there are.
#pragma once

namespace facts {

enum class FeatureKind { Boolean, Integer, Option, String, Dimension, Resolution, List };

}  // namespace facts

namespace facts::feature {

// The feature that stands for the whole model: every other one is under it.
inline constexpr unsigned kRoot = 2;

inline constexpr unsigned kProtectedString = 42;
inline constexpr unsigned kCopies = 43;
inline constexpr unsigned kCopiesSource = 44;  // whose number of copies counts
inline constexpr unsigned kCollation = 45;
inline constexpr unsigned kSides = 46;
inline constexpr unsigned kUserPreference = 50;
inline constexpr unsigned kSignature = 59;
inline constexpr unsigned kDisposition = 63;
inline constexpr unsigned kTitle = 78;
inline constexpr unsigned kJobText1 = 79;
inline constexpr unsigned kJobText2 = 80;
inline constexpr unsigned kSender = 82;
inline constexpr unsigned kRecipient = 83;
inline constexpr unsigned kMessage = 84;
inline constexpr unsigned kStartMessage = 85;
inline constexpr unsigned kRotation = 88;
inline constexpr unsigned kResolution = 94;
inline constexpr unsigned kImageShiftX = 95;
inline constexpr unsigned kImageShiftY = 96;
inline constexpr unsigned kImageShiftX2 = 97;  // of the second side
inline constexpr unsigned kImageShiftY2 = 98;
inline constexpr unsigned kHighlightPrintingColor = 101;
inline constexpr unsigned kHighlightMappingColor = 102;
inline constexpr unsigned kHighlightMapping = 103;
inline constexpr unsigned kHighlightMismatch = 104;
inline constexpr unsigned kFinishing = 144;
inline constexpr unsigned kSlipSheets = 145;
inline constexpr unsigned kOutputLocation = 146;
inline constexpr unsigned kPreferencesAreUsed = 162;
inline constexpr unsigned kPageSize = 168;
inline constexpr unsigned kCustomWidth = 172;
inline constexpr unsigned kCustomLength = 173;
inline constexpr unsigned kPaperColor = 174;
inline constexpr unsigned kMediaType = 175;
inline constexpr unsigned kTabs = 176;
inline constexpr unsigned kDrilledPaper = 178;
inline constexpr unsigned kPaperWeight = 179;
inline constexpr unsigned kTray = 191;
inline constexpr unsigned kLoadedTrays = 192;  // a row for each tray, with what it holds
inline constexpr unsigned kPaperSource = 193;
inline constexpr unsigned kPageExceptions = 199;
inline constexpr unsigned kInsertedPages = 200;
inline constexpr unsigned kTrays = 201;
inline constexpr unsigned kFinishingSheets = 208;
inline constexpr unsigned kStock = 210;
inline constexpr unsigned kJobTicketWriter = 236;
inline constexpr unsigned kUnits = 237;
inline constexpr unsigned kPaperUnits = 238;
inline constexpr unsigned kIdentification = 246;
inline constexpr unsigned kColor = 247;
inline constexpr unsigned kMemory = 248;  // KiB
inline constexpr unsigned kPagesPerMinute = 249;
inline constexpr unsigned kPrintRate = 250;
inline constexpr unsigned kPrintRateUnit = 251;
inline constexpr unsigned kStapler = 252;
inline constexpr unsigned kControllerFamily = 285;
inline constexpr unsigned kJobTickets = 286;
inline constexpr unsigned kCollationSource = 415;  // whose collation counts
inline constexpr unsigned kTitleIsOfJob = 438;     // the document's name, not the user's text
inline constexpr unsigned kSenderIsOfJob = 439;
inline constexpr unsigned kRecipientIsOfJob = 440;
inline constexpr unsigned kUserText = 441;
inline constexpr unsigned kUserSwitch = 442;
inline constexpr unsigned kRecipientIsRemembered = 471;
inline constexpr unsigned kSenderIsRemembered = 472;
inline constexpr unsigned kTitleIsRemembered = 473;
inline constexpr unsigned kPaper = 477;
inline constexpr unsigned kUserInteger = 571;
inline constexpr unsigned kCompanion = 575;
inline constexpr unsigned kFirstMaskedPreference = 580;  // those to 590 are kept together
inline constexpr unsigned kLastMaskedPreference = 590;
inline constexpr unsigned kCompanionPreference = 591;
inline constexpr unsigned kTraysAreListed = 599;  // with what they hold
inline constexpr unsigned kSecondProtectedString = 648;
inline constexpr unsigned kTrayOfRow = 710;  // in a row of the loaded trays
inline constexpr unsigned kJobKey = 716;

}  // namespace facts::feature
