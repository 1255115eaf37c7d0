// 8-bit text in the system's code page.
#include "spoolererror.h"
#include "spoolertext.h"

std::string NarrowToAnsi(const WideString& text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    BOOL replaced = FALSE;
    const int bytes = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, &replaced);
    Require(bytes > 0 && !replaced, ERROR_INVALID_DATA);
    std::string narrow(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}
