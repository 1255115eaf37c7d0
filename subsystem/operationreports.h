// OperationReports: the failures that the component reports while a command runs.
#pragma once

#include <mvutil/morvaneexception.h>

#include <mutex>
#include <string>
#include <vector>

// Collects from construction to destruction, from all threads; one object at a time in a process.
class OperationReports {
public:
    OperationReports();
    ~OperationReports();
    OperationReports(const OperationReports&) = delete;
    OperationReports& operator=(const OperationReports&) = delete;

    // One line each, UTF-8, without line ends; of very many the first, and a line that counts the others.
    std::vector<std::string> Describe() const;

private:
    mutable std::mutex mutex_;
    std::vector<ExceptionReport> reports_;
    std::size_t count_ = 0;  // of all
    MorvaneException::ReportHook previous_;
};

// "ExceptionPrinterFailure in Printer::GetPrinterName: <message>"
std::string DescribeException(const MorvaneException& exception);
