// ValueNames: given names first, then the product's texts.
#include "valuenames.h"

#include <facts/values.h>
#include <products/pagesizes.h>

const CXString* ValueNames::FindGiven(DWORD value) const {
    if (const auto given = names_.find(value); given != names_.end()) return &given->second;
    return pattern_ ? pattern_->FindGiven(value) : nullptr;
}

CXString ValueNames::GetDisplayString(DWORD value) const {
    if (const CXString* given = FindGiven(value)) return *given;
    const CXString text = value < facts::value::kFirstOwnValue ? loader_.LoadStringW(value) : CXString();
    return text.IsEmpty() ? ValueId(value).GetDisplayString() : text;
}

CXString ValueNames::GetValueName(DWORD value) const {
    const PageSizeRow* row = FindPageSizeByValue(value);
    if (row && !row->IsCustom()) return CXString::FromUtf8(row->name);
    const CXString shown = GetDisplayString(value);
    WideString name;
    for (const WCHAR unit : shown.AsWideString()) {
        const bool isLetter = (unit >= W('A') && unit <= W('Z')) || (unit >= W('a') && unit <= W('z'));
        if (isLetter || (unit >= W('0') && unit <= W('9'))) name += unit;
    }
    return name.empty() ? ValueId(value).GetValueName() : CXString(name);
}
