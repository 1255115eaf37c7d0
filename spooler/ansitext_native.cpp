// 8-bit text where it is UTF-8.
#include "spoolertext.h"

std::string NarrowToAnsi(const WideString& text) { return NarrowToUtf8(text); }
