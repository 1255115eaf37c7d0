// The count of the DOM's live objects.
#include "domobject.h"

namespace dom {
std::atomic<long> LiveObject::count_ = 0;
}

long LiveDomObjectCount() noexcept { return dom::LiveObject::Count(); }
