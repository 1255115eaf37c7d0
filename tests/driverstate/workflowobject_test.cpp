// Which workflow library a printer gets, and that it is let go of on every path.
#include <modulehandle.h>
#include <support/printerfixture.h>
#include <workflowobject.h>

#include <mvutil/morvaneexception.h>
#include <mvutil/printer.h>

#include <gtest/gtest.h>

namespace {

// Numbers of the workflow libraries in the process, as digits.
std::string LoadedLibraries() {
    std::string loaded;
    if (GetModuleHandleA("mvwftuC0.dll")) loaded += '1';
    if (GetModuleHandleA("mvwfwuC0.dll")) loaded += '2';
    if (GetModuleHandleA("mvwfuvC0.dll")) loaded += '3';
    return loaded;
}

class WorkflowObjectTest : public testing::Test {
protected:
    // Binds to a printer whose data names the library; family is the product's, or 5001 where nothing is loaded.
    void ExpectLibrary(DWORD type, LONG index, const std::string& loaded, unsigned family) {
        SCOPED_TRACE(testing::Message() << "type " << type << " value " << index);
        Printer(printer_.GetHandle()).SetPrinterDataW(W("XWorkflowDLL"), type, &index, sizeof index);
        {
            WorkflowObject workflow;
            unsigned told = 0;
            EXPECT_EQ(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, &told), !loaded.empty());
            EXPECT_EQ(told, family);
            EXPECT_EQ(LoadedLibraries(), loaded);
            if (loaded.empty()) {
                EXPECT_THROW(workflow.GetProductDataObj(), ExceptionWorkflowObjectNotInitialized);
            } else {
                EXPECT_FALSE(workflow.InitializeWorkflowObject(nullptr, nullptr, &told)) << "a second time";
                EXPECT_EQ(workflow.GetProductDataObj()->GetControllerFamily(), family);
            }
        }
        EXPECT_EQ(LoadedLibraries(), "");
    }

    TestStore store_;
    TestPrinter printer_{kPress};
};

TEST_F(WorkflowObjectTest, TakesTheLibraryThatThePrinterDataNames) {
    for (const LONG index : {1, 2, 3}) ExpectLibrary(REG_DWORD, index, std::to_string(index), 8434);
    for (const LONG index : {0, 4, -1}) ExpectLibrary(REG_DWORD, index, "", 5001);
    ExpectLibrary(REG_BINARY, 1, "", 5001);
}

// The libraries lie beside the component; here it plays to be in the folder of libraries that misbehave.
TEST_F(WorkflowObjectTest, LetsGoOfLibrariesThatMisbehave) {
    const std::filesystem::path folder = ProgramFolder() / "fakeworkflow";
    UniqueModule component(LoadLibraryW(CXString((folder / "component.dll").make_preferred().string<WCHAR>())));
    ASSERT_TRUE(component);
    SetComponentModule(component.Get());
    ExpectLibrary(REG_DWORD, 2, "", 5001);  // lacks the exports
    ExpectLibrary(REG_DWORD, 3, "", 5001);  // gives no object
    ExpectLibrary(REG_DWORD, 1, "", 5001);  // throws
    WorkflowObject workflow;
    EXPECT_FALSE(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, nullptr));
    SetComponentModule(nullptr);
    EXPECT_TRUE(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, nullptr)) << "bound anew";
}

}  // namespace
