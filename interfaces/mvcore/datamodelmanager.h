// DataModelManager: owns one data model of a printer.
#pragma once

#include <mvcore/featureservices.h>
#include <mvcore/mvcorelibrary.h>
#include <mvutil/datasource.h>
#include <mvutil/textresources.h>

#include <memory>
#include <vector>

class MvDataModel {
public:
    virtual void Destroy() noexcept = 0;
    virtual void PopulateFromSourceData(const std::vector<DataSource*>& sources) = 0;
    virtual void ReleaseSourceData() = 0;
    virtual bool ExportSourceData(AttributeBytesSink& sink) = 0;
    virtual DataModelFeatureServices& GetServices() = 0;
    virtual IntegrationInterface& GetIntegration() = 0;

protected:
    ~MvDataModel() = default;
};

// For one thread at a time.
class DataModelManager {
public:
    // The model of the product that the driver's data file describes. The kind is 1, a printer driver's model. The
    // loader gives texts of the thread's product and is copied. populateAtOnce fills the model from
    // the product alone; without it PopulateFromSourceData does all. withUserSizes takes the user's custom paper sizes
    // in. Loads mvcoreC0 when it is not in the process yet; throws ExceptionDelayLoadDllLoadFailure when it cannot be
    // found, ExceptionPrintDriverFailure when the data file is unusable, std::invalid_argument for another kind.
    DataModelManager(int kind, const CXString& driverDataFile, const ProductStringLoader& loader, bool populateAtOnce,
                     bool withUserSizes)
        : model_(GetMvCoreLibrary()->CreateDataModel(kind, driverDataFile.GetString(), loader, populateAtOnce,
                                                     withUserSizes)) {}

    // Fills the model from the product (unless it is filled) and then from the sources, which stay the caller's. To be
    // called once; a second call throws std::logic_error. What sources set in SetFeatureServices is reported as one
    // bundle. The manager does not touch the sources when its life ends, so they may go first. Until they are released,
    // sources that are observers are notified of events.
    void PopulateFromSourceData(std::vector<DataSource*>& sources) { model_->PopulateFromSourceData(sources); }
    // Calls both unregister operations of every source and forgets the sources, which are notified of no event any
    // more.
    void ReleaseSourceData() { model_->ReleaseSourceData(); }
    // Lets every source write its own settings; whether all of them were taken.
    bool ExportSourceData(AttributeBytesSink& sink) { return model_->ExportSourceData(sink); }

    FeatureServices& GetFeatureServices() { return model_->GetServices(); }
    IntegrationInterface& GetIntegrationInterface() { return model_->GetIntegration(); }
    void BeginMassSet() { model_->GetServices().BeginMassSet(); }
    void EndMassSet() { model_->GetServices().EndMassSet(); }
    std::unique_ptr<MvjtTranslator, MvDestroy> GetMvjtTranslator(int kind) {
        return model_->GetServices().GetMvjtTranslator(kind);
    }
    SpecialPagesServices& GetSpecialPagesServices() { return model_->GetServices().GetSpecialPagesServices(); }

private:
    std::unique_ptr<MvDataModel, MvDestroy> model_;
};
