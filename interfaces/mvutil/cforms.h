// CForms: the printer's forms database.
#pragma once

#include <mvutil/cxstring.h>

#include <vector>

// One form, 164 bytes; its bytes enter the forms database CRC.
struct _MVN_FORM_INFO {
    WORD formIndex;  // number in the database, from 1; a paper number of the forms' range
    WORD reserved1;
    DWORD isUserForm;  // 1 for a form that a user made, 0 for one of the system's or the printer's
    LONG width;        // thousandths of a millimetre
    LONG length;       // thousandths of a millimetre
    LONG imageableLeft, imageableTop, imageableRight, imageableBottom;
    WCHAR name[64];  // NUL-terminated, cut to 63 characters
    DWORD flags;     // of FORM_INFO_1: 0 user, 1 built in, 2 printer
};
static_assert(sizeof(_MVN_FORM_INFO) == 164, "the forms database CRC is over 164 bytes a form");

class MVUTIL_API CForms {
public:
    // Reads the forms at once; none when the spooler does not answer. The flag includes forms wider than long. Forms
    // for which the forms' range of paper numbers has no room are left out.
    CForms(HANDLE printer, bool allForms);

    const std::vector<_MVN_FORM_INFO>& GetForms() const noexcept { return forms_; }
    const _MVN_FORM_INFO* GetFormW(const CXString& name) const;  // without regard to case; null when absent
    const _MVN_FORM_INFO* GetFormW(WORD index) const;            // by number; null when absent

private:
    std::vector<_MVN_FORM_INFO> forms_;
};
