// Names for people of the values that products name nowhere.
#pragma once

#include <facts/values.h>

namespace facts {

struct ValueName {
    unsigned value;
    const char* name;
};

// Ascending.
inline constexpr ValueName kValueNames[] = {
    {value::kNotSet, "automatic"},
    {value::kCopiesOfDevmode, "the DEVMODE"},
    {value::kCopiesOfDriver, "the driver"},
    {value::kCollated, "collated"},
    {value::kUncollated, "uncollated"},
    {value::kOneSided, "one-sided"},
    {value::kTwoSidedLongEdge, "two-sided, long edge"},
    {value::kTwoSidedShortEdge, "two-sided, short edge"},
    {value::kOff, "off"},
    {value::kOn, "on"},
    {value::kPrint, "print"},
    {value::kSave, "save"},
    {value::kPrintAndSave, "print and save"},
    {value::kRotated0, "0 degrees"},
    {value::kRotated90, "90 degrees"},
    {value::kRotated180, "180 degrees"},
    {value::kRotated270, "270 degrees"},
    {value::kBooklet, "booklet"},
    {value::kStaplePortrait, "one staple, portrait"},
    {value::kStapleLandscape, "one staple, landscape"},
    {value::kStapleRightPortrait, "one staple at the right, portrait"},
    {value::kStapleRightLandscape, "one staple at the right, landscape"},
    {value::kTwoStaplesLandscape, "two staples, landscape"},
    {value::kTwoStaplesPortrait, "two staples, portrait"},
    {value::kTwoStaplesRightLandscape, "two staples at the right, landscape"},
    {value::kTwoStaplesRightPortrait, "two staples at the right, portrait"},
    {value::kBoundLeft, "bound at the left"},
    {value::kBoundRight, "bound at the right"},
    {value::kNoColor, "no colour"},
    {value::kWhite, "white"},
    {value::kPink, "pink"},
    {value::kYellow, "yellow"},
    {value::kBlue, "blue"},
    {value::kGreen, "green"},
    {value::kBuff, "buff"},
    {value::kGoldenrod, "goldenrod"},
    {value::kRed, "red"},
    {value::kGrey, "grey"},
    {value::kIvory, "ivory"},
    {value::kOrange, "orange"},
    {value::kNotDrilled, "not drilled"},
    {value::kDrilled, "drilled"},
    {value::kUnitsMillimetres, "millimetres"},
    {value::kUnitsInches, "inches"},
    {value::kStaplerInstalled, "installed"},
    {value::kStaplerNotInstalled, "not installed"},
    {value::kColor, "colour"},
    {value::kMonochrome, "monochrome"},
    {value::kCollationOfDevmode, "the DEVMODE"},
    {value::kCollationOfDriver, "the driver"},
};

}  // namespace facts
