// PrintJob: keys of jobs.
#include <mvutil/printjob.h>

#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>

namespace {

CXString MakeKeyPart(CXString name) {
    name.Replace(W("/"), W("_"));
    return name;
}

}  // namespace

CXString PrintJob::GetLumeoPrintJobIDkey(HANDLE printer, LONG jobNumber, const CXString& owner) {
    return MorvaneUtilities::SafeFormatString(W("%s/%ld/%s"), MakeKeyPart(Printer(printer).GetPrinterName()), jobNumber,
                                              MakeKeyPart(owner));
}
