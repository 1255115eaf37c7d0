// The data model: filled once, from the product and then from its data sources.
#include "datamodel.h"

#include <mvutil/throwfailure.h>
#include <products/reader/productdescription.h>

#include "modelintegration.h"
#include "modelparts.h"
#include "modelservices.h"
#include "productmodel.h"
#include "productsource.h"

#include <filesystem>
#include <stdexcept>

namespace {

constexpr int kDriverModel = 1;

std::shared_ptr<const ProductDescription> LoadDriverProduct(CXString path) {
    path.Replace(W("\\"), W("/"));
    try {
        return LoadProduct(std::filesystem::path(path.AsWideString()));
    } catch (const ProductError& error) {
        ThrowFailure(&GetExceptionPrintDriverFailure, CXString::FromUtf8(error.what()),
                     W("DataModelManager::DataModelManager"), W("mvcore/datamodel"));
    }
}

class DataModel final : public MvDataModel {
public:
    DataModel(std::shared_ptr<const ProductDescription> product, const ProductStringLoader& loader, bool populateAtOnce,
              bool withUserSizes)
        : loader_(loader),
          product_(std::move(product)),
          withUserSizes_(withUserSizes),
          parts_(loader_),
          services_(parts_),
          integration_(parts_) {
        if (populateAtOnce) AddWhatTheProductHas();
    }

    void Destroy() noexcept override { std::default_delete<DataModel>()(this); }

    void PopulateFromSourceData(const std::vector<DataSource*>& sources) override {
        if (populated_) throw std::logic_error("the data model is populated already");
        populated_ = true;
        AddWhatTheProductHas();
        parts_.changes.SetSilent(true);
        sources_ = sources;
        for (DataSource* source : sources_) {
            source->RegisterForIntegrateSourceDataChanges(parts_.changes);
            source->IntegrateSourceData(integration_);
        }
        parts_.changes.SetSilent(false);
        MassChange change(parts_.changes);
        for (DataSource* source : sources_) {
            source->RegisterForCurrentSettingsChanges(parts_.changes);
            source->SetFeatureServices(services_);
            if (auto* observer = dynamic_cast<IObserver*>(source)) parts_.changes.RegisterSource(observer);
        }
        change.End();
    }

    void ReleaseSourceData() override {
        for (DataSource* source : sources_) {
            source->UnregisterForIntegrateSourceDataChanges(parts_.changes);
            source->UnregisterForCurrentSettingsChanges(parts_.changes);
            if (auto* observer = dynamic_cast<IObserver*>(source)) parts_.changes.UnregisterEventObserver(observer);
        }
        sources_.clear();
    }

    bool ExportSourceData(AttributeBytesSink& sink) override {
        bool all = true;
        for (DataSource* source : sources_) all &= source->ExportSourceData(sink);
        return all;
    }

    DataModelFeatureServices& GetServices() override { return services_; }
    IntegrationInterface& GetIntegration() override { return integration_; }

private:
    void AddWhatTheProductHas() {
        if (!product_) return;
        parts_.changes.SetSilent(true);
        pattern_ = GetProductModel(product_);
        if (parts_.root.IsEmpty())
            parts_.Follow(pattern_->parts);
        else  // somebody has declared features already
            AddProduct(parts_, *product_);
        if (withUserSizes_) AddUserPaperSizes(parts_);
        parts_.changes.SetSilent(false);
        product_ = nullptr;
    }

    ProductStringLoader loader_;
    std::shared_ptr<const ProductDescription> product_;  // until the model is filled from it
    std::shared_ptr<const ProductModel> pattern_;
    bool withUserSizes_;
    bool populated_ = false;
    ModelParts parts_;
    ModelServices services_;
    ModelIntegration integration_;
    std::vector<DataSource*> sources_;
};

}  // namespace

MvDataModel* MakeDataModel(int kind, const CXString& driverDataFile, const ProductStringLoader& loader,
                           bool populateAtOnce, bool withUserSizes) {
    if (kind != kDriverModel) throw std::invalid_argument("no data model of this kind");
    return std::make_unique<DataModel>(LoadDriverProduct(driverDataFile), loader, populateAtOnce, withUserSizes)
        .release();
}
