// Page sizes, forms, custom sizes and trays.
#include "testmodel.h"

#include <support/userpapers.h>

#include <gtest/gtest.h>

namespace {

class MediaTest : public testing::Test {
protected:
    TestStore store_;
};

TEST_F(MediaTest, PageSizesAreFoundByTheirSizeInTenths) {
    TestModel model;
    MediaHandler& media = model.GetIntegration().GetMediaHandler();
    std::vector<PageSize*> sizes;
    media.GetPageSizes(Micrometres(279400), Micrometres(431800), sizes);
    EXPECT_EQ(sizes.size(), 2u) << "Tabloid and 11 x 17";
    EXPECT_TRUE(media.AnyExist(Micrometres(210040), Micrometres(297000)));
    EXPECT_FALSE(media.AnyExist(Micrometres(297000), Micrometres(210000)));
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
