// TestBench: what a check works with: the provider's library, a printer, the core driver's documents, chance, and the
// note of what is being done.
#pragma once

#include <subsystem/devmodemaker.h>
#include <subsystem/printsession.h>

#include <cstdint>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "stepnote.h"

// What a check found to be wrong: a sentence without a final full stop.
class CheckFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Why the check cannot be made of this provider or on this host.
class CheckNotApplicable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct BenchOptions {
    std::uint64_t seed = 1;
    unsigned seconds = 10;  // that a step may take, and that each random check goes on for in the long form
    bool isLong = false;
};

class TestBench {
public:
    using Document = PrintSession::Document;

    // The printer is installed; the note outlives the bench.
    TestBench(ProviderSource source, const CXString& printer, const BenchOptions& options, StepNote& note);

    const BenchOptions& GetOptions() const noexcept { return options_; }
    // The same numbers in every run with the same seed.
    std::mt19937_64& GetRandom() noexcept { return random_; }
    // How often a check repeats something: the first in the short form, the second in the long one.
    std::size_t Choose(std::size_t shortForm, std::size_t longForm) const noexcept {
        return options_.isLong ? longForm : shortForm;
    }

    const ProviderLibrary& GetLibrary() const noexcept { return *source_.plugIn; }
    const ProviderSource& GetSource() const noexcept { return source_; }
    // The bench has no library from here on; without objects of it, it is unloaded. Returns its file.
    std::filesystem::path DropLibrary() {
        std::filesystem::path file = source_.plugIn->GetFile();
        source_.plugIn.reset();
        return file;
    }
    const CXString& GetPrinterName() const noexcept { return printer_; }
    // A printer of another product beside it; empty where there is none.
    const CXString& GetOtherPrinterName() const noexcept { return otherPrinter_; }
    void SetOtherPrinterName(const CXString& name) { otherPrinter_ = name; }
    // Opens the printer and binds a new provider to it. Throws OperationError where that is refused.
    std::unique_ptr<PrintSession> OpenSession() const { return OpenSession(printer_); }
    std::unique_ptr<PrintSession> OpenSession(const CXString& printer) const {
        return std::make_unique<PrintSession>(printer, source_);
    }
    // An unbound provider of the library, with a reference count of 1.
    ComPtr<IPrintOemPrintTicketProvider> MakeProvider() const { return GetLibrary().MakeProvider(); }

    // A DEVMODE of the product's defaults and these settings; without the driver family's private block where the
    // provider knows nothing of it.
    DevmodeBuffer MakeDevmode(const PrintSession& session, const DevmodeSettings& settings = {}) const;
    // The core driver's documents, as a provider gets them: with all namespaces declared.
    Document MakeCoreTicket(const PrintSession& session, const DevmodeBuffer& devmode) const;
    Document MakeCoreCapabilities(const PrintSession& session) const;

    // Notes what is done next, and with what: reported, and kept, when the provider fails, crashes or hangs there. Each
    // note shows that the check goes on: one before each call, or each few hundred of them.
    void Step(std::string_view sentence) { note_.SetStep(sentence); }
    void SetInput(const DevmodeBuffer& devmode) { note_.SetInput("bin", devmode.GetBytesView()); }
    void SetInput(IXMLDOMDocument2* document) { note_.SetInput("xml", FormatDocument(document)); }
    void SetInput(const char* extension, std::string_view bytes) { note_.SetInput(extension, bytes); }
    void ClearInput() { note_.SetInput("", {}); }

    // Throw CheckFailure; the step and the input that are noted are reported with it.
    [[noreturn]] void Fail(const std::string& found) const { throw CheckFailure(found); }
    void Require(bool holds, const std::string& elseFound) const {
        if (!holds) Fail(elseFound);
    }
    void RequireResult(const char* call, HRESULT result, HRESULT expected) const;

    // A line that is shown with a check that passed: what was measured.
    void Note(const std::string& line) { notes_.push_back(line); }
    const std::vector<std::string>& GetNotes() const noexcept { return notes_; }

private:
    ProviderSource source_;
    CXString printer_, otherPrinter_;
    BenchOptions options_;
    StepNote& note_;
    std::mt19937_64 random_;
    std::vector<std::string> notes_;
};
