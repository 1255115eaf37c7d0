// Which workflow library a printer gets, and that it is let go of on every path.
#include <modulehandle.h>
#include <support/printerfixture.h>
#include <workflowobject.h>

#include <mvutil/morvaneexception.h>
#include <mvutil/printer.h>

#include <gtest/gtest.h>

#include <optional>

namespace {

constexpr const char* kLibraries[] = {"mvwftuC0.dll", "mvwfwuC0.dll", "mvwfuvC0.dll"};

// Numbers of the workflow libraries in the process, as digits.
std::string LoadedLibraries() {
    std::string loaded;
    for (int index = 1; index <= 3; ++index)
        if (GetModuleHandleA(kLibraries[index - 1])) loaded += static_cast<char>('0' + index);
    return loaded;
}

std::optional<DWORD> StoredIndex(HANDLE printer) {
    DWORD type = 0;
    ByteBuffer value;
    if (!Printer(printer).GetPrinterDataW(W("XWorkflowDLL"), type, value)) return std::nullopt;
    return static_cast<DWORD>(value.getAsLongValue());
}

void StoreIndex(HANDLE printer, DWORD type, DWORD value) {
    Printer(printer).SetPrinterDataW(W("XWorkflowDLL"), type, &value, sizeof value);
}

class WorkflowObjectTest : public testing::Test {
protected:
    TestStore store_;
    TestPrinter printer_{kPress};
};

TEST_F(WorkflowObjectTest, TakesTheLibraryThatThePrinterDataNames) {
    struct Row {
        DWORD type, value;
        const char* loaded;
    };
    const Row rows[] = {{REG_DWORD, 1, "1"}, {REG_DWORD, 2, "2"}, {REG_DWORD, 3, "3"},        {REG_DWORD, 0, ""},
                        {REG_DWORD, 4, ""},  {REG_BINARY, 1, ""}, {REG_DWORD, 0xFFFFFFFF, ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "type " << row.type << " value " << row.value);
        StoreIndex(printer_.GetHandle(), row.type, row.value);
        {
            WorkflowObject workflow;
            unsigned family = 0;
            const bool wanted = *row.loaded != 0;
            EXPECT_EQ(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, &family), wanted);
            EXPECT_EQ(family, wanted ? 8434u : 5001u);
            EXPECT_EQ(LoadedLibraries(), row.loaded);
            EXPECT_EQ(StoredIndex(printer_.GetHandle()), row.value) << "nothing is detected";
            if (wanted) {
                EXPECT_FALSE(workflow.InitializeWorkflowObject(nullptr, nullptr, &family)) << "a second time";
                EXPECT_EQ(family, 8434u);
                EXPECT_EQ(workflow.GetProductDataObj()->GetControllerFamily(), 8434u);
            } else {
                EXPECT_THROW(workflow.GetProductDataObj(), ExceptionWorkflowObjectNotInitialized);
            }
        }
        EXPECT_EQ(LoadedLibraries(), "");
    }
}

TEST_F(WorkflowObjectTest, DetectsTheLibraryFromTheDriversFilesOnce) {
    ASSERT_EQ(StoredIndex(printer_.GetHandle()), std::nullopt);
    WorkflowObject workflow;
    EXPECT_TRUE(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, nullptr));
    const std::string loaded = LoadedLibraries();
    ASSERT_EQ(loaded.size(), 1u);
    EXPECT_EQ(StoredIndex(printer_.GetHandle()), static_cast<DWORD>(loaded[0] - '0'));
}

TEST_F(WorkflowObjectTest, SurvivesAPrinterThatDoesNotAnswer) {
    int unknown = 0;
    WorkflowObject workflow;
    unsigned family = 0;
    EXPECT_FALSE(workflow.InitializeWorkflowObject(&unknown, nullptr, &family));
    EXPECT_EQ(family, 5001u);
    EXPECT_FALSE(workflow.IsInitialized());
    EXPECT_TRUE(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, &family)) << "it can be tried again";
}

// The libraries lie beside the component; here it plays to be in the folder of libraries that misbehave.
TEST_F(WorkflowObjectTest, LetsGoOfLibrariesThatMisbehave) {
    const std::filesystem::path folder = ProgramFolder() / "fakeworkflow";
    UniqueModule component(LoadLibraryW(CXString((folder / "component.dll").make_preferred().string<WCHAR>())));
    ASSERT_TRUE(component);
    SetComponentModule(component.Get());
    struct Row {
        const char* what;
        DWORD index;
        bool initialized;
    };
    for (const Row& row :
         {Row{"throws on release", 1, true}, {"lacks the exports", 2, false}, {"no object", 3, false}}) {
        SCOPED_TRACE(row.what);
        StoreIndex(printer_.GetHandle(), REG_DWORD, row.index);
        {
            WorkflowObject workflow;
            unsigned family = 0;
            EXPECT_EQ(workflow.InitializeWorkflowObject(printer_.GetHandle(), nullptr, &family), row.initialized);
            EXPECT_EQ(family, row.initialized ? 8431u : 5001u);
            EXPECT_EQ(LoadedLibraries(), row.initialized ? "1" : "") << "freed at once";
        }
        EXPECT_EQ(LoadedLibraries(), "");
    }
    SetComponentModule(nullptr);
}

}  // namespace
