// DataSourceProvider: the face through which the maker's libraries keep their data-model state in the registry.
#include <datasourceprovider.h>

#include <mvutil/crc32.h>
#include <mvutil/devicesettings.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>

#include <optional>

namespace {

constexpr const WCHAR* kInfoNuggetsValue = W("XDataModelInfoNuggets");
constexpr const WCHAR* kStateValue = W("XDataModelState");
constexpr const WCHAR* kStampValue = W("XInstallableOptionsState");
constexpr const WCHAR* kAutoConfigValue = W("XAutoConfig");
constexpr DWORD kCrcStart = 0xFFFFFFFF;
constexpr LONG kNoStamp = -1;

CXString CacheKeyOf(HANDLE printer) {
    return MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(printer).GetPrinterPort());
}

// A CRC over the printer's auto-configuration, started from its device settings' check value; none without settings.
std::optional<LONG> ComputeStamp(HANDLE printer, const DataCache& cache) {
    ByteBuffer settings;
    DWORD checkValue = 0;
    if (!DeviceSettingsManager(Printer(printer)).GetDeviceSettingsDataFromStorage(settings, checkValue) ||
        settings.isEmpty()) {
        return std::nullopt;
    }
    ByteBuffer autoConfig;
    cache.GetCachedBytesValue(kAutoConfigValue, autoConfig);
    return static_cast<LONG>(Crc32::GetCrc(autoConfig.getLpbyte(), autoConfig.getDword(), checkValue));
}

}  // namespace

DataSourceProvider::DataSourceProvider() = default;
DataSourceProvider::~DataSourceProvider() = default;

DataCache& DataSourceProvider::KeyedCache(HANDLE printer) {
    if (!dataCache_) dataCache_ = std::make_unique<DataCache>(printer, CacheKeyOf(printer), kCrcStart, true);
    return *dataCache_;
}

void DataSourceProvider::SetItem(HANDLE printer, const WCHAR* name, const ByteBuffer& value) {
    DataCache& cache = KeyedCache(printer);
    cache.SetCachedValue(name, value, false);
    if (const std::optional<LONG> stamp = ComputeStamp(printer, cache))
        cache.SetCachedValue(kStampValue, *stamp, false);
}

LONG DataSourceProvider::IsItemCurrent(HANDLE printer, const WCHAR* name) {
    const DataCache& cache = KeyedCache(printer);
    ByteBuffer value;
    cache.GetCachedBytesValue(name, value);
    if (value.isEmpty()) return -1;
    const LONG storedStamp = cache.GetCachedLongValue(kStampValue, kNoStamp);
    if (storedStamp == kNoStamp) return -1;
    const std::optional<LONG> stamp = ComputeStamp(printer, cache);
    if (!stamp) return -1;
    return *stamp == storedStamp ? 1 : 0;
}

void DataSourceProvider::DeleteItem(HANDLE printer, const WCHAR* name) {
    if (!dataCache_) dataCache_ = std::make_unique<DataCache>(printer, kCrcStart, true);
    dataCache_->DeleteCache(name, false);
    dataCache_->DeleteCache(kStampValue, false);
}

void DataSourceProvider::SetDataModelInfoNuggets(HANDLE printer, const ByteBuffer& nuggets) {
    SetItem(printer, kInfoNuggetsValue, nuggets);
}

LONG DataSourceProvider::IsDataModelInfoNuggetsCurrent(HANDLE printer) {
    return IsItemCurrent(printer, kInfoNuggetsValue);
}

void DataSourceProvider::DeleteDataModelInfoNuggets(HANDLE printer) { DeleteItem(printer, kInfoNuggetsValue); }

void DataSourceProvider::GetDataModelInfoNuggets(HANDLE printer, ByteBuffer& nuggets) {
    KeyedCache(printer).GetCachedBytesValue(kInfoNuggetsValue, nuggets);
}

void DataSourceProvider::CopyDataModelInfoNuggetsToCurrentUser(HANDLE printer) {
    DataCache cache(printer, HKEY_LOCAL_MACHINE, CacheKeyOf(printer), kCrcStart, true);
    ByteBuffer nuggets;
    ByteBuffer stamp;
    cache.GetCachedBytesValue(kInfoNuggetsValue, nuggets);
    cache.GetCachedBytesValue(kStampValue, stamp);
    cache.SetHKEY(HKEY_CURRENT_USER);
    cache.SetCachedValue(kInfoNuggetsValue, nuggets, false);
    cache.SetCachedValue(kStampValue, stamp, false);
}

void DataSourceProvider::SetDataModelState(HANDLE printer, const ByteBuffer& state) {
    SetItem(printer, kStateValue, state);
}

LONG DataSourceProvider::IsDataModelStateCurrent(HANDLE printer) { return IsItemCurrent(printer, kStateValue); }

void DataSourceProvider::DeleteDataModelState(HANDLE printer) { DeleteItem(printer, kStateValue); }

void DataSourceProvider::GetDataModelState(HANDLE printer, ByteBuffer& state) {
    KeyedCache(printer).GetCachedBytesValue(kStateValue, state);
}
