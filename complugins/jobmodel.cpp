// JobModel: its sources, and the import of a DEVMODE's settings.
#include "jobmodel.h"

#include "xdevmode.h"

#include <mvutil/executioncontext.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <workflow/productdata.h>

namespace {

constexpr LONG kImportContext = 31554;
constexpr int kDriverModel = 1;
constexpr int kAddSettings = 1;

// The names of values are the product's texts: those of this printer's product.
ProductStringLoader LoadTexts(HANDLE printer, const ProductData& productData) {
    TextResourceLoader::Initialize(printer, false);
    return ProductStringLoader(productData.GetControllerFamily(), productData.GetModelName());
}

}  // namespace

JobModel::JobModel(HANDLE printer, const ProductData& productData, XDevmode& xdevmode, const CXString& documentName)
    : xdevmode_(xdevmode),
      manager_(kDriverModel, PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer),
               LoadTexts(printer, productData), false, true),
      device_(Printer(printer).GetPrinterName(), CXString(), printer, 0, 0, &productData, nullptr, CXString()),
      preferences_(productData.GetControllerFamily(), xdevmode, documentName) {}

JobModel::~JobModel() { manager_.ReleaseSourceData(); }

void JobModel::Populate() {
    std::vector<DataSource*> sources = {device_.GetDataSource(), &preferences_};
    manager_.PopulateFromSourceData(sources);
}

// The list is the one that the process keeps decoded for blocks that it has seen.
void JobModel::ImportDocumentSettings() {
    const BasicExecutionContext context(kImportContext, W("RenBase::ImportDocumentSettings"), W("renbase"));
    const ExecutionContextLifetime lifetime(context);
    AttributeBytesListTranslator translator;
    manager_.GetFeatureServices().GetAttributeBytesListTranslator(translator, DataModelIds::kAttributeListTranslator,
                                                                  DataModelIds::kDocumentSettings,
                                                                  DataModelIds::kAttributeListVersion);
    translator.ImportSettings(*xdevmode_.GetDocPropAttributeBytesIndexedList(), kAddSettings);
}
