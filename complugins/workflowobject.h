// WorkflowObject: the binding of a printer to the workflow library of its driver.
#pragma once

#include <mvutil/cxstring.h>
#include <uniquehandle.h>
#include <workflow/workflowlibrary.h>

class DataSourceProvider;

// Which of the driver family's three workflow libraries a printer uses is kept in its printer data, and detected from
// its driver's files the first time. For one thread at a time.
class WorkflowObject {
public:
    WorkflowObject();
    virtual ~WorkflowObject();  // releases the library's object and the library
    WorkflowObject(const WorkflowObject&) = delete;
    WorkflowObject& operator=(const WorkflowObject&) = delete;

    // Loads the printer's library and obtains its workflow object. The controller family (may be null) becomes not set,
    // or the product's when there is an object. False when there is none or the library throws, and, with nothing
    // changed, when this object is initialised already. Throws std::bad_alloc; whatever failed, nothing is kept, and
    // the next call binds anew. The handle and the provider stay the caller's and must outlive this object.
    bool InitializeWorkflowObject(HANDLE printer, DataSourceProvider* provider, unsigned* controllerFamily);
    bool IsInitialized() const noexcept { return initialized_; }

    // The product data, which the library owns. Throws ExceptionWorkflowObjectNotInitialized without a workflow object.
    ProductData* GetProductDataObj() const;

private:
    void Load();
    void LoadModule(DWORD index);
    void ObtainObject();
    void Release() noexcept;

    bool initialized_ = false;
    HANDLE printer_ = nullptr;
    DataSourceProvider* provider_ = nullptr;
    UniqueModule module_;
    MvWorkflow* workflow_ = nullptr;  // owned; given back through the library's own export
};
