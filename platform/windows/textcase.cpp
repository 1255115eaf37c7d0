// The registry's rule of case, as the system has it.
#include <textcodec.h>
#include <windows.h>

int CompareRegistryNames(WideStringView left, WideStringView right) noexcept {
    if (left.empty() || right.empty()) return static_cast<int>(left.size()) - static_cast<int>(right.size());
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) -
           CSTR_EQUAL;
}

void LowerRegistryName(WideString& text) noexcept {
    if (text.empty()) return;
    const int length = static_cast<int>(text.size());
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, text.data(), length, text.data(), length, nullptr, nullptr,
                  0);
}
