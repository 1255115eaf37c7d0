// DataSource: whatever fills a data model beside the product description.
#pragma once

#include <mvutil/attributebytessink.h>

class DataModelObserverInterfaces;
class FeatureServices;
class IntegrationInterface;

// A data-model manager calls, for all its sources in their order: RegisterForIntegrateSourceDataChanges and
// IntegrateSourceData of each; then RegisterForCurrentSettingsChanges and SetFeatureServices of each. What it hands
// over lives as long as the manager. The order of the virtual operations binds.
class DataSource {
public:
    virtual ~DataSource() = default;
    virtual void RegisterForIntegrateSourceDataChanges(DataModelObserverInterfaces& /*observers*/) {}
    virtual void IntegrateSourceData(IntegrationInterface& integration) = 0;
    virtual void UnregisterForIntegrateSourceDataChanges(DataModelObserverInterfaces& /*observers*/) {}
    virtual void RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& /*observers*/) {}
    virtual void SetFeatureServices(FeatureServices& /*services*/) {}
    virtual void UnregisterForCurrentSettingsChanges(DataModelObserverInterfaces& /*observers*/) {}
    // Writes the source's own settings for the private DEVMODE; whether all of them were taken.
    virtual bool ExportSourceData(AttributeBytesSink& /*sink*/) { return false; }
    virtual void Dump() const {}

protected:
    DataSource() = default;
    DataSource(const DataSource&) = default;
    DataSource& operator=(const DataSource&) = default;
};
