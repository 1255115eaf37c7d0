// Workflow libraries that misbehave, one for each value of FAKE_KIND.
#include <workflow/workflowlibrary.h>

#define FAKE_EXPORT extern "C" __declspec(dllexport)

#if FAKE_KIND == 1  // lacks the exports

FAKE_EXPORT void SomethingElse() {}

#else  // gives no object, or one that throws an object whose code is in the library

struct Trouble {
    virtual ~Trouble() = default;
};
struct Workflow final : MvWorkflow {
    void SetPrinterHandle(HANDLE) override { throw Trouble(); }
    ProductData* GetWorkflowProductData() override { return nullptr; }
};

FAKE_EXPORT MvWorkflow* GetWorkflowObject(DataSourceProvider*) {
    static Workflow workflow;
    return FAKE_KIND == 2 ? nullptr : &workflow;
}
FAKE_EXPORT void ReleaseWorkflowObject(MvWorkflow*) {}

#endif
