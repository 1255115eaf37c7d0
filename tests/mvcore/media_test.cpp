// Page sizes, forms, custom sizes and trays.
#include "testmodel.h"

#include <support/userpapers.h>

#include <gtest/gtest.h>

namespace {

class MediaTest : public testing::Test {
protected:
    TestStore store_;
};

TEST_F(MediaTest, PageSizesAreFoundByValueAndSize) {
    TestModel model;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    const struct {
        DWORD value;
        PageSizeTypeEnum type;
        LONG width, length;
        DWORD units;
        WORD msId;
        const WCHAR *name, *form, *keyword;
    } cases[] = {
        {6430, PageSizeTypeEnum::Common, 215900, 279400, 7492, 1, W("Letter"), W(""), W("NorthAmericaLetter")},
        {6436, PageSizeTypeEnum::Common, 210000, 297000, 7491, 9, W("A4"), W("Sheet"), W("ISOA4")},
        {6700, PageSizeTypeEnum::DriverCustom, 330200, 487680, 7491, 400, W("Press Sheet 330 x 487"), W(""),
         W("PressSheet330x487")},
    };
    for (const auto& c : cases) {
        const PageSize* size = media.GetPageSize(ValueId(c.value));
        ASSERT_TRUE(size) << c.value;
        EXPECT_EQ(size->GetPageSizeType(), c.type);
        EXPECT_EQ(size->GetWidthInMicrometres(), c.width);
        EXPECT_EQ(size->GetUnits(), c.units);
        EXPECT_EQ(size->GetMsId(), c.msId);
        EXPECT_EQ(size->GetDisplayString(), c.name);
        EXPECT_EQ(size->GetMsFormName(), c.form);
        EXPECT_EQ(size->GetValueId().GetValueName(), c.keyword);
        EXPECT_TRUE(media.AnyExist(Micrometres(c.width + 40), Micrometres(c.length))) << "the same tenth";
    }
    std::vector<PageSize*> sizes;
    media.GetPageSizes(Micrometres(279400), Micrometres(431800), sizes);
    EXPECT_EQ(sizes.size(), 2u) << "Tabloid and 11 x 17";
    EXPECT_FALSE(media.GetPageSize(ValueId(DataModelIds::kPageSizeCustom)));
    EXPECT_FALSE(media.AnyExist(Micrometres(297000), Micrometres(210000)));
    EXPECT_EQ(media.GetMsTrayId(ValueId(7149)), 3);
    EXPECT_EQ(media.GetMsTrayId(ValueId(7163)), 0);
}

TEST_F(MediaTest, FormsBecomePageSizesThatKeepTheirPlace) {
    TestModel model;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    const auto add = [&](WORD number, bool isUserForm) {
        return &media.AddNewMsForm(Micrometres(60000), Micrometres(300000), ValueId(7490), isUserForm, number, W("F"));
    };
    std::vector<PageSize*> added, sizes;
    for (WORD number = 1; number <= 2000; ++number) added.push_back(add(number, number != 1));
    added.push_back(add(1, true));
    media.GetPageSizes(Micrometres(60000), Micrometres(300000), sizes);
    EXPECT_EQ(sizes, added);
    EXPECT_NE(added.back()->GetValueId(), added.front()->GetValueId());
    EXPECT_EQ(added.front()->GetPageSizeType(), PageSizeTypeEnum::DriverCustom);
    EXPECT_EQ(added.back()->GetPageSizeType(), PageSizeTypeEnum::UserForm);
    EXPECT_TRUE(added.back()->GetUnits() == 7491 || added.back()->GetUnits() == 7492);
    model.GetIntegration().AddOptionValues(FeatureId(168), {added.back()->GetValueId()}, 1);
    EXPECT_TRUE(model.SetOption(FeatureId(168), added.back()->GetValueId().GetValueEnum()));
}

TEST_F(MediaTest, TheUsersCustomSizesHaveTheSameValuesInEveryModel) {
    AddCustomSize(W("Poster"), 300000, 900000);
    AddCustomSize(W("Flyer"), 100000, 200000, 0);
    AddCustomSize(W("Beyond"), 0x7FFFFFFF, 200000);
    TestModel model, again;
    std::vector<PageSize*> sizes;
    model.GetIntegration().GetMediaHandler().GetPageSizes(sizes);
    ASSERT_EQ(sizes.size(), 7u);
    EXPECT_NE(sizes[5]->GetMsId(), sizes[6]->GetMsId());
    EXPECT_NE(sizes[5]->GetUnits(), sizes[6]->GetUnits());
    for (const PageSize* size : {sizes[5], sizes[6]}) {
        EXPECT_GE(size->GetMsId(), 0x8000);
        EXPECT_EQ(size->GetUnits() == 7491, size->GetDisplayString() == W("Poster"));
        const PageSize* same = again.GetIntegration().GetMediaHandler().GetPageSize(size->GetValueId());
        EXPECT_TRUE(same && same->GetDisplayString() == size->GetDisplayString());
    }
}

}  // namespace
