// The root object of mvcoreC0 and the library's one export.
#include <mvcore/mvcorelibrary.h>

#include <mvutil/crc32.h>
#include <mvutil/textresources.h>

#include "datamodel.h"
#include "device.h"
#include "schemapagesizes.h"

namespace {

class CoreLibrary final : public MvCoreLibrary {
public:
    MvPageSizeDictionary* CreatePageSizeDictionary() override { return MakePageSizeDictionary(); }
    DWORD GetCustomSizeMsId(const WCHAR* name) override {
        const WideStringView text = name ? WideStringView(name) : WideStringView();
        const DWORD crc = Crc32::GetCrc(text.data(), text.size() * sizeof(WCHAR));
        return ((crc ^ (crc << 16)) & 0xFFFF0000u) | DMPAPER_USER;
    }
    MvDataModel* CreateDataModel(int kind, const WCHAR* driverDataFile, const ProductStringLoader& loader,
                                 bool populateAtOnce, bool withUserSizes) override {
        return MakeDataModel(kind, driverDataFile, loader, populateAtOnce, withUserSizes);
    }
    MvDevice* CreateDevice(const WCHAR* printerName, const ProductData* product) override {
        return MakeDevice(printerName, product);
    }
};

}  // namespace

MvCoreLibrary* GetMvCoreLibrary() {
    static CoreLibrary library;
    return &library;
}
