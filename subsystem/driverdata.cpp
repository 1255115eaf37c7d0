// The driver data that a ticket carries, and what may be wrong with it.
#include "driverdata.h"

#include <mvutil/morvaneutilities.h>
#include <mvutil/persistentattributes.h>
#include <privateblock.h>
#include "hosttext.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t kChecksumBytes = 4;

// The first entry of the attribute state, or an empty buffer.
ByteBuffer FindState(const BYTE* block) {
    ByteBuffer state;
    privateblock::WalkEntries(block, [&](const privateblock::Entry& entry) {
        if (entry.key == privateblock::kAttributeStateKey && state.getDword() == 0)
            state.setWithLpbyte(entry.value, entry.length);
    });
    return state;
}

}  // namespace

std::vector<BYTE> DecodeBase64(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return {};
    const WideString wide(text.begin(), text.end());
    const int characters = static_cast<int>(wide.size());
    int length = MorvaneUtilities::Base64DecodeGetRequiredLength(characters);
    std::vector<BYTE> bytes(static_cast<std::size_t>(std::max(length, 0)));
    if (bytes.empty() || !MorvaneUtilities::Base64Decode(wide.c_str(), characters, bytes.data(), &length)) return {};
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

std::string FindBlockFault(const BYTE* block) {
    using namespace privateblock;
    const DWORD stored = ReadDword(block + kChecksumOffset);
    const WORD count = ReadWord(block + kEntryCountOffset);
    if (stored == 0 && count == 0) return std::string();
    if (const DWORD computed = ComputeChecksum(block); computed != stored)
        return "the private block is damaged: its checksum is " + FormatHex(stored, 8) + " and its bytes give " +
               FormatHex(computed, 8) + ", so that none of its settings counts";
    const ByteBuffer state = FindState(block);
    if (state.getDword() != 0 && PersistentAttributes(state, false, nullptr).GetNameSpaces().GetNameSpaces().empty())
        return "the settings in the private block (" + std::to_string(state.getDword()) +
               " bytes) cannot be read: another version of the driver wrote them";
    return std::string();
}

DriverData DecodeDriverData(const std::string& text) {
    using namespace privateblock;
    const auto fault = [](std::string reason) { return DriverData{std::move(reason), {}}; };
    if (text.empty()) return fault("the driver data is empty");
    const std::vector<BYTE> bytes = DecodeBase64(text);
    if (bytes.empty()) return fault("the driver data is no Base64 text: it was changed or cut short on its way");
    if (bytes.size() < kChecksumBytes)
        return fault("the driver data has the wrong length: " + std::to_string(bytes.size()) + " bytes");
    const std::size_t length = bytes.size() - kChecksumBytes;
    const DWORD stored = ReadDword(bytes.data());
    if (const DWORD computed = Crc32::GetCrc(bytes.data() + kChecksumBytes, length); computed != stored)
        return fault("the driver data has the wrong checksum: " + FormatHex(stored, 8) + ", and its bytes give " +
                     FormatHex(computed, 8) + "; it was changed or cut short on its way");
    if (length > kBytes || length < kEntriesOffset)
        return fault("the driver data has the wrong length: " + std::to_string(length) +
                     " bytes, where a private block has " + std::to_string(kEntriesOffset) + " to " +
                     std::to_string(kBytes));
    DriverData data;
    data.block.resize(kBytes);
    std::copy(bytes.begin() + kChecksumBytes, bytes.end(), data.block.begin());
    const DWORD size = ReadDword(data.block.data() + kSizeOffset);
    if (size != kBytes || ReadDword(data.block.data() + kSignatureOffset) != kSignature)
        return fault("the driver data is another driver's or another version's: it claims " + std::to_string(size) +
                     " bytes and the signature " + FormatHex(ReadDword(data.block.data() + kSignatureOffset), 8));
    data.fault = FindBlockFault(data.block.data());
    return data;
}
