// OperatingSystem, Application and DriverLoadedContext: where this library runs and for whom.
#pragma once

#include <mvutil/cxstring.h>

class MVUTIL_API OperatingSystem {
public:
    static bool UseEnglishPaperSizes();  // the user's default paper is Letter rather than A4
    static bool IsMetricCountry();       // the user measures in the metric system
};

class MVUTIL_API Application {
public:
    static CXString GetExecutableName();  // lower-case file name of the calling program
    // Answer for another program from now on (hosts and tests play one); an empty name ends that.
    static void SetExecutableName(const CXString& name);
    // True when the calling program must not be offered the custom paper size: it is in the application list of the
    // product last given to TextResourceLoader::Initialize on this thread.
    static bool DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml();
};

class MVUTIL_API DriverLoadedContext {
public:
    static bool IsSpoolerOrFilterPipelineExeContext();  // by the calling program's name
};
