// A printer's capability caches as a whole: building them anew, and finding a damaged one.
#pragma once

#include <capabilitygroups.h>

#include <mvutil/bytebuffer.h>
#include <mvutil/cxstring.h>

#include <map>
#include <optional>
#include <vector>

// Fills a data model from the printer's product, forms and custom sizes, and writes the caches that it gives where they
// differ from the stored ones; damaged ones are replaced. Throws what the maker's libraries throw for a printer whose
// driver is incomplete.
void RebuildCapabilityCaches(HANDLE printer);

// Rebuilds the caches of many printers. What they hold comes from the driver, the forms and the custom sizes, so that
// the printers of one driver have the same: it is built for the first and written to each other where that has
// something else. To be made anew after a change of forms, custom sizes or drivers.
class CapabilityCachesOfMany {
public:
    // driver: the name of the printer's. False when not all of them could be built and written.
    bool Rebuild(HANDLE printer, const CXString& driver);

private:
    // Blobs in the order of the groups, for drivers of which all could be built.
    std::map<CXString, std::vector<ByteBuffer>> built_;
};

// Whether a stored blob has at least the length of its group's header and the check word of its content.
bool IsWholeCapabilityBlob(const CapabilityGroup& group, ByteBuffer blob);
