// The table of page sizes.
#include <products/pagesizes.h>

#include <gtest/gtest.h>

#include <set>

TEST(PageSizes, AreTheWholeListWithUniqueNamesAndValues) {
    std::set<std::string_view> names;
    std::set<DWORD> values;
    std::set<WORD> numbers;
    int custom = 0;
    for (const PageSizeRow& row : GetPageSizeTable()) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(names.insert(row.name).second);
        EXPECT_EQ(FindPageSizeByName(row.name), &row);
        EXPECT_TRUE(row.paperNumber == 0 || numbers.insert(row.paperNumber).second);
        EXPECT_LE(row.paperNumber, 118);
        if (row.IsCustom()) {
            ++custom;
            continue;
        }
        EXPECT_TRUE(values.insert(row.value).second);
        EXPECT_TRUE(row.value >= 6400 && row.value <= 6730);
        EXPECT_EQ(FindPageSizeByValue(row.value), &row);
        EXPECT_GT(row.width, 0);
        EXPECT_EQ(row.length == 0, row.name.starts_with("Roll"));
        EXPECT_EQ(static_cast<DWORD>(row.GetType()), row.paperNumber != 0 ? 25001u : 25002u);
    }
    EXPECT_EQ(names.size(), 172u);
    EXPECT_EQ(custom, 2);
    EXPECT_EQ(FindPageSizeByName("ISOA44"), nullptr);
    EXPECT_EQ(FindPageSizeByPaperNumber(0), nullptr);
    EXPECT_EQ(FindPageSizeByValue(0), nullptr);
}
