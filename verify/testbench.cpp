// What a check works with.
#include "testbench.h"

#include <printsubsystem/driverextra.h>

#include <algorithm>

#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

TestBench::TestBench(ProviderSource source, const CXString& printer, const BenchOptions& options, StepNote& note)
    : source_(std::move(source)), printer_(printer), options_(options), note_(note), random_(options.seed) {}

DevmodeBuffer TestBench::MakeDevmode(const PrintSession& session, const DevmodeSettings& settings) const {
    DevmodeBuffer devmode =
        ::MakeDevmode(session.GetCoreDriver().GetProduct(), session.GetPrinter().GetName().AsWideString(), settings);
    if (!source_.coreProduct) return devmode;
    // The core driver's own part stays.
    DevmodeBuffer shorter(kCoreDriverPartBytes);
    shorter.SetPublicPart(devmode.CopyPublicPart());
    const std::string_view bytes = devmode.GetBytesView();
    std::copy_n(bytes.data() + devmode.GetPublicBytes(), kCoreDriverPartBytes,
                reinterpret_cast<char*>(shorter.Get()) + shorter.GetPublicBytes());
    return shorter;
}

TestBench::Document TestBench::MakeCoreTicket(const PrintSession& session, const DevmodeBuffer& devmode) const {
    Document ticket = ReadDocumentBytes(session.GetCoreDriver().WriteTicket(devmode.CopyPublicPart()),
                                        "the core driver's PrintTicket");
    session.DeclareNamespaces(ticket.Get());
    return ticket;
}

TestBench::Document TestBench::MakeCoreCapabilities(const PrintSession& session) const {
    Document capabilities =
        ReadDocumentBytes(session.GetCoreDriver().WriteCapabilities(), "the core driver's PrintCapabilities");
    session.DeclareNamespaces(capabilities.Get());
    return capabilities;
}

void TestBench::RequireResult(const char* call, HRESULT result, HRESULT expected) const {
    if (result != expected)
        Fail(std::string(call) + " answers " + DescribeHresult(result) + " and not " + DescribeHresult(expected));
}
