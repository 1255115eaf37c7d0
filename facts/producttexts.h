// Texts that the component asks a product for by number, and what each stands for: the display names of the
// capabilities that it adds.
#pragma once

namespace facts {

struct ProductText {
    unsigned number;
    const char* meaning;  // for people
};

namespace text {

inline constexpr ProductText kAutomatic = {264, "the automatic choice"};
inline constexpr ProductText kCopies = {418, "copies"};
inline constexpr ProductText kOneSided = {10027, "one side printed"};
inline constexpr ProductText kTwoSidedShortEdge = {10029, "both sides printed, turned at the short edge"};
inline constexpr ProductText kOutputQuality = {10146, "print quality"};
inline constexpr ProductText kNoColorManagement = {10210, "no colour management"};
inline constexpr ProductText kSystemColorManagement = {10211, "colour managed by the system"};
inline constexpr ProductText kColorManagement = {10214, "colour management"};
inline constexpr ProductText kTwoSidedLongEdge = {10290, "both sides printed, turned at the long edge"};
inline constexpr ProductText kDuplex = {40373, "printing on both sides"};
inline constexpr ProductText kResolution = {41033, "resolution"};
inline constexpr ProductText kMediaSize = {41034, "paper size"};
inline constexpr ProductText kMediaType = {41035, "paper type"};
inline constexpr ProductText kRenderingIntent = {41065, "rendering intent"};
inline constexpr ProductText kAbsoluteColorimetric = {41066, "the rendering intent absolute colorimetric"};
inline constexpr ProductText kRelativeColorimetric = {41067, "the rendering intent relative colorimetric"};
inline constexpr ProductText kPhotographs = {41068, "the rendering intent for photographs"};
inline constexpr ProductText kBusinessGraphics = {41069, "the rendering intent for business graphics"};
inline constexpr ProductText kDeviceColorManagement = {41075, "colour managed by the printer"};

}  // namespace text

inline constexpr ProductText kProductTexts[] = {
    text::kAutomatic,
    text::kCopies,
    text::kOneSided,
    text::kTwoSidedShortEdge,
    text::kOutputQuality,
    text::kNoColorManagement,
    text::kSystemColorManagement,
    text::kColorManagement,
    text::kTwoSidedLongEdge,
    text::kDuplex,
    text::kResolution,
    text::kMediaSize,
    text::kMediaType,
    text::kRenderingIntent,
    text::kAbsoluteColorimetric,
    text::kRelativeColorimetric,
    text::kPhotographs,
    text::kBusinessGraphics,
    text::kDeviceColorManagement,
};

}  // namespace facts
