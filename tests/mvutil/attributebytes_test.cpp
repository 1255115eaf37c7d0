// Attribute lists and their byte image, whole and damaged.
#include <mvutil/persistentattributes.h>

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <utility>

namespace {

using Id = AttributeBytesFeatureId;

AttributeBytesRawList ListOf(std::initializer_list<AttributeBytesRawList::Item> items) {
    AttributeBytesRawList list;
    for (const auto& [feature, value] : items) list.Append(feature, value);
    return list;
}

// One value of every kind, with two levels of collections.
AttributeBytesRawList EveryKind() {
    const AttributeBytesRawList media =
        ListOf({{Id(175), AttributeBytesOptionValue(AttributeBytesValueId(6801), true)}});
    return ListOf({{Id(286), AttributeBytesBooleanValue(true)},
                   {Id(12), AttributeBytesIntegerValue(-40000)},
                   {Id(175), AttributeBytesOptionValue(AttributeBytesValueId(5001), false)},
                   {Id(176), AttributeBytesOptionValue(AttributeBytesNewValueId(W("My \u20AC paper")), true)},
                   {Id(300), AttributeBytesStringValue(CXString())},
                   {Id(301), AttributeBytesDataBlobValue(ByteBuffer("\0\1\2", 3))},
                   {Id(477), AttributeBytesListValue(1, ListOf({{Id(210), AttributeBytesListValue(0, media)}}))}});
}

ByteBuffer ImageOf(const std::vector<std::pair<DWORD, AttributeBytesRawList>>& lists) {
    AttributeBytesNameSpaces nameSpaces;
    for (const auto& [id, list] : lists) nameSpaces.SetNameSpaceAttributes(id, list);
    PersistentAttributes attributes(ByteBuffer(), false, nullptr);
    attributes.SetAttributeBytesNameSpaces(nameSpaces);
    ByteBuffer image;
    attributes.GetPersistentAttributesState(image);
    return image;
}

std::map<DWORD, AttributeBytesRawList> ListsOf(const ByteBuffer& image) {
    return PersistentAttributes(image, false, nullptr).GetNameSpaces().GetNameSpaces();
}

std::size_t CountOf(const ByteBuffer& image) { return ListsOf(image).size(); }

constexpr DWORD kHeaderBytes = 10;  // of an image: mark, version, unpacked length

TEST(AttributeLists, ValuesDifferInKindAndChoice) {
    const AttributeBytesValue values[] = {AttributeBytesBooleanValue(true),
                                          AttributeBytesBooleanValue(false),
                                          AttributeBytesIntegerValue(1),
                                          AttributeBytesIntegerValue(0),
                                          AttributeBytesOptionValue(AttributeBytesValueId(1), true),
                                          AttributeBytesOptionValue(AttributeBytesValueId(1), false),
                                          AttributeBytesOptionValue(AttributeBytesValueId(2), true),
                                          AttributeBytesOptionValue(AttributeBytesNewValueId(W("1")), true),
                                          AttributeBytesStringValue(W("1")),
                                          AttributeBytesStringValue(W("2")),
                                          AttributeBytesDataBlobValue(ByteBuffer("1", 1)),
                                          AttributeBytesDataBlobValue(ByteBuffer("2", 1)),
                                          AttributeBytesListValue(1, ListOf({})),
                                          AttributeBytesListValue(1, ListOf({{Id(1), AttributeBytesIntegerValue(1)}}))};
    for (const AttributeBytesValue& a : values)
        for (const AttributeBytesValue& b : values)
            EXPECT_EQ(a == b, &a == &b) << (&a - values) << " " << (&b - values);
}

TEST(AttributeLists, CollectionsAreCopies) {
    AttributeBytesIndexedList list, outer, inner;
    list.ImportFromRawList(EveryKind());
    ASSERT_TRUE(list.GetCollection(Id(477), outer) && outer.GetCollection(Id(210), inner));
    inner.ImportFromRawList(AttributeBytesRawList());
    ASSERT_TRUE(outer.GetCollection(Id(210), outer));
    EXPECT_FALSE(outer.IsEmpty());
    EXPECT_FALSE(list.GetCollection(Id(286), outer));
    EXPECT_TRUE(outer.IsEmpty());
}

TEST(AttributeListBytes, NestNoDeeperThanAllowed) {
    AttributeBytesRawList list = ListOf({{Id(1), AttributeBytesBooleanValue(true)}});
    while (list.GetDepth() < AttributeBytesRawList::kMaximumDepth)
        list = ListOf({{Id(1), AttributeBytesListValue(1, list)}});
    EXPECT_THROW(AttributeBytesListValue(1, list), std::invalid_argument);
    ByteBuffer bytes;
    list.Encode(bytes);
    AttributeBytesRawList decoded;
    EXPECT_TRUE(decoded.Decode(bytes.getLpbyte(), bytes.getDword()));
    EXPECT_EQ(decoded, list);
    ByteBuffer bomb;
    for (int level = 0; level < 100000; ++level) bomb.appendLpbyte("\1\0\0\0\1\0\0\0\6\1", 10);  // one item: a list
    bomb.append(bytes);
    EXPECT_FALSE(decoded.Decode(bomb.getLpbyte(), bomb.getDword()));
    EXPECT_TRUE(decoded.IsEmpty());
}

TEST(AttributeListBytes, AreAListWholeOrNotAtAll) {
    const AttributeBytesRawList list = EveryKind();
    ByteBuffer bytes;
    list.Encode(bytes);
    AttributeBytesRawList decoded;
    for (DWORD length = 0; length < bytes.getDword(); ++length) {
        EXPECT_FALSE(decoded.Decode(bytes.getLpbyte(), length)) << length;
    }
    for (DWORD at = 0; at < bytes.getDword(); ++at) {
        for (const BYTE mask : {0x01, 0x80, 0xFF}) {
            ByteBuffer damaged = bytes;
            damaged.getLpbyte()[at] ^= mask;
            ByteBuffer again;
            if (decoded.Decode(damaged.getLpbyte(), damaged.getDword())) {
                decoded.Encode(again);  // what was taken for a list is one, bit for bit
                EXPECT_EQ(again, damaged) << at;
            } else {
                EXPECT_TRUE(decoded.IsEmpty());
            }
        }
    }
    bytes.appendLpbyte("", 1);
    EXPECT_FALSE(decoded.Decode(bytes.getLpbyte(), bytes.getDword()));
}

TEST(PersistentAttributes, ADamagedImageHoldsNothing) {
    const ByteBuffer image = ImageOf({{1, EveryKind()}, {2, {}}});
    EXPECT_EQ(ListsOf(image).at(1), EveryKind());
    for (DWORD length = 0; length < image.getDword(); ++length) {
        EXPECT_EQ(CountOf(ByteBuffer(image.getLpbyte(), length)), 0u) << length;
    }
    ByteBuffer longer = image;
    longer.appendLpbyte("", 1);
    EXPECT_EQ(CountOf(longer), 0u) << "a byte behind the packed ones";
    for (DWORD at = 0; at < image.getDword(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            ByteBuffer damaged = image;
            damaged.getLpbyte()[at] ^= static_cast<BYTE>(1 << bit);
            // A bit that the packing does not use may change; nothing that is read may.
            const auto lists = ListsOf(damaged);
            EXPECT_TRUE(lists.empty() || (at >= kHeaderBytes && lists == ListsOf(image))) << at << "," << bit;
        }
    }
}

TEST(PersistentAttributes, UnpackNoMoreThanTheirBound) {
    const auto blobOf = [](std::size_t length) {
        ByteBuffer zeros;
        zeros.resize(length);
        return ListOf({{Id(1), AttributeBytesDataBlobValue(zeros)}});
    };
    constexpr std::size_t kAroundBlob = 4 + 8 + 4 + 10;  // counts, lengths, ids
    const std::size_t largest = PersistentAttributes::kMaximumUnpackedBytes - kAroundBlob;
    ByteBuffer image = ImageOf({{1, blobOf(largest)}});
    EXPECT_LT(image.getDword(), 5400u);
    EXPECT_EQ(CountOf(image), 1u);
    EXPECT_THROW(ImageOf({{1, blobOf(largest + 1)}}), std::length_error);
    image.getLpbyte()[6] = 1;  // claims one byte more than the bound
    EXPECT_EQ(CountOf(image), 0u);
}

}  // namespace
