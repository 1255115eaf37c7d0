// The workflow object: what its printer's product description says of the product.
#include <workflow/workflowlibrary.h>

#include <mvcore/datamodelids.h>
#include <mvutil/productofprinter.h>
#include <products/reader/productdescription.h>

#include <filesystem>
#include <memory>
#include <new>

#define WORKFLOW_API extern "C" __declspec(dllexport)

namespace {

// The answer, or the value that stands for not knowing. Nothing but lack of memory is thrown into the caller.
template <class Answer, class Value>
Value AnswerOr(Answer answer, Value unknown) {
    try {
        return answer();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return unknown;
    }
}

template <class Map>
const typename Map::mapped_type* FindIn(const Map& map, int key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

class Product final : public ProductData {
public:
    void Load(HANDLE printer) { description_ = LoadProductOfPrinter(printer); }

    DWORD GetControllerFamily() const override {
        return description_ ? description_->controllerFamily : DataModelIds::kNotSet;
    }
    CXString GetInfo(int infoType) const override {
        return AnswerOr(
            [&] {
                const std::string* const text = description_ ? FindIn(description_->info, infoType) : nullptr;
                return text ? CXString::FromUtf8(*text) : CXString();
            },
            CXString());
    }
    CXString GetPath(int kind) const override {
        return AnswerOr(
            [&] {
                const std::filesystem::path* const path = description_ ? FindIn(description_->paths, kind) : nullptr;
                return path ? CXString(std::filesystem::path(*path).make_preferred().string<WCHAR>()) : CXString();
            },
            CXString());
    }
    CXString GetModelName() const override {
        return AnswerOr([&] { return description_ ? CXString::FromUtf8(description_->modelName) : CXString(); },
                        CXString());
    }

private:
    std::shared_ptr<const ProductDescription> description_;
};

class Workflow final : public MvWorkflow {
public:
    void SetPrinterHandle(HANDLE printer) override { product_.Load(printer); }
    ProductData* GetWorkflowProductData() override { return &product_; }

private:
    Product product_;
};

}  // namespace

// The product needs none of the caller's data sources.
WORKFLOW_API MvWorkflow* GetWorkflowObject(DataSourceProvider*) { return std::make_unique<Workflow>().release(); }

WORKFLOW_API void ReleaseWorkflowObject(MvWorkflow* workflow) {
    const std::unique_ptr<Workflow> owner(static_cast<Workflow*>(workflow));
}
