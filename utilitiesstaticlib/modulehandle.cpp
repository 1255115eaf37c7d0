// The component's own module handle, recorded by its entry point.
#include <modulehandle.h>

#include <atomic>

namespace {

constinit std::atomic<HMODULE> componentModule{nullptr};

}  // namespace

HMODULE GetComponentModule() noexcept { return componentModule; }

void SetComponentModule(HMODULE module) noexcept { componentModule = module; }
