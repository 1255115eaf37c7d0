// The table of built-in forms.
#include "builtinforms.h"

#include <products/pagesizes.h>

#include <stdexcept>

namespace {

struct ExtraForm {
    WORD paperNumber;
    const char* name;
    LONG width, length;
};

// Paper numbers that have no Print Schema page size of their own. The two reserved ones are wider than long, so that
// nobody takes them for paper.
// clang-format off
constexpr ExtraForm kExtraForms[] = {
    {  2, "Letter Small",            215900, 279400},
    {  4, "Ledger",                  431800, 279400},
    { 10, "A4 Small",                210000, 297000},
    { 35, "Envelope B6",             176000, 125000},
    { 39, "US Std Fanfold",          377825, 279400},
    { 46, "15x11",                   381000, 279400},
    { 48, "Reserved48",                 200,    100},
    { 49, "Reserved49",                 200,    100},
    { 54, "Letter Transverse",       215900, 279400},
    { 55, "A4 Transverse",           210000, 297000},
    { 56, "Letter Extra Transverse", 241300, 304800},
    { 61, "A5 Transverse",           148000, 210000},
    { 62, "B5 (JIS) Transverse",     182000, 257000},
    { 67, "A3 Transverse",           297000, 420000},
    { 68, "A3 Extra Transverse",     322000, 445000},
    { 90, "12x11",                   304800, 279400},
    {108, "PRC 32K (Big) Rotated",   151000,  97000},
};
// clang-format on
constexpr WORD kLastPaperNumber = 118;  // DMPAPER_LAST

BuiltInForm MakeForm(WORD paperNumber) {
    if (const PageSizeRow* row = FindPageSizeByPaperNumber(paperNumber))
        return {WidenUtf8(row->displayName), row->width, row->length};
    for (const ExtraForm& form : kExtraForms)
        if (form.paperNumber == paperNumber) return {WidenUtf8(form.name), form.width, form.length};
    throw std::logic_error("a paper number without a form");
}

}  // namespace

const std::vector<BuiltInForm>& GetBuiltInForms() {
    static const std::vector<BuiltInForm> forms = [] {
        std::vector<BuiltInForm> made;
        for (WORD paperNumber = 1; paperNumber <= kLastPaperNumber; ++paperNumber)
            made.push_back(MakeForm(paperNumber));
        return made;
    }();
    return forms;
}
