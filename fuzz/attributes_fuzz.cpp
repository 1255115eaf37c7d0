// An image of attribute lists: the bytes as they are, and as what an image holds packed.
#include <mvutil/persistentattributes.h>

#include <zlib.h>

#include "fuzzhost.h"

namespace {

ByteBuffer Rewrite(const ByteBuffer& image) {
    const PersistentAttributes attributes(image, false, nullptr);
    for (const auto& [id, list] : attributes.GetNameSpaces().GetNameSpaces()) {
        AttributeBytesIndexedList indexed;
        indexed.ImportFromRawList(list);
        indexed.GetDumpText(true);
    }
    ByteBuffer state;
    attributes.GetPersistentAttributesState(state);
    return state;
}

ByteBuffer Pack(const std::uint8_t* data, std::size_t size) {
    const BYTE head[] = {'M', 'V', 'A', 'S', 1, 0};
    ByteBuffer image(head, sizeof head);
    const auto length = static_cast<DWORD>(size);
    image.appendLpbyte(&length, sizeof length);
    std::vector<Bytef> packed(compressBound(size));
    uLongf packedLength = packed.size();
    Demand(compress(packed.data(), &packedLength, data, size) == Z_OK, "any bytes can be packed");
    image.appendLpbyte(packed.data(), packedLength);
    return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const ByteBuffer& image : {ByteBuffer(data, size), Pack(data, size)}) {
        const ByteBuffer state = Rewrite(image);
        Demand(Rewrite(state) == state, "an image that was written reads back as it was");
    }
    return 0;
}
