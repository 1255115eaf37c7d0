// The printer as a data source: which controller families there are, and which one it is of.
#include "device.h"

#include <workflow/productdata.h>

namespace {

constexpr FeatureId kControllerFamily(facts::feature::kControllerFamily);
constexpr DWORD kFamilies[] = {DataModelIds::kControllerFamily8430, DataModelIds::kControllerFamily8431,
                               DataModelIds::kControllerFamily8432, DataModelIds::kControllerFamily8433,
                               DataModelIds::kControllerFamily8434};

class Device final : public MvDevice, private DataSource {
public:
    Device(const CXString& printerName, DWORD family) : printerName_(printerName), family_(family) {}

    void Destroy() noexcept override { std::default_delete<Device>()(this); }
    DataSource* GetDataSource() override { return this; }
    const WCHAR* GetPrinterName() const override { return printerName_.GetString(); }

private:
    void IntegrateSourceData(IntegrationInterface& integration) override {
        IntegrationServices& services = integration.GetServices();
        services.DeclareFeaturesPresent(FeatureId(facts::feature::kRoot), {kControllerFamily});
        std::vector<ValueId> families;
        for (const DWORD family : kFamilies) families.emplace_back(family);
        services.AddOptionValues(kControllerFamily, families, 1);
        ListOfFeaturesRef features;
        services.GetRootListOfFeatures(features);
        features.GetOptionFeature(kControllerFamily).SetDefault(ValueId(family_));
    }

    CXString printerName_;
    DWORD family_;
};

}  // namespace

MvDevice* MakeDevice(const CXString& printerName, const ProductData* product) {
    const DWORD family = product ? product->GetControllerFamily() : DWORD{DataModelIds::kNotSet};
    return std::make_unique<Device>(printerName, family).release();
}
