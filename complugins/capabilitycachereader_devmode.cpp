// CapabilityCacheReader: the capability caches inside the private block of a DEVMODE.
#include <capabilitycachereader.h>

#include <privateblock.h>
#include <xdevmode.h>

#include <mvutil/attributebytessink.h>
#include <mvutil/crc32.h>
#include <mvutil/persistentattributes.h>

namespace {

// An item is the CRC-32 of the registry's blob, then the blob.
constexpr std::size_t kFrameBytes = 4;

}  // namespace

bool CapabilityCacheReader::LoadFromDevmode(const CapabilityGroup& group, DWORD item, DEVMODEW* devmode) {
    if (!devmode) return false;
    XDevmode xdevmode(devmode);
    const AttributeBytesIndexedList* const list =
        xdevmode.GetAttributeBytesIndexedList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId());
    ByteBuffer framed;
    if (!list->GetDataBlobValue(AttributeBytesFeatureId(item), framed)) return false;
    if (framed.getDword() < kFrameBytes + group.minimumBytes) return false;
    const ByteBuffer blob(framed.getLpbyte() + kFrameBytes, framed.getDword() - kFrameBytes);
    if (privateblock::ReadDword(framed.getLpbyte()) !=
        Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), framingStart_)) {
        hasDevmodeCrcMismatch_ = true;
    }
    blobs_[IndexOf(group)] = blob;
    return true;
}

bool CapabilityCacheReader::FrameForDevmode(const ByteBuffer& blob, ByteBuffer& item) const {
    if (!(setUp_ & kFramingStartRead) || blob.isEmpty()) return false;
    item.resize(kFrameBytes);
    privateblock::WriteDword(item.getLpbyte(), Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), framingStart_));
    item.append(blob);
    return true;
}

bool CapabilityCacheReader::ExportCachesToDevmode(AttributeBytesSink& sink) {
    constexpr DWORD kExportedIndexes[] = {DC_PAPERS, DC_BINS, DC_MEDIATYPES, DC_COLORDEVICE, kResolutionRecordsIndex};
    sink.SetNameSpace(AttributeBytesNameSpaceId(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId()));
    for (const DWORD index : kExportedIndexes) {
        if (FAILED(LoadCache(index, false))) continue;
        ByteBuffer item;
        if (!FrameForDevmode(*GetBlob(*FindCapabilityGroup(index)), item)) return false;
        sink.AddDataBlob(AttributeBytesFeatureId(index), item);  // left out when there is no room
    }
    return true;
}
