// What the output quality unit knows of a quality.
#pragma once

#include <mvutil/cxstring.h>

// One quality of the device with its Print Schema option. The driver's qualities stay in the data model, so no list of
// these has an entry.
struct PageOutputQualityDataEntry {
    CXString displayName;
    CXString optionName;
};
