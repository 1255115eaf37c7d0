// DevmodeSettingsSink: takes exported settings into the private block of a DEVMODE.
#pragma once

#include <privateblock.h>
#include <xdevmode.h>

#include <mvutil/attributebytessink.h>
#include <mvutil/persistentattributes.h>

// The document properties come first: whatever would not leave them room to grow is not taken. The object must outlive
// the sink, and its block must not be changed otherwise until Commit.
class DevmodeSettingsSink final : public AttributeBytesSink {
public:
    // What the compressed image of all settings may take before the user changes any.
    static constexpr std::size_t kMaximumImageBytes = privateblock::kMaximumStateBytes - 1024;

    explicit DevmodeSettingsSink(XDevmode& xdevmode);

    void SetNameSpace(const AttributeBytesNameSpaceId& namespaceId) override;  // drops what was there
    bool AddDataBlob(AttributeBytesFeatureId feature, const ByteBuffer& value) override;
    // Rewrites the block with what was taken. False, with nothing changed, without a block or without room in it.
    bool Commit();

private:
    void SetList(PersistentAttributes& settings, const AttributeBytesRawList& list) const;

    XDevmode& xdevmode_;
    PersistentAttributes settings_;
    DWORD namespace_ = 0;
};
