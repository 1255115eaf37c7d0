// DeviceSettingsManager: the printer's numbered device settings.
#pragma once

#include <mvutil/attributebytes.h>
#include <mvutil/printer.h>

// The settings of the product description, overlaid with those stored for the printer (the "XDeviceSettings" value of
// its caches). A printer without a readable product has only the stored ones.
class MVUTIL_API DeviceSettingsManager : public AttributeBytesReader {
public:
    explicit DeviceSettingsManager(const Printer& printer);

    AttributeBytesIndexedList* GetDocPropAttributeBytesIndexedList() override;
    void OnPrivateDataCommitted() override;
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpaceId& namespaceId) override;
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(DWORD namespaceId) override;

    // The settings as bytes, and a check value over them. False when the printer has no product to take them from.
    bool GetDeviceSettingsDataFromStorage(ByteBuffer& data, DWORD& checkValue);

private:
    AttributeBytesIndexedList settings_;
    bool hasProduct_ = false;
};
