// JobModel: the data model of one job, which the printer, the user's preferences and the private DEVMODE fill.
#pragma once

#include "userpreferencefeature.h"

#include <mvcore/datamodelmanager.h>
#include <mvcore/deviceinterface.h>

class ProductData;
class XDevmode;

// For one thread at a time. The private DEVMODE stays the caller's and must outlive the model.
class JobModel {
public:
    // Throws what the maker's libraries throw for a printer whose driver is incomplete.
    JobModel(HANDLE printer, const ProductData& productData, XDevmode& xdevmode, const CXString& documentName);
    ~JobModel();  // ends the registrations of the sources, which go before the manager does
    JobModel(const JobModel&) = delete;
    JobModel& operator=(const JobModel&) = delete;

    // Fills the model; to be called once, before anything else.
    void Populate();
    // Takes over the private DEVMODE's settings; those that the model does not have are passed over.
    void ImportDocumentSettings();
    DataModelManager& GetManager() noexcept { return manager_; }

private:
    XDevmode& xdevmode_;
    DataModelManager manager_;
    DeviceInterface device_;
    UserPreferenceVerticalFeature preferences_;
};
