// The exports of the workflow libraries mvwftuC0, mvwfwuC0 and mvwfuvC0.
#pragma once

#include <windows.h>
#include <workflow/productdata.h>

class DataSourceProvider;

// A library's workflow object, one for each caller of GetWorkflowObject.
class MvWorkflow {
public:
    virtual void SetPrinterHandle(HANDLE printer) = 0;  // the handle stays the caller's
    virtual ProductData* GetWorkflowProductData() = 0;  // the workflow object owns it

protected:
    ~MvWorkflow() = default;
};

using GetWorkflowObjectFunction = MvWorkflow* (*)(DataSourceProvider* provider);
using ReleaseWorkflowObjectFunction = void (*)(MvWorkflow* workflow);
inline constexpr const char* kGetWorkflowObjectExport = "GetWorkflowObject";
inline constexpr const char* kReleaseWorkflowObjectExport = "ReleaseWorkflowObject";
