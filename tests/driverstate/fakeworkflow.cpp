// Workflow libraries that misbehave, one for each value of FAKE_KIND.
#include <workflow/workflowlibrary.h>

#define FAKE_EXPORT extern "C" __declspec(dllexport)

#if FAKE_KIND == 1  // gives an object and throws when it is to be released

namespace {

class Fake final : public MvWorkflow, public ProductData {
    void SetPrinterHandle(HANDLE printer) override { hasPrinter_ = printer != nullptr; }
    ProductData* GetWorkflowProductData() override { return this; }
    DWORD GetControllerFamily() const override { return hasPrinter_ ? 8431 : 1; }
    CXString GetInfo(int) const override { return {}; }
    CXString GetPath(int) const override { return {}; }
    CXString GetModelName() const override { return {}; }
    bool hasPrinter_ = false;
};

}  // namespace

FAKE_EXPORT MvWorkflow* GetWorkflowObject(DataSourceProvider*) {
    static Fake fake;
    return &fake;
}
FAKE_EXPORT void ReleaseWorkflowObject(MvWorkflow*) { throw 1; }

#elif FAKE_KIND == 2  // lacks the exports

FAKE_EXPORT void SomethingElse() {}

#else  // gives no object

FAKE_EXPORT MvWorkflow* GetWorkflowObject(DataSourceProvider*) { return nullptr; }
FAKE_EXPORT void ReleaseWorkflowObject(MvWorkflow*) { throw 1; }

#endif
