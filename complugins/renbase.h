// RenBase: makes the MVJT job ticket of a job.
#pragma once

#include "datasourceprovider.h"
#include "workflowobject.h"

class DataModelManager;
class ProductData;
class XDevmode;
class XOemPdev;

// For one thread at a time.
class RenBase : public DataSourceProvider {
public:
    RenBase();
    ~RenBase() override;

    // Appends the job's ticket to the buffer; whether there is one. False, with nothing appended, when the private
    // DEVMODE does not ask for job tickets or the printer's model lacks a feature that every ticket needs. A true
    // result may leave the buffer empty. The job's DEVMODE gives copies and collation; its private part and the
    // property bag the rest. Other failures pass to the caller.
    bool GenerateMvjt(HANDLE printer, const DEVMODEW* devmode, XOemPdev& pdev, XDevmode& xdevmode, ByteBuffer& buffer,
                      ULONGLONG flags, const ProductData& productData);

    // What a renderer does with the pages of a job.
    virtual HRESULT RenderPages() = 0;

private:
    // Owns a kernel handle, if it is one.
    struct CloseKernelHandle {
        void operator()(HANDLE handle) const noexcept;
    };

    // The component's own writer: true.
    bool WriteOwnMvjt(DataModelManager& manager, ByteBuffer& buffer, ULONGLONG flags);

    WorkflowObject workflowObject_;
    UniqueHandle<HANDLE, CloseKernelHandle> handle_;  // closed before the workflow object ends
};

// For jobs that come as PrintTickets: makes tickets and renders nothing.
class RenMvjtForXps final : public RenBase {
public:
    RenMvjtForXps();
    ~RenMvjtForXps() override;

    void ProvideDataSources(std::vector<std::pair<DataSourceProviderTypes, DataSource*>>& sources) override;
    HRESULT RenderPages() override;  // E_NOTIMPL
};
