// Texts by number: the product's own, and those of the utility library.
#pragma once

#include <mvutil/cxstring.h>

class MVUTIL_API TextResourceLoader {
public:
    // Makes the printer's product the one whose texts this thread loads, until the next call. The flag asks for the
    // texts to be read again even when the product is the same. A printer without a readable product leaves the
    // thread without product texts. Never throws.
    static void Initialize(HANDLE printer, bool reload);
    static CXString LoadStringW(DWORD id);  // a text of the utility library; empty when there is none
};

// The product's texts, for the product last given to TextResourceLoader::Initialize on the calling thread.
class MVUTIL_API ProductStringLoader {
public:
    explicit ProductStringLoader(DWORD controllerFamily) : controllerFamily_(controllerFamily) {}
    ProductStringLoader(DWORD controllerFamily, const CXString& modelName)
        : controllerFamily_(controllerFamily), modelName_(modelName) {}

    CXString LoadStringW(DWORD id) const;  // empty when the product has no such text
    // The product's name for a media type or tray of that data-model value; empty when it lists none.
    CXString GetStringForValue(DWORD valueId) const;
    DWORD GetControllerFamily() const noexcept { return controllerFamily_; }
    const CXString& GetModelName() const noexcept { return modelName_; }

private:
    DWORD controllerFamily_;
    CXString modelName_;
};
