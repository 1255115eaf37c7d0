// PersistentAttributes: attribute lists by namespace as one byte image, property 1 of the private DEVMODE block.
#pragma once

#include <mvutil/attributebytes.h>

// The image is versioned, checked at every length, and compressed with zlib. Bytes that are no image, or one of another
// version, or one that would unpack to more than kMaximumUnpackedBytes, give no lists at all and never an exception.
class MVUTIL_API PersistentAttributes {
public:
    static constexpr std::size_t kMaximumUnpackedBytes = 1u << 20;

    // The flag asks for the lists of the driver version given (null: any); this library writes one version only.
    PersistentAttributes(const ByteBuffer& image, bool checkDriverVersion, const CXString* driverVersion);

    static DWORD GetDataModelDocPropNameSpaceId() noexcept;      // the data model's document properties
    static DWORD GetMsDeviceCapabilitiesNameSpaceId() noexcept;  // the device capability caches

    // Replaces the list by that of the namespace; empty when the image has none.
    void GetAttributeBytesListForNameSpace(DWORD namespaceId, AttributeBytesRawList& list) const;
    const AttributeBytesNameSpaces& GetNameSpaces() const noexcept { return nameSpaces_; }
    void SetAttributeBytesNameSpaces(const AttributeBytesNameSpaces& nameSpaces);  // replaces all of them
    // Replaces the buffer's contents by the image; equal lists give equal bytes. Throws std::length_error, with the
    // buffer unchanged, when the lists take more than kMaximumUnpackedBytes.
    void GetPersistentAttributesState(ByteBuffer& image) const;
    // The image of one list alone; throws as above.
    static ByteBuffer MakeState(DWORD namespaceId, const AttributeBytesRawList& list);

private:
    AttributeBytesNameSpaces nameSpaces_;
};
