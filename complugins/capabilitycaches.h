// A printer's capability caches as a whole: building them anew, and finding a damaged one.
#pragma once

#include <capabilitygroups.h>

#include <mvutil/bytebuffer.h>

// Fills a data model from the printer's product, forms and custom sizes, and writes the caches that it gives where they
// differ from the stored ones; damaged ones are replaced. Throws what the maker's libraries throw for a printer whose
// driver is incomplete.
void RebuildCapabilityCaches(HANDLE printer);

// Whether a stored blob has at least the length of its group's header and the check word of its content.
bool IsWholeCapabilityBlob(const CapabilityGroup& group, ByteBuffer blob);
