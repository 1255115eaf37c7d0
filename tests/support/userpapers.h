// Forms and custom sizes, added as the user adds them.
#pragma once

#include <uniquehandle.h>

#include <mvutil/cachelocation.h>
#include <mvutil/customsizes.h>
#include <mvutil/cxstring.h>

// Before winspool.h, which needs it.
#include <windows.h>

#include <winspool.h>

#include <gtest/gtest.h>

#include <utility>

// Sizes are in thousandths of a millimetre.
inline void AddForm(HANDLE printer, const CXString& name, LONG width, LONG length, DWORD flags = FORM_USER) {
    FORM_INFO_1W form{};
    form.Flags = flags;
    form.pName = const_cast<WCHAR*>(name.GetString());
    form.Size = {width, length};
    form.ImageableArea = {0, 0, width, length};
    ASSERT_TRUE(AddFormW(printer, 1, reinterpret_cast<LPBYTE>(&form)));
}

// Under HKEY_CURRENT_USER.
inline CXString CustomSizePath(const CXString& name) {
    return CXString(kDriverFamilyKey) + W("\\") + kCustomSizesKey + W("\\") + name;
}

inline void AddCustomSize(const CXString& name, LONG width, LONG length, LONG isMetric = 1) {
    UniqueKey key;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, CustomSizePath(name), 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(), nullptr),
        ERROR_SUCCESS);
    for (const auto& [value, number] : {std::pair{kCustomSizeWidthValue, width},
                                        {kCustomSizeLengthValue, length},
                                        {kCustomSizeIsMetricValue, isMetric}})
        RegSetValueExW(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}
