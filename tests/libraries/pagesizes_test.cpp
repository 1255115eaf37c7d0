// The page size dictionary, across the boundary of mvcoreC0.
#include <dlldelayloader.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/cxstring.h>

#include <gtest/gtest.h>

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
        {209500, 297000, Dimension::Micrometres, ""},  // a half rounds down
        {2159, 2794, Dimension::TenthsOfMillimetre, "NorthAmericaLetter NorthAmericaNote"},
        {114300, 263525, Dimension::Micrometres, "NorthAmericaNumber11Envelope"},
        {1143, 2635, Dimension::TenthsOfMillimetre, "NorthAmericaNumber11Envelope"},  // as a paper database keeps it
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

}  // namespace
