// The TOML parser's code, compiled here alone.
#define TOML_IMPLEMENTATION
#include "tomlparser.h"
