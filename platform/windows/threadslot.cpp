// Thread slots over the system's fibre-local storage, which calls back when a thread ends.
#include <windows.h>

#include <new>

#include <perthread.h>

namespace {

// What lies in the storage: the object, and who destroys it.
struct Occupant {
    void* object;
    ThreadSlot::Destroy destroy;
};

void WINAPI Vacate(void* data) {
    const std::unique_ptr<Occupant> occupant(static_cast<Occupant*>(data));
    if (occupant && occupant->object) occupant->destroy(occupant->object);
}

}  // namespace

ThreadSlot::ThreadSlot(Destroy destroy) : key_(FlsAlloc(&Vacate)), destroy_(destroy) {
    if (key_ == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
}

ThreadSlot::~ThreadSlot() { FlsFree(key_); }

void* ThreadSlot::Get() const noexcept {
    const auto* occupant = static_cast<const Occupant*>(FlsGetValue(key_));
    return occupant ? occupant->object : nullptr;
}

void ThreadSlot::Set(void* object) {
    auto occupant = std::make_unique<Occupant>(Occupant{nullptr, destroy_});
    if (!FlsSetValue(key_, occupant.get())) throw std::bad_alloc();
    occupant.release()->object = object;
}
