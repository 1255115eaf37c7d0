// Counts of live objects on Windows: the system allocates the BSTRs and reports to nobody.
#include <livecounts.h>

long LiveBstrCount() noexcept { return 0; }
