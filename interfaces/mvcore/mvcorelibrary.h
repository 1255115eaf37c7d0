// What crosses the boundary of mvcoreC0: abstract classes, handed out by its root object.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvcore/mvcoreapi.h>
#include <mvutil/cxstring.h>
#include <mvutil/dimension.h>

#include <cstddef>

class MvDataModel;
class MvDevice;
class ProductData;
class ProductStringLoader;

class PageSizeDictionaryEntry {
public:
    // Name of the PageMediaSize option. Texts belong to the entry.
    virtual const WCHAR* GetMsPageMediaSizeOptionName() const = 0;
    virtual bool IsPredefinedMsOptionName() const = 0;  // a Print Schema keyword, not a private name
    virtual ValueId GetValueId() const = 0;
    virtual PageSizeTypeEnum GetPageSizeType() const = 0;

protected:
    ~PageSizeDictionaryEntry() = default;
};

// Never changes; any number of threads may read it. The entries live as long as the dictionary.
class MvPageSizeDictionary {
public:
    virtual void Destroy() noexcept = 0;
    virtual std::size_t GetCount() const = 0;
    virtual const PageSizeDictionaryEntry* GetEntry(std::size_t index) const = 0;
    // The first index, from the given one on, of an entry of that size (equal in whole millimetres, the entry's taken
    // as it is or as a paper database keeps it, in tenths) or of that kind; GetCount() when there is none.
    virtual std::size_t FindSize(const Dimension& width, const Dimension& length, std::size_t from) const = 0;
    virtual std::size_t FindType(PageSizeTypeEnum type, std::size_t from) const = 0;

protected:
    ~MvPageSizeDictionary() = default;
};

class MvCoreLibrary {
public:
    // A new dictionary, which the caller destroys.
    virtual MvPageSizeDictionary* CreatePageSizeDictionary() = 0;
    // Its low half is 256, the paper number of every custom size; its high half comes from the CRC-32 of the name (the
    // two halves of the CRC exclusive-ored), so that it distinguishes names and is the same in every process.
    virtual DWORD GetCustomSizeMsId(const WCHAR* name) = 0;
    // What DataModelManager and DeviceInterface stand on; the caller destroys them.
    virtual MvDataModel* CreateDataModel(int kind, const WCHAR* driverDataFile, const ProductStringLoader& loader,
                                         bool populateAtOnce, bool withUserSizes) = 0;
    virtual MvDevice* CreateDevice(const WCHAR* printerName, const ProductData* product) = 0;

protected:
    ~MvCoreLibrary() = default;
};
