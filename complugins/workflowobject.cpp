// WorkflowObject: the binding of a printer to the workflow library of its driver.
#include <workflowobject.h>

#include <modulehandle.h>
#include <throwscheme.h>

#include <mvcore/datamodelids.h>
#include <mvutil/lackofmemory.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/workflowobject");
constexpr const WCHAR* kWorkflowDllValue = W("XWorkflowDLL");
constexpr int kAllDriverFiles = 9;
constexpr DWORD kLibraryCount = 3;
constexpr const WCHAR* kLibraryFiles[kLibraryCount] = {W("mvwftuC0.dll"), W("mvwfwuC0.dll"), W("mvwfuvC0.dll")};

// Index of the library among the files of the printer's driver, from 1; 0 when there is none.
DWORD DetectIndex(HANDLE printer) {
    try {
        const CXString files = PrintDriver().GetDriverFiles(printer, kAllDriverFiles, CXString());
        for (DWORD index = 1; index <= kLibraryCount; ++index) {
            CXString file = kLibraryFiles[index - 1];
            file.MakeLower();
            if (files.Find(file) >= 0) return index;
        }
    } catch (const ExceptionPrintDriverFailure&) {
    }
    return 0;
}

// Notes the printer's library in its printer data.
void Detect(const Printer& printer) {
    const DWORD index = DetectIndex(printer.GetHandle());
    if (index == 0) return;
    try {
        printer.SetPrinterDataW(kWorkflowDllValue, REG_DWORD, &index, sizeof index);
    } catch (const ExceptionPrinterFailure&) {
        // It is detected again the next time.
    }
}

bool ReadIndex(const Printer& printer, DWORD& index) {
    DWORD type = REG_NONE;
    ByteBuffer value;
    if (!printer.GetPrinterDataW(kWorkflowDllValue, type, value)) return false;
    index = type == REG_DWORD ? static_cast<DWORD>(value.getAsLongValue()) : 0;
    return true;
}

template <class Function>
Function FindExport(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

}  // namespace

WorkflowObject::WorkflowObject() = default;
WorkflowObject::~WorkflowObject() { Release(); }

bool WorkflowObject::InitializeWorkflowObject(HANDLE printer, DataSourceProvider* provider,
                                              unsigned* controllerFamily) {
    if (initialized_) return false;
    printer_ = printer;
    provider_ = provider;
    if (controllerFamily) *controllerFamily = DataModelIds::kNotSet;
    bool lacksMemory = false;
    try {
        Load();
        if (!workflow_) return false;
        const ProductData* const product = workflow_->GetWorkflowProductData();
        if (controllerFamily && product) *controllerFamily = product->GetControllerFamily();
        initialized_ = true;
        return true;
    } catch (const std::bad_alloc&) {
        lacksMemory = true;
    } catch (...) {
        // A library that fails is as good as none.
    }
    // Not inside a handler: the exception may be of the library's own type, and goes before the library does.
    Release();
    if (lacksMemory) throw std::bad_alloc();
    return false;
}

void WorkflowObject::Load() {
    if (workflow_) return;
    try {
        const Printer printer(printer_);
        TextResourceLoader::Initialize(printer_, false);
        DWORD index = 0;
        if (!ReadIndex(printer, index)) {
            Detect(printer);
            ReadIndex(printer, index);
        }
        if (!module_ && index != 0) LoadModule(index);
        if (module_) ObtainObject();
    } catch (const ExceptionPrinterFailure&) {
        // No answer from the printer: no library.
    }
    if (!workflow_) module_.Reset();
}

void WorkflowObject::LoadModule(DWORD index) {
    CXString path = MorvaneUtilities::getPathFromFileName(MorvaneUtilities::getModulePath(GetComponentModule()));
    if (index <= kLibraryCount) path += kLibraryFiles[index - 1];
    module_ = UniqueModule(LoadLibraryExW(path.GetString(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!module_) ThrowIfLackOfMemory(GetLastError());
}

void WorkflowObject::ObtainObject() {
    const auto getWorkflowObject = FindExport<GetWorkflowObjectFunction>(module_.Get(), kGetWorkflowObjectExport);
    if (!getWorkflowObject) return;
    workflow_ = getWorkflowObject(provider_);
    if (workflow_) workflow_->SetPrinterHandle(printer_);
}

ProductData* WorkflowObject::GetProductDataObj() const {
    if (!workflow_) {
        ThrowException(&GetExceptionWorkflowObjectNotInitialized, W("WorkflowObject::GetProductDataObj"), kSourceUnit,
                       63);
    }
    return workflow_->GetWorkflowProductData();
}

void WorkflowObject::Release() noexcept {
    if (workflow_ && module_) {
        try {
            const auto release = FindExport<ReleaseWorkflowObjectFunction>(module_.Get(), kReleaseWorkflowObjectExport);
            if (release) release(workflow_);
        } catch (...) {
            // The library's own trouble; its module goes all the same.
        }
    }
    workflow_ = nullptr;
    module_.Reset();
    printer_ = nullptr;
    provider_ = nullptr;
    initialized_ = false;
}
