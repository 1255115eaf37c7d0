// The page size dictionary, across the boundary of mvcoreC0.
#include <dlldelayloader.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/cxstring.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

std::string NamesOf(const std::vector<const PageSizeDictionaryEntry*>& entries) {
    std::string names;
    for (const PageSizeDictionaryEntry* entry : entries)
        names += (names.empty() ? "" : " ") + CXString(entry->GetMsPageMediaSizeOptionName()).ToUtf8();
    return names;
}

TEST(PageSizeDictionary, IsLoadedByItsFirstUse) {
    EXPECT_EQ(GetModuleHandleA("mvcoreC0.dll"), nullptr);
    AttachModule(GetModuleHandleA(nullptr));
    PageSizeDictionary dictionary(nullptr);
    EXPECT_NE(GetModuleHandleA("mvcoreC0.dll"), nullptr);
}

TEST(PageSizeDictionary, FindsSizesThatAreEqualInWholeMillimetres) {
    const PageSizeDictionary dictionary(nullptr);
    struct Row {
        double width, length;
        int unit;
        const char* names;
    };
    const Row rows[] = {
        {210000, 297000, Dimension::Micrometres, "ISOA4"},
        {209501, 297499, Dimension::Micrometres, "ISOA4"},
        {209500, 297000, Dimension::Micrometres, ""},  // a half rounds down
        {2159, 2794, Dimension::TenthsOfMillimetre, "NorthAmericaLetter NorthAmericaNote"},
        {114300, 263525, Dimension::Micrometres, "NorthAmericaNumber11Envelope"},
        {1143, 2635, Dimension::TenthsOfMillimetre, "NorthAmericaNumber11Envelope"},  // as a paper database keeps it
        {8.5, 11, Dimension::Inches, "NorthAmericaLetter NorthAmericaNote"},
        {297000, 210000, Dimension::Micrometres, "ISOA4Rotated"},
        {0, 0, Dimension::Micrometres, ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(
            NamesOf(dictionary.GetPageSizeEntryRefs(Dimension(row.width, row.unit), Dimension(row.length, row.unit))),
            row.names)
            << row.width << " x " << row.length;
    }
}

TEST(PageSizeDictionary, HoldsEveryKeywordOnceByKind) {
    const PageSizeDictionary dictionary(nullptr);
    std::set<WideString> names;
    std::set<DWORD> values;
    for (const PageSizeTypeEnum type : {PageSizeTypeEnum::Common, PageSizeTypeEnum::Other}) {
        for (const PageSizeDictionaryEntry* entry : dictionary.GetPageSizeEntryRefs(type)) {
            EXPECT_EQ(entry->GetMsId() != 0, type == PageSizeTypeEnum::Common);
            EXPECT_TRUE(entry->IsPredefinedMsOptionName());
            values.insert(entry->GetValueId().GetValueEnum());
            names.insert(entry->GetMsPageMediaSizeOptionName());
        }
    }
    EXPECT_EQ(names.size(), 170u);
    EXPECT_EQ(values.size(), 170u);
    EXPECT_EQ(NamesOf(dictionary.GetPageSizeEntryRefs(PageSizeTypeEnum::Custom)), "CustomMediaSize");
    EXPECT_EQ(NamesOf(dictionary.GetPageSizeEntryRefs(PageSizeTypeEnum::PostScriptCustom)), "PSCustomMediaSize");
}

TEST(PageSizeDictionary, ACustomSizesNumberIs256BelowANumberOfItsName) {
    const DWORD card = PageSizeDictionary::GetCustomSizeMsId(W("Card"));
    EXPECT_EQ(card & 0xFFFF, 256u);
    EXPECT_EQ(card, PageSizeDictionary::GetCustomSizeMsId(W("Card")));
    EXPECT_NE(card, PageSizeDictionary::GetCustomSizeMsId(W("card")));
}

}  // namespace
