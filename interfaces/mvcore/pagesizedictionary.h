// PageSizeDictionary: the Print Schema's page sizes with their data-model values.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvcore/mvcorelibrary.h>
#include <mvutil/cxstring.h>
#include <mvutil/dimension.h>
#include <mvutil/textresources.h>

#include <memory>
#include <vector>

class PageSizeDictionary {
public:
    // Loads mvcoreC0 when it is not in the process yet; throws ExceptionDelayLoadDllLoadFailure when it cannot be
    // found. The entries have no names for people, so the loader of the product's texts is not used; it may be null.
    explicit PageSizeDictionary(ProductStringLoader*) : dictionary_(GetMvCoreLibrary()->CreatePageSizeDictionary()) {}

    // Entries of that size (equal in whole millimetres), or of that kind, in the dictionary's order. They belong to it.
    std::vector<const PageSizeDictionaryEntry*> GetPageSizeEntryRefs(const Dimension& width,
                                                                     const Dimension& length) const {
        return Collect([&](std::size_t from) { return dictionary_->FindSize(width, length, from); });
    }
    std::vector<const PageSizeDictionaryEntry*> GetPageSizeEntryRefs(PageSizeTypeEnum type) const {
        return Collect([&](std::size_t from) { return dictionary_->FindType(type, from); });
    }

    // A 32-bit value that stands for the user's custom size of that name: 256 in its low half, a number made from the
    // name in its high half.
    static DWORD GetCustomSizeMsId(const CXString& name) {
        return GetMvCoreLibrary()->GetCustomSizeMsId(name.GetString());
    }

private:
    struct Destroy {
        void operator()(MvPageSizeDictionary* dictionary) const noexcept { dictionary->Destroy(); }
    };

    template <class Find>
    std::vector<const PageSizeDictionaryEntry*> Collect(Find find) const {
        std::vector<const PageSizeDictionaryEntry*> entries;
        const std::size_t count = dictionary_->GetCount();
        for (std::size_t index = find(std::size_t()); index < count; index = find(index + 1))
            entries.push_back(dictionary_->GetEntry(index));
        return entries;
    }

    std::unique_ptr<MvPageSizeDictionary, Destroy> dictionary_;
};
