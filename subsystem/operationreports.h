// The failures that the component reports while something is done.
#pragma once

#include <mvutil/morvaneexception.h>

#include <mutex>
#include <string>
#include <vector>

// For any number of threads.
class ReportList {
public:
    void Add(const ExceptionReport& report) noexcept;
    // One line each, UTF-8, without line ends; of very many the first, and a line that counts the others.
    std::vector<std::string> Describe() const;

private:
    mutable std::mutex mutex_;
    std::vector<ExceptionReport> reports_;
    std::size_t count_ = 0;  // of all
};

// Collects from construction to destruction, from all threads; one object at a time in a process.
class OperationReports : public ReportList {
public:
    OperationReports();
    ~OperationReports();
    OperationReports(const OperationReports&) = delete;
    OperationReports& operator=(const OperationReports&) = delete;

private:
    MorvaneException::ReportHook previous_;
};

// Collects what its thread reports meanwhile; one object at a time in a thread. For libraries: from the first one on
// the process's hook is theirs, and what threads without an object report is dropped.
class ThreadReports : public ReportList {
public:
    ThreadReports();
    ~ThreadReports();
    ThreadReports(const ThreadReports&) = delete;
    ThreadReports& operator=(const ThreadReports&) = delete;
};

// "ExceptionPrinterFailure in Printer::GetPrinterName: <message>"
std::string DescribeException(const MorvaneException& exception);
