// PrintJob: how the driver family names a job to the systems around the printer.
#pragma once

#include <mvutil/cxstring.h>

class MVUTIL_API PrintJob {
public:
    // The key under which a Lumeo server knows the job: printer, job number and owner, joined by slashes; a slash in
    // one of the names becomes an underscore. Throws ExceptionPrinterFailure when the spooler does not know the
    // printer.
    static CXString GetLumeoPrintJobIDkey(HANDLE printer, LONG jobNumber, const CXString& owner);
};
