// PrintDriver: what the driver family reads of a printer's driver: its files, its data file, its capability words.
#pragma once

#include <mvutil/cxstring.h>

#include <vector>

class MVUTIL_API PrintDriver {
public:
    static constexpr int kInstallationComplete = 4;

    // The capability of that number from the driver's data file (facts/drivercapabilities.h); 0 when the driver
    // has no readable data file or does not list the number. Never throws.
    ULONGLONG GetDriverCapability(HANDLE printer, int capability) const;
    // The driver's files as one text in lower case, one a line. The kind (a mask: 1 driver, data and configuration
    // files, 8 dependent files) selects which; a non-empty filter keeps only names that contain it, without regard to
    // case. Throws ExceptionPrintDriverFailure.
    CXString GetDriverFiles(HANDLE printer, int kind, const CXString& filter) const;
    // File names of the driver's dependent files, without folders, in the driver's order and spelling.
    // Throws ExceptionPrintDriverFailure.
    std::vector<CXString> GetDriverDependentFiles(HANDLE printer) const;
    // Full path of the driver's data file, the product description. Throws ExceptionPrintDriverFailure.
    static CXString GetMorvaneDriverDataFilePathFromHandle(HANDLE printer);
    // 0 unknown printer, 1 no driver, 2 driver without data file, 3 data file unreadable, 4 complete.
    // Throws ExceptionPrintDriverFailure when the spooler does not answer at all.
    static int GetInstallationStateFromHandle(HANDLE printer);
};
