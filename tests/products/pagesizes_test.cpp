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
        EXPECT_EQ(row.GetKind(), row.paperNumber != 0 ? 25001u : 25002u);
    }
    EXPECT_EQ(names.size(), 172u);
    EXPECT_EQ(custom, 2);
    EXPECT_EQ(FindPageSizeByName("ISOA44"), nullptr);
    EXPECT_EQ(FindPageSizeByPaperNumber(0), nullptr);
    EXPECT_EQ(FindPageSizeByValue(0), nullptr);
}

TEST(PageSizes, KeepTheirFixedNumbers) {
    struct Row {
        const char* name;
        WORD paperNumber;
        DWORD value, kind, units;
    };
    const Row rows[] = {{"NorthAmericaLetter", 1, 6430, 25001, 7492}, {"ISOA4", 9, 6436, 25001, 7491},
                        {"NorthAmerica4x6", 0, 6400, 25002, 7492},    {"Roll54Inch", 0, 6569, 25002, 7492},
                        {"CustomMediaSize", 0, 0, 25008, 7491},       {"PSCustomMediaSize", 0, 0, 25007, 7491}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const PageSizeRow* found = FindPageSizeByName(row.name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->paperNumber, row.paperNumber);
        EXPECT_EQ(found->value, row.value);
        EXPECT_EQ(found->GetKind(), row.kind);
        EXPECT_EQ(found->GetDisplayUnits(), row.units);
    }
}
