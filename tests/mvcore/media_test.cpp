// Page sizes, forms, custom sizes and trays.
#include "testmodel.h"

#include <mvcore/mvcorelibrary.h>
#include <mvutil/customsizes.h>

#include <uniquehandle.h>

#include <gtest/gtest.h>

#include <set>

namespace {

Dimension Micrometres(LONG length) { return Dimension(length, Dimension::Micrometres); }

class MediaTest : public testing::Test {
protected:
    TestStore store_;
};

TEST_F(MediaTest, PageSizesAreFoundByValueAndSize) {
    TestModel model;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    struct Case {
        DWORD value;
        PageSizeTypeEnum type;
        LONG width, length;
        DWORD units;
        WORD msId;
        const WCHAR* name;
        const WCHAR* keyword;
    };
    const Case cases[] = {
        {6430, PageSizeTypeEnum::Common, 215900, 279400, 7492, 1, W("Letter"), W("NorthAmericaLetter")},
        {6436, PageSizeTypeEnum::Common, 210000, 297000, 7491, 9, W("A4"), W("ISOA4")},
        {6700, PageSizeTypeEnum::DriverCustom, 330200, 487680, 7491, 400, W("Press Sheet 330 x 487"),
         W("PressSheet330x487")},
    };
    for (const Case& c : cases) {
        const PageSize* size = media.GetPageSize(ValueId(c.value));
        ASSERT_TRUE(size) << c.value;
        EXPECT_EQ(size->GetPageSizeType(), c.type);
        EXPECT_EQ(size->GetWidthInMicrometres(), c.width);
        EXPECT_EQ(size->GetLengthInMicrometres(), c.length);
        EXPECT_EQ(size->GetUnits(), c.units);
        EXPECT_EQ(size->GetMsId(), c.msId);
        EXPECT_EQ(size->GetDisplayString(), c.name);
        EXPECT_EQ(size->GetValueId().GetDisplayString(), c.name);
        EXPECT_EQ(size->GetValueId().GetValueName(), c.keyword);
        EXPECT_TRUE(media.AnyExist(Micrometres(c.width + 40), Micrometres(c.length))) << "the same tenth";
    }
    std::vector<PageSize*> sizes;
    media.GetPageSizes(Micrometres(279400), Micrometres(431800), sizes);
    EXPECT_EQ(sizes.size(), 2u) << "Tabloid and 11 x 17";
    media.GetPageSizes(sizes);
    EXPECT_EQ(sizes.size(), 5u);
    EXPECT_FALSE(media.GetPageSize(ValueId(DataModelIds::kPageSizeCustom)));
    EXPECT_FALSE(media.AnyExist(Micrometres(297000), Micrometres(210000)));
    EXPECT_EQ(media.GetMsTrayId(ValueId(7149)), 3);
    EXPECT_EQ(media.GetMsTrayId(ValueId(7163)), 0);
    media.SetMsTrayId(ValueId(7163), 10);
    EXPECT_EQ(media.GetMsTrayId(ValueId(7163)), 10);
}

TEST_F(MediaTest, FormsBecomePageSizes) {
    TestModel model;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    std::vector<ValueId> added;
    for (WORD number = 1; number <= 2000; ++number) {
        CXString name;
        name.Format(W("Form %u"), number);
        PageSize& size = media.AddNewMsForm(Micrometres(60000 + number * 100), Micrometres(300000), ValueId(7490),
                                            number % 2 != 0, number, name);
        EXPECT_EQ(size.GetPageSizeType(), number % 2 ? PageSizeTypeEnum::UserForm : PageSizeTypeEnum::DriverCustom);
        EXPECT_EQ(size.GetMsId(), number);
        EXPECT_EQ(size.GetMsFormName(), name);
        EXPECT_TRUE(size.GetUnits() == 7491 || size.GetUnits() == 7492);
        added.push_back(size.GetValueId());
    }
    model.GetIntegration().AddOptionValues(FeatureId(168), added, 1);
    EXPECT_EQ(media.GetPageSize(added.front())->GetDisplayString(), W("Form 1")) << "sizes keep their place";
    PageSize& again = media.AddNewMsForm(Micrometres(60100), Micrometres(300000), ValueId(7492), true, 1, W("Again"));
    EXPECT_NE(again.GetValueId(), added.front());
    EXPECT_EQ(again.GetUnits(), 7492u);
    std::vector<PageSize*> sizes;
    media.GetPageSizes(Micrometres(60100), Micrometres(300000), sizes);
    EXPECT_EQ(sizes, (std::vector<PageSize*>{media.GetPageSize(added.front()), &again}));
    EXPECT_TRUE(model.SetOption(FeatureId(168), added.back().GetValueEnum()));
}

void AddCustomSize(const CXString& name, DWORD width, DWORD length, DWORD isMetric) {
    UniqueKey key;
    const CXString path = CXString(W("Software\\Morvane\\Printer Driver\\")) + kCustomSizesKey + W("\\") + name;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Put(), nullptr), 0);
    for (const auto& [value, number] : {std::pair{kCustomSizeWidthValue, width},
                                        {kCustomSizeLengthValue, length},
                                        {kCustomSizeIsMetricValue, isMetric}}) {
        RegSetValueExW(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    }
}

TEST_F(MediaTest, TheUsersCustomSizesAreOffered) {
    AddCustomSize(W("Poster"), 300000, 900000, 1);
    AddCustomSize(W("Flyer"), 100000, 200000, 0);
    AddCustomSize(W("Nothing"), 0, 200000, 1);
    AddCustomSize(W("Beyond"), 0x7FFFFFFF, 200000, 1);
    TestModel model, again;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    std::vector<ValueId> values;
    model.GetIntegration().ListOptionValues(FeatureId(168), values);
    ASSERT_EQ(values.size(), 7u);
    std::set<WORD> numbers;
    for (const auto& [name, width, units] : {std::tuple{W("Poster"), 300000, 7491u}, {W("Flyer"), 100000, 7492u}}) {
        std::vector<PageSize*> sizes;
        media.GetPageSizes(Micrometres(width), Micrometres(width == 300000 ? 900000 : 200000), sizes);
        ASSERT_EQ(sizes.size(), 1u);
        EXPECT_EQ(sizes[0]->GetDisplayString(), name);
        EXPECT_EQ(sizes[0]->GetPageSizeType(), PageSizeTypeEnum::DriverCustom);
        EXPECT_EQ(sizes[0]->GetUnits(), units);
        EXPECT_GE(sizes[0]->GetMsId(), 0x8000);
        numbers.insert(sizes[0]->GetMsId());
        const PageSize* same = again.GetIntegration().GetMediaHandler().GetPageSize(sizes[0]->GetValueId());
        EXPECT_TRUE(same && same->GetDisplayString() == name) << "every model gives it the same value";
    }
    EXPECT_EQ(numbers.size(), 2u);
    EXPECT_FALSE(media.AnyExist(Micrometres(0), Micrometres(200000)));
}

}  // namespace
