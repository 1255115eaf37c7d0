// CForms: the forms that the spooler knows for a printer.
#include <mvutil/cforms.h>

#include <facts/papernumbers.h>
#include <mvutil/printer.h>

#include "operationmemory.h"

#include <namefield.h>
#include <sizedread.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <algorithm>

namespace {

// The number of the form at that place, from 0: the next one, but none has the custom paper's.
constexpr std::size_t NumberAt(std::size_t place) {
    const std::size_t number = place + 1;
    return number < DMPAPER_USER ? number : number + 1;
}

_MVN_FORM_INFO MakeForm(const FORM_INFO_1W& source, const CXString& name, WORD number) {
    _MVN_FORM_INFO form = {};
    form.formIndex = number;
    form.isUserForm = source.Flags == FORM_USER ? 1 : 0;
    form.width = source.Size.cx;
    form.length = source.Size.cy;
    form.imageableLeft = source.ImageableArea.left;
    form.imageableTop = source.ImageableArea.top;
    form.imageableRight = source.ImageableArea.right;
    form.imageableBottom = source.ImageableArea.bottom;
    form.flags = source.Flags;
    SetNameField(form.name, name.AsWideString());
    return form;
}

// All that have a number; none when the spooler does not answer.
std::vector<_MVN_FORM_INFO> AskForForms(HANDLE printer) {
    std::vector<_MVN_FORM_INFO> list;
    SizedBytes records;
    DWORD count = 0;
    const DWORD error = records.ReadWithLastError(
        [&](BYTE* buffer, DWORD size, DWORD* needed) { return EnumFormsW(printer, 1, buffer, size, needed, &count); });
    if (error != ERROR_SUCCESS) return list;
    const FORM_INFO_1W* const forms = records.As<FORM_INFO_1W>();
    const std::size_t listed = records.CountRecords<FORM_INFO_1W>(count);
    list.reserve(listed);
    for (std::size_t index = 0; index < listed && NumberAt(index) <= facts::kLastFormPaper; ++index) {
        const CXString name = records.Text<CXString>(forms[index].pName);
        list.push_back(MakeForm(forms[index], name, static_cast<WORD>(NumberAt(index))));
    }
    return list;
}

std::vector<_MVN_FORM_INFO> ReadForms(HANDLE printer) {
    OperationMemory* const memory = GetOperationMemory();
    if (!memory) return AskForForms(printer);
    std::vector<_MVN_FORM_INFO>& forms = memory->forms[printer];
    if (forms.empty()) forms = AskForForms(printer);
    return forms;
}

}  // namespace

CForms::CForms(HANDLE printer, bool allForms) {
    if (!Printer::IsValidHandle(printer)) return;
    forms_ = ReadForms(printer);
    if (!allForms) std::erase_if(forms_, [](const _MVN_FORM_INFO& form) { return form.width > form.length; });
}

const _MVN_FORM_INFO* CForms::GetFormW(const CXString& name) const {
    const auto found = std::find_if(forms_.begin(), forms_.end(),
                                    [&](const _MVN_FORM_INFO& form) { return name.CompareNoCase(form.name) == 0; });
    return found == forms_.end() ? nullptr : &*found;
}

const _MVN_FORM_INFO* CForms::GetFormW(WORD index) const {
    const auto found =
        std::find_if(forms_.begin(), forms_.end(), [&](const _MVN_FORM_INFO& form) { return form.formIndex == index; });
    return found == forms_.end() ? nullptr : &*found;
}
