// How often the registry was asked: where it is another process's, each request is a call into it.
#pragma once

#include <cstddef>

// Keys opened or made, values read, written or deleted and names listed by all threads of the process since it began,
// whether they succeeded or not. Natively; 0 on Windows, which counts none.
std::size_t GetRegistryRequestCount() noexcept;
