// DocumentSet: the documents that the checks of documents are made of, and the operations as functions on their texts.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "testbench.h"

// What an operation makes of a document.
struct DocumentOperation {
    const char* name;
    bool isForCapabilities;
    std::function<std::string(const std::string& document)> run;
};

class DocumentSet {
public:
    explicit DocumentSet(TestBench& bench);

    // Of the core driver, before the provider, with all namespaces declared.
    const std::string& GetCoreTicket() const noexcept { return coreTicket_; }
    const std::string& GetCoreCapabilities() const noexcept { return coreCapabilities_; }
    // DEVMODEs whose tickets differ.
    const std::vector<DevmodeSettings>& GetSettings() const noexcept { return settings_; }

    // Each notes its step and its input, and throws CheckFailure when the operation does not succeed.
    std::string MakeTicket(const std::string& coreTicket, const DevmodeSettings& settings = {});
    std::string ApplyTicket(const std::string& ticket);  // the bytes of a fresh DEVMODE after it
    std::string MakeCapabilities(const std::string& coreCapabilities, const std::string& ticket = {});
    std::string Expand(const std::string& ticket);
    std::string Validate(const std::string& ticket);
    std::string WriteCoreTicket(const DevmodeSettings& settings);

    // The four that leave a document.
    std::vector<DocumentOperation> ListOperations();

private:
    TestBench::Document Read(const std::string& text);
    void Require(const char* call, HRESULT result);

    TestBench& bench_;
    std::unique_ptr<PrintSession> session_;
    std::string coreTicket_, coreCapabilities_;
    std::vector<DevmodeSettings> settings_;
};
