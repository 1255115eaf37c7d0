// The identification that a printer's device settings ask of every job.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvutil/cxstring.h>

#include <array>

class AttributeBytesReader;
class XOemPdev;

struct IdentificationSettings {
    static constexpr DWORD kModeOfStrings = 7622;  // the two strings go into the job's two texts

    DWORD mode = DataModelIds::kNotSet;
    DWORD kind = DataModelIds::kNotSet;
    CXString first = {};
    CXString second = {};
    std::array<CXString, 3> further = {};
};

// What the printer's device settings say, or, where they name the job as the source, the job's own store. Not set
// (not set, empty texts) when the printer asks for none, or the job has been identified already.
IdentificationSettings ReadIdentificationSettings(AttributeBytesReader& deviceSettings, XOemPdev& pdev,
                                                  DWORD controllerFamily);
