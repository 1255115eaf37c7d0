// DataSourceProvider: the face through which the maker's libraries keep their data-model state in the registry.
#pragma once

#include <mvutil/datacache.h>

#include <memory>
#include <utility>
#include <vector>

class DataSource;

// The libraries call through the table of virtual operations: their order binds. Both pieces of state are opaque bytes
// to this class; they share one stamp, which says whether they were stored for the printer's present installable
// options and auto-configuration. What the utility library throws passes through.
class DataSourceProvider {
public:
    enum DataSourceProviderTypes : DWORD {};  // the kinds of data source; their numbers are the libraries' own

    DataSourceProvider();
    virtual ~DataSourceProvider();
    DataSourceProvider(const DataSourceProvider&) = delete;
    DataSourceProvider& operator=(const DataSourceProvider&) = delete;

    // Appends the data sources that this provider contributes to a data model; they stay its own.
    virtual void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>& sources) = 0;

    // Each pair: Set stores the bytes and, when the printer has device settings, the stamp. Is...Current gives 1 when
    // they are there and the stamp is the present one, 0 when the stamp is another, -1 when bytes, stamp or device
    // settings are missing. Delete removes the bytes and the shared stamp. Get gives the bytes, current or not; an
    // empty buffer when there are none.
    virtual void SetDataModelInfoNuggets(HANDLE printer, const ByteBuffer& nuggets);
    virtual LONG IsDataModelInfoNuggetsCurrent(HANDLE printer);
    virtual void DeleteDataModelInfoNuggets(HANDLE printer);
    virtual void GetDataModelInfoNuggets(HANDLE printer, ByteBuffer& nuggets);
    // Copies the nuggets and the stamp from the local machine's hive to the current user's.
    virtual void CopyDataModelInfoNuggetsToCurrentUser(HANDLE printer);
    virtual void SetDataModelState(HANDLE printer, const ByteBuffer& state);
    virtual LONG IsDataModelStateCurrent(HANDLE printer);
    virtual void DeleteDataModelState(HANDLE printer);
    virtual void GetDataModelState(HANDLE printer, ByteBuffer& state);

private:
    DataCache& KeyedCache(HANDLE printer);
    void SetItem(HANDLE printer, const WCHAR* name, const ByteBuffer& value);
    LONG IsItemCurrent(HANDLE printer, const WCHAR* name);
    void DeleteItem(HANDLE printer, const WCHAR* name);

    std::unique_ptr<DataCache> dataCache_;  // made by the first operation, in the form that this one needs
};
