// Thread slots over the system's thread keys.
#include <pthread.h>

#include <new>

#include <perthread.h>

ThreadSlot::ThreadSlot(Destroy destroy) : destroy_(destroy) {
    pthread_key_t key;
    if (pthread_key_create(&key, destroy_) != 0) throw std::bad_alloc();
    key_ = key;
}

// The calling thread has no end to come; others have ended.
ThreadSlot::~ThreadSlot() {
    void* const own = Get();
    pthread_key_delete(static_cast<pthread_key_t>(key_));
    if (own) destroy_(own);
}

void* ThreadSlot::Get() const noexcept { return pthread_getspecific(static_cast<pthread_key_t>(key_)); }

void ThreadSlot::Set(void* object) {
    if (pthread_setspecific(static_cast<pthread_key_t>(key_), object) != 0) throw std::bad_alloc();
}
