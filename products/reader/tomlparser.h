// The TOML parser. Some files that are merely wrong fail its assertions, which would end the process, or which the
// compiler would be asked to take for granted: they are left out of every build, and the parser then reports what is
// wrong.
#pragma once

// tomlparser.cpp alone compiles it.
#undef NDEBUG
#define TOML_HEADER_ONLY 0
#define TOML_ASSERT(expr) static_assert(true)
#include <toml++/toml.h>
