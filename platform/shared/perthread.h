// PerThread: an object of each thread's own. Used instead of thread_local where the object has a destructor: mingw
// frees the storage of such objects before it runs their destructors.
#pragma once

#include <memory>

// One pointer a thread; the function destroys what it points to when the thread ends, or the slot.
class ThreadSlot {
public:
    using Destroy = void (*)(void* object);

    explicit ThreadSlot(Destroy destroy);  // throws std::bad_alloc when the process has no slot left
    ~ThreadSlot();
    ThreadSlot(const ThreadSlot&) = delete;
    ThreadSlot& operator=(const ThreadSlot&) = delete;
    void* Get() const noexcept;
    void Set(void* object);  // throws std::bad_alloc; the slot was empty

private:
    unsigned long key_;
    Destroy destroy_;
};

template <class T>
class PerThread {
public:
    // The calling thread's object, made by its first call.
    T& Get() {
        if (void* object = slot_.Get()) return *static_cast<T*>(object);
        auto object = std::make_unique<T>();
        slot_.Set(object.get());
        return *object.release();
    }

private:
    static void Destroy(void* object) { std::default_delete<T>()(static_cast<T*>(object)); }

    ThreadSlot slot_{&PerThread::Destroy};
};
