// DeviceInterface: the printer itself as a source of the data model.
#pragma once

#include <mvcore/featureservices.h>
#include <mvcore/mvcorelibrary.h>
#include <mvutil/datasource.h>

#include <memory>

class MvDevice {
public:
    virtual void Destroy() noexcept = 0;
    virtual DataSource* GetDataSource() = 0;
    virtual const WCHAR* GetPrinterName() const = 0;

protected:
    ~MvDevice() = default;
};

// Its data source offers the controller families (feature 285), the product's own as the default.
class DeviceInterface {
public:
    // The product data may be null (the family is then not set) and is not kept. Address, printer handle, mode, time
    // limit, listener and community belong to a live connection to the device; the model needs none, so they are not
    // used and may all be empty.
    DeviceInterface(const CXString& printerName, const CXString& /*address*/, HANDLE /*printer*/, int /*mode*/,
                    int /*timeLimit*/, const ProductData* product, IObserver* /*listener*/,
                    const CXString& /*community*/)
        : device_(GetMvCoreLibrary()->CreateDevice(printerName.GetString(), product)) {}

    DataSource* GetDataSource() { return device_->GetDataSource(); }  // belongs to the interface
    CXString GetPrinterName() const { return device_->GetPrinterName(); }

private:
    std::unique_ptr<MvDevice, MvDestroy> device_;
};
