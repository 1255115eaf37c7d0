// Page sizes, forms, custom sizes and trays.
#include "testmodel.h"

#include <support/userconventions.h>
#include <support/userpapers.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/formatting.h>
#include <mvutil/user.h>

#include <gtest/gtest.h>

#include <map>
#include <set>

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
    for (const auto& [width, isThere] :
         {std::pair<LONG, bool>{209951, true}, {209950, false}, {210050, true}, {210051, false}})
        EXPECT_EQ(media.AnyExist(Micrometres(width), Micrometres(297000)), isThere) << width;
    EXPECT_FALSE(media.AnyExist(Micrometres(297000), Micrometres(210000)));
    for (const bool isEnglish : {false, true}) {
        const UserConventions user(isEnglish);
        for (const DWORD units : {7490u, 7491u, 7492u}) {
            const PageSize& form =
                media.AddNewMsForm(Micrometres(1000), Micrometres(2000), ValueId(units), true, 1, W("F"));
            EXPECT_EQ(form.GetUnits(), units == 7490 ? (isEnglish ? 7492u : 7491u) : units);
        }
    }
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

// The user's sizes by name: MS id and value.
std::map<CXString, std::pair<WORD, DWORD>> ListUserSizes() {
    TestModel model;
    std::vector<PageSize*> sizes;
    model.GetIntegration().GetMediaHandler().GetPageSizes(sizes);
    std::map<CXString, std::pair<WORD, DWORD>> listed;
    std::set<WORD> numbers;
    for (auto size = sizes.begin() + 5; size != sizes.end(); ++size) {
        const WORD number = (*size)->GetMsId();
        EXPECT_TRUE(number >= 10000 && number <= 32767 && numbers.insert(number).second) << number;
        EXPECT_EQ((*size)->GetUnits() == 7491, (*size)->GetDisplayString() == W("Poster"));
        listed[(*size)->GetDisplayString()] = {number, (*size)->GetValueId().GetValueEnum()};
    }
    return listed;
}

TEST_F(MediaTest, TheUsersCustomSizesKeepTheirNumbersWhateverOthersCome) {
    AddCustomSize(W("Poster"), 300000, 900000);
    AddCustomSize(W("Beyond"), 0x7FFFFFFF, 200000);
    AddCustomSize(W("Flat"), 100000, 0);
    const auto poster = ListUserSizes()[W("Poster")];
    const auto numberOf = [](const CXString& name) {
        return (PageSizeDictionary::GetCustomSizeMsId(name) >> 16) % 22768;
    };
    CXString first;  // comes before the poster and would have its number
    for (int n = 0; first.IsEmpty() || numberOf(first) != numberOf(W("Poster")); ++n) first.Format(W("A%d"), n);
    AddCustomSize(first, 100000, 200000, 0);
    EXPECT_EQ(ListUserSizes()[W("Poster")], poster);
    // A number that no custom size has, and another size's.
    for (const LONG stored : {LONG{0x8001}, LONG{poster.first}}) {
        User::StoreUserDataLongInRegistry(CXString(kCustomSizesKey) + W("\\") + first, kCustomSizeNumberValue, stored);
        EXPECT_EQ(ListUserSizes().size(), 2u);
    }
}

}  // namespace
