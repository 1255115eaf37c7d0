// Workflow libraries that misbehave, one for each value of FAKE_KIND.
#include <workflow/workflowlibrary.h>

#define FAKE_EXPORT extern "C" __declspec(dllexport)

#if FAKE_KIND == 1  // lacks the exports

FAKE_EXPORT void SomethingElse() {}

#else  // gives no object

FAKE_EXPORT MvWorkflow* GetWorkflowObject(DataSourceProvider*) { return nullptr; }
FAKE_EXPORT void ReleaseWorkflowObject(MvWorkflow*) {}

#endif
