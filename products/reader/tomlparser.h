// The TOML parser. Some files that are merely wrong fail its assertions, which would end the process, or which the
// compiler would be asked to take for granted: they are left out of every build, and the parser then reports what is
// wrong.
#pragma once

#undef NDEBUG
#define TOML_ASSERT(expr) static_assert(true)
#include <toml++/toml.h>
