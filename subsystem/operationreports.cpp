// The failures that the component reports while something is done.
#include "operationreports.h"

#include "hresultnames.h"

namespace {

constexpr std::size_t kMostReports = 50;  // that are kept word for word

constinit thread_local ReportList* reportsOfThread = nullptr;

std::string DescribeReport(const ExceptionReport& report) {
    std::string text = report.methodName.ToUtf8() + " (" + report.sourceFile.ToUtf8() + ", line " +
                       std::to_string(report.line) + ") caught ";
    text += report.className.IsEmpty() ? "an unknown exception" : report.className.ToUtf8();
    if (!report.thrownFrom.IsEmpty()) text += " from " + report.thrownFrom.ToUtf8();
    // Only an exception that carries an HRESULT states where it was thrown and why in numbers.
    if (report.className == CXString("MorvaneComException")) text += ": " + DescribeHresult(report.hresult);
    if (!report.message.IsEmpty()) text += ": " + report.message.ToUtf8();
    return text;
}

}  // namespace

void ReportList::Add(const ExceptionReport& report) noexcept {
    try {
        const std::lock_guard lock(mutex_);
        if (++count_ <= kMostReports) reports_.push_back(report);
    } catch (const std::exception&) {
        // A report that there is no memory for is lost; the failure itself is reported by the HRESULT.
    }
}

std::vector<std::string> ReportList::Describe() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> lines;
    for (const ExceptionReport& report : reports_) lines.push_back(DescribeReport(report));
    if (count_ > reports_.size()) lines.push_back("and " + std::to_string(count_ - reports_.size()) + " more");
    return lines;
}

OperationReports::OperationReports()
    : previous_(MorvaneException::SetReportHook([this](const ExceptionReport& report) { Add(report); })) {}

OperationReports::~OperationReports() { MorvaneException::SetReportHook(std::move(previous_)); }

ThreadReports::ThreadReports() {
    static std::once_flag hooked;
    std::call_once(hooked, [] {
        MorvaneException::SetReportHook([](const ExceptionReport& report) {
            if (reportsOfThread) reportsOfThread->Add(report);
        });
    });
    reportsOfThread = this;
}

ThreadReports::~ThreadReports() { reportsOfThread = nullptr; }

std::string DescribeException(const MorvaneException& exception) {
    std::string text = std::string(exception.GetClassName()) + " in " + exception.GetMethodName().ToUtf8();
    if (!exception.GetMessageText().IsEmpty()) text += ": " + exception.GetMessageText().ToUtf8();
    return text;
}
