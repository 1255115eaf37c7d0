// The print server's forms: the built-in ones, and those that users and printers added.
#include "builtinforms.h"
#include "infopacker.h"
#include "printerhandles.h"
#include "printerstore.h"
#include "questioncount.h"
#include "spoolerregistry.h"

#include <algorithm>
#include <cstring>

namespace {

// Value of an added form under the forms key.
struct FormValue {
    SIZEL size;
    RECTL imageableArea;
    DWORD order;  // forms are listed in the order in which they were added
    DWORD flags;
};
static_assert(sizeof(FormValue) == 32, "the layout is stored");

struct AddedForm {
    WideString name;
    FormValue value;
};

constexpr std::size_t kLongestFormName = CCHFORMNAME - 1;

bool IsFormSize(const SIZEL& size, const RECTL& area) noexcept {
    return size.cx > 0 && size.cy > 0 && area.left >= 0 && area.top >= 0 && area.left < area.right &&
           area.top < area.bottom && area.right <= size.cx && area.bottom <= size.cy;
}

bool IsFormFlag(DWORD flags) noexcept { return flags == FORM_USER || flags == FORM_PRINTER; }

// Values that are no forms are passed over.
std::vector<AddedForm> ReadAddedForms() {
    std::vector<AddedForm> forms;
    const UniqueKey key = OpenKey(kFormsKey);
    if (!key) return forms;
    for (const WideString& name : ListValues(key)) {
        const auto value = ReadValue(key, name.c_str());
        AddedForm form{name, {}};
        if (!value || value->bytes.size() != sizeof form.value) continue;
        std::memcpy(&form.value, value->bytes.data(), sizeof form.value);
        if (IsFormSize(form.value.size, form.value.imageableArea) && IsFormFlag(form.value.flags))
            forms.push_back(form);
    }
    std::stable_sort(forms.begin(), forms.end(),
                     [](const AddedForm& a, const AddedForm& b) { return a.value.order < b.value.order; });
    return forms;
}

bool IsBuiltIn(const WideString& name) {
    const auto& forms = GetBuiltInForms();
    return std::any_of(forms.begin(), forms.end(),
                       [&](const BuiltInForm& form) { return EqualRegistryNames(form.name, name); });
}

}  // namespace

BOOL WINAPI EnumFormsW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed, LPDWORD returned) {
    CountQuestion(SpoolerQuestion::Forms);
    return AnswerGuarded([&] {
        Require(needed && returned, ERROR_INVALID_PARAMETER);
        *returned = 0;
        GetNameBehind(printer);
        Require(level == 1, ERROR_INVALID_LEVEL);
        InfoPacker<FORM_INFO_1W> packer;
        for (const BuiltInForm& form : GetBuiltInForms()) {
            packer.AddItem({FORM_BUILTIN, nullptr, {form.width, form.length}, {0, 0, form.width, form.length}});
            packer.AddText(&FORM_INFO_1W::pName, form.name);
        }
        for (const AddedForm& form : ReadAddedForms()) {
            packer.AddItem({form.value.flags, nullptr, form.value.size, form.value.imageableArea});
            packer.AddText(&FORM_INFO_1W::pName, form.name);
        }
        packer.Pack(buffer, bytes, needed);
        *returned = packer.GetCount();
    });
}

BOOL WINAPI AddFormW(HANDLE printer, DWORD level, LPBYTE form) {
    return AnswerGuarded([&] {
        GetNameBehind(printer);
        Require(level == 1, ERROR_INVALID_LEVEL);
        Require(form != nullptr, ERROR_INVALID_PARAMETER);
        const auto& info = *reinterpret_cast<const FORM_INFO_1W*>(form);
        const WideString name = TextOrEmpty(info.pName);
        Require(!name.empty() && name.size() <= kLongestFormName, ERROR_INVALID_FORM_NAME);
        Require(IsFormFlag(info.Flags), ERROR_INVALID_PARAMETER);
        Require(IsFormSize(info.Size, info.ImageableArea), ERROR_INVALID_FORM_SIZE);
        const UniqueKey key = CreateKey(kFormsKey);
        Require(!IsBuiltIn(name) && !ReadValue(key, name.c_str()), ERROR_FILE_EXISTS);
        const auto added = ReadAddedForms();
        const FormValue value{info.Size, info.ImageableArea, added.empty() ? 1 : added.back().value.order + 1,
                              info.Flags};
        WriteValue(key, name.c_str(), REG_BINARY, &value, sizeof value);
    });
}

BOOL WINAPI DeleteFormW(HANDLE printer, LPWSTR name) {
    return AnswerGuarded([&] {
        GetNameBehind(printer);
        Require(name && *name, ERROR_INVALID_FORM_NAME);
        Require(!IsBuiltIn(name), ERROR_INVALID_PARAMETER);
        const LSTATUS status = RegDeleteValueW(CreateKey(kFormsKey).Get(), name);
        Require(status == ERROR_SUCCESS, ERROR_INVALID_FORM_NAME);
    });
}
