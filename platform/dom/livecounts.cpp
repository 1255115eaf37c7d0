// The count of the DOM's live objects.
#include "domobject.h"

namespace dom {
constinit SpreadCount LiveObject::count_;
}

long LiveDomObjectCount() noexcept { return dom::LiveObject::Count(); }
