// CapabilityBlob: a capability cache while it is built, header first, then its records.
#pragma once

#include <mvutil/bytebuffer.h>
#include <mvutil/crc32.h>
#include <namefield.h>

#include <cstddef>
#include <cstring>

#include "capabilitygroups.h"
#include "privateblock.h"

template <class Header>
class CapabilityBlob {
public:
    template <class Record>
    void Append(const Record& record) {
        records_.appendLpbyte(&record, sizeof record);
        ++count_;
    }
    DWORD GetCount() const noexcept { return count_; }

    // The whole blob with its check word in place.
    ByteBuffer Finish(const CapabilityGroup& group, Header header) const {
        ByteBuffer blob(&header, sizeof header);
        blob.append(records_);
        BYTE* check = blob.getLpbyte() + group.checkWordOffset;
        privateblock::WriteDword(check, 0);
        privateblock::WriteDword(check, Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), kCapabilityCacheCrcStart));
        return blob;
    }

private:
    ByteBuffer records_;
    DWORD count_ = 0;
};
