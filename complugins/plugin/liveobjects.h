// What keeps the plug-in loaded: its objects and the locks on it, counted together.
#pragma once

#include <atomic>

inline std::atomic<long> liveObjects = 0;
