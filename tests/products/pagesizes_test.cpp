// The table of page sizes and the catalogue of features.
#include <products/pagesizes.h>
#include <products/reader/featurecatalogue.h>

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
        DWORD value;
        LONG width, length;
        DWORD units;
    };
    const Row rows[] = {{"NorthAmericaLetter", 1, 6430, 215900, 279400, 7492},
                        {"ISOA4", 9, 6436, 210000, 297000, 7491},
                        {"NorthAmerica4x6", 0, 6400, 101600, 152400, 7492},
                        {"ISOSRA3", 0, 6490, 320000, 450000, 7491},
                        {"Roll54Inch", 0, 6569, 1371600, 0, 7492}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const PageSizeRow* found = FindPageSizeByName(row.name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->paperNumber, row.paperNumber);
        EXPECT_EQ(found->value, row.value);
        EXPECT_EQ(found->width, row.width);
        EXPECT_EQ(found->length, row.length);
        EXPECT_EQ(found->GetDisplayUnits(), row.units);
    }
    EXPECT_EQ(FindPageSizeByName("CustomMediaSize")->GetKind(), 25008u);
    EXPECT_EQ(FindPageSizeByName("PSCustomMediaSize")->GetKind(), 25007u);
}

TEST(FeatureCatalogue, LeadsFromTheRootToEachFeature) {
    for (DWORD id = 1; id < 1000; ++id) {
        const CatalogueFeature* feature = FindCatalogueFeature(id);
        if (!feature) continue;
        SCOPED_TRACE(id);
        EXPECT_EQ(feature->id, id);
        const auto path = GetCataloguePath(id);
        EXPECT_EQ(path.back(), id);
        for (std::size_t index = 0; index + 1 < path.size(); ++index)
            EXPECT_EQ(FindCatalogueFeature(path[index])->kind, ProductFeatureKind::List);
    }
    EXPECT_EQ(GetCataloguePath(175), (std::vector<DWORD>{477, 210, 175}));
    EXPECT_EQ(FindCatalogueFeature(1), nullptr);
    EXPECT_TRUE(GetCataloguePath(99999).empty());
}
