// GlobalCaches: what is kept, what goes first, and many threads at once.
#include <mvutil/globalcaches.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr auto kEntries = static_cast<DWORD>(GlobalCaches::kMaximumEntries);

GlobalCaches::PropertyBag BagOf(LONG value) {
    auto buffer = std::make_shared<ByteBuffer>();
    buffer->createFromLongValue(value);
    return {{WORD{1}, buffer}};
}

bool HasBag(DWORD checksum) {
    GlobalCaches::PropertyBag bag;
    return GlobalCaches::CheckXDevmodePropertyBagCache(checksum, bag) &&
           bag.at(0).second->getAsLongValue() == static_cast<LONG>(checksum);
}

AttributeBytesIndexedList ListOf(std::size_t bytes) {
    ByteBuffer blob;
    blob.resize(bytes);
    AttributeBytesIndexedList list;
    list.SetAttributeBytes(AttributeBytesFeatureId(1), AttributeBytesDataBlobValue(blob));
    return list;
}

class GlobalCachesTest : public testing::Test {
protected:
    void SetUp() override { GlobalCaches::Clear(); }
    void TearDown() override { GlobalCaches::Clear(); }
};

TEST_F(GlobalCachesTest, TheLeastRecentlyUsedGoesFirst) {
    for (DWORD i = 0; i < kEntries; ++i) GlobalCaches::AddXDevmodePropertyBagCacheEntry(i, BagOf(static_cast<LONG>(i)));
    EXPECT_TRUE(HasBag(0));                                       // used: now the newest
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(2, BagOf(2));  // replaced in its place: newest as well
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(900, BagOf(900));
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(901, BagOf(901));
    EXPECT_FALSE(HasBag(1));
    EXPECT_FALSE(HasBag(3));
    for (const DWORD kept : {DWORD{0}, DWORD{2}, DWORD{4}, kEntries - 1, DWORD{900}, DWORD{901}})
        EXPECT_TRUE(HasBag(kept)) << kept;
    EXPECT_EQ(GlobalCaches::GetCounters().propertyBagHits, 7u);
    EXPECT_EQ(GlobalCaches::GetCounters().propertyBagMisses, 2u);
}

TEST_F(GlobalCachesTest, BuffersAreCopiedInAndSharedOut) {
    auto buffer = std::make_shared<ByteBuffer>("ab", 2);
    GlobalCaches::AddXDevmodePropertyBagCacheEntry(5, {{WORD{1}, buffer}});
    buffer->clear();
    GlobalCaches::PropertyBag first, second;
    ASSERT_TRUE(GlobalCaches::CheckXDevmodePropertyBagCache(5, first));
    ASSERT_TRUE(GlobalCaches::CheckXDevmodePropertyBagCache(5, second));
    EXPECT_EQ(*first.at(0).second, ByteBuffer("ab", 2));
    EXPECT_EQ(first.at(0).second, second.at(0).second);
}

TEST_F(GlobalCachesTest, ListsAreKeptByNameSpaceAndChecksumWithinABudget) {
    const auto add = [](DWORD nameSpace, DWORD checksum, std::size_t bytes) {
        GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(W(""), nameSpace, checksum, ListOf(bytes));
    };
    AttributeBytesIndexedList list;
    const auto has = [&](DWORD nameSpace, DWORD checksum) {
        return GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(nameSpace, checksum, list);
    };
    add(1, 7, 10);
    EXPECT_FALSE(has(2, 7) || has(1, 8));
    ASSERT_TRUE(has(1, 7));
    list.ImportFromRawList(AttributeBytesRawList());  // a copy: the cache's own stays
    EXPECT_TRUE(has(1, 7) && !list.IsEmpty());
    const std::size_t third = GlobalCaches::kMaximumBytes / 3;
    for (DWORD i = 0; i < 3; ++i) add(2, i, third);
    EXPECT_FALSE(has(2, 0));
    add(2, 9, 3 * third);
    EXPECT_TRUE(!has(2, 9) && has(2, 2));
}

TEST_F(GlobalCachesTest, ManyThreadsSeeWholeEntries) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (std::size_t t = 0; t < wrong.size(); ++t) {
        threads.emplace_back([t, &wrong] {
            for (DWORD i = 0; i < 4000; ++i) {
                const DWORD checksum = (i * 7 + static_cast<DWORD>(t)) % (2 * kEntries);
                GlobalCaches::PropertyBag bag;
                if (!GlobalCaches::CheckXDevmodePropertyBagCache(checksum, bag)) {
                    GlobalCaches::AddXDevmodePropertyBagCacheEntry(checksum, BagOf(static_cast<LONG>(checksum)));
                } else if (bag.at(0).second->getAsLongValue() != static_cast<LONG>(checksum)) {
                    ++wrong[t];
                }
                if (i % 1000 == 999) GlobalCaches::Clear();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(wrong.size(), 0));
}

}  // namespace
