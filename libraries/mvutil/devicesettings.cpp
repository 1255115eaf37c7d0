// DeviceSettingsManager: the product's settings, overlaid with those stored for the printer.
#include <mvutil/devicesettings.h>

#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/persistentattributes.h>
#include <mvutil/productofprinter.h>
#include <products/reader/productdescription.h>

namespace {

constexpr const WCHAR* kDeviceSettingsValue = W("XDeviceSettings");

AttributeBytesValue MakeValue(const ProductSetting& setting) {
    switch (setting.kind) {
        case ProductSetting::Kind::Boolean:
            return AttributeBytesBooleanValue(setting.number != 0);
        case ProductSetting::Kind::Option:
            return AttributeBytesOptionValue(AttributeBytesValueId(static_cast<DWORD>(setting.number)), true);
        case ProductSetting::Kind::String:
            return AttributeBytesStringValue(CXString::FromUtf8(setting.text));
        case ProductSetting::Kind::Integer:
            break;
    }
    return AttributeBytesIntegerValue(setting.number);
}

// Nothing when the printer cannot be asked, or has no such value.
AttributeBytesRawList ReadStoredSettings(const Printer& printer) {
    AttributeBytesRawList list;
    try {
        const CXString key = MorvaneUtilities::ConvertPortNameToRegistryKey(printer.GetPrinterPort());
        ByteBuffer image;
        if (DataCache(printer.GetHandle(), key, 0, false).GetCachedBytesValue(kDeviceSettingsValue, image)) {
            PersistentAttributes(image, false, nullptr)
                .GetAttributeBytesListForNameSpace(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
        }
    } catch (const MorvaneException&) {
        // A printer that does not answer has no settings of its own.
    }
    return list;
}

}  // namespace

DeviceSettingsManager::DeviceSettingsManager(const Printer& printer) {
    if (const auto product = LoadProductOfPrinter(printer.GetHandle())) {
        hasProduct_ = true;
        for (const auto& [id, setting] : product->settings)
            settings_.SetAttributeBytes(AttributeBytesFeatureId(id), MakeValue(setting));
    }
    AttributeBytesIndexedList stored;
    stored.ImportFromRawList(ReadStoredSettings(printer));
    for (const auto& [feature, value] : stored.GetItems()) settings_.SetAttributeBytes(feature, value);
}

AttributeBytesIndexedList* DeviceSettingsManager::GetDocPropAttributeBytesIndexedList() { return &settings_; }

void DeviceSettingsManager::OnPrivateDataCommitted() {
    // The settings are the printer's, not the document's: a commit of a document's data does not change them.
}

AttributeBytesIndexedList* DeviceSettingsManager::GetAttributeBytesIndexedList(
    const AttributeBytesNameSpaceId& namespaceId) {
    return GetAttributeBytesIndexedList(namespaceId.GetId());
}

AttributeBytesIndexedList* DeviceSettingsManager::GetAttributeBytesIndexedList(DWORD namespaceId) {
    return namespaceId == PersistentAttributes::GetDataModelDocPropNameSpaceId() ? &settings_ : nullptr;
}

bool DeviceSettingsManager::GetDeviceSettingsDataFromStorage(ByteBuffer& data, DWORD& checkValue) {
    if (!hasProduct_) return false;
    AttributeBytesRawList list;
    list.ImportFromIndexedList(settings_);
    data.clear();
    list.Encode(data);
    checkValue = Crc32::GetCrc(data.getLpbyte(), data.getDword());
    return true;
}
