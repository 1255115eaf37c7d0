// OperationTrial: one of a provider's operations, called with a document that may be anything, and what must hold after
// each such call.
#pragma once

#include <subsystem/hosterror.h>

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "binding.h"
#include "testbench.h"

// The five operations; the completion of capabilities once with the capabilities as the document, once with the ticket.
enum class OperationKind { Ticket, Apply, Capabilities, CapabilitiesForTicket, Expand, Validate };
std::span<const OperationKind> ListOperationKinds();

class OperationTrial {
public:
    using Document = TestBench::Document;

    // The operation's own document and DEVMODE are made here, and the result that they lead to.
    OperationTrial(TestBench& bench, const PrintSession& session, OperationKind kind);

    const char* GetCall() const noexcept;  // the method's name
    const std::string& GetDocument() const noexcept { return document_; }
    Document ReadDocument() const;

    // Calls the operation and returns what it answered. The provider sees the stand-in where there is one. Throws
    // CheckFailure when an exception came out of the call, when the answer is none of those that are published, when
    // the reference count of the document is another than before, when the sizes of the DEVMODE are others, or when the
    // document is none any more or has another root.
    HRESULT Call(IXMLDOMDocument2* document, IXMLDOMDocument2* standIn = nullptr,
                 const CallSurroundings& surroundings = {}) const;
    // Calls it with its own document. Throws CheckFailure when the result is not the one that it was at first.
    void RequireAsEver() const;

private:
    struct Result {
        HRESULT answer;
        std::string document;
        std::string devmode;
        friend bool operator==(const Result&, const Result&) = default;
    };

    HRESULT CallProvider(IXMLDOMDocument2* document, DevmodeBuffer& devmode, IXMLDOMDocument2* capabilities) const;
    Result Run(IXMLDOMDocument2* document, IXMLDOMDocument2* seen, const CallSurroundings& surroundings) const;

    TestBench& bench_;
    const PrintSession& session_;
    OperationKind kind_;
    DevmodeBuffer devmode_;
    std::string document_;
    std::string capabilities_;  // those that are completed for a ticket
    Result expected_;
};

// Whether the published contract has the answer: any failure, S_OK, S_FALSE and the two of a validation.
bool IsPublishedResult(HRESULT result) noexcept;

// What the function found wrong, by the CheckFailure or the failure of the print subsystem that it ended with.
template <class Function>
std::optional<std::string> FindFault(Function function) {
    try {
        function();
        return std::nullopt;
    } catch (const CheckFailure& failure) {
        return failure.what();
    } catch (const HostError& failure) {
        return failure.what();
    }
}

// The answer of a call on the provider. What comes out of the call beside it ends the check.
template <class Call>
HRESULT CallBehindWall(const TestBench& bench, const char* name, Call call) {
    std::string thrown;
    try {
        return call();
    } catch (const std::exception& exception) {
        thrown = std::string(": ") + exception.what();
    } catch (...) {
    }
    bench.Fail(std::string(name) + " let an exception out" + thrown);
}
