// demo: the settings of a job on their way through the component, on each of the products.
#include <capabilitycaches.h>
#include <printerinstall.h>
#include <privateblock.h>
#include <xdevmode.h>

#include <algorithm>
#include <iomanip>
#include <memory>
#include <ostream>

#include <subsystem/devmodemaker.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/installedprinter.h>
#include <subsystem/jobticket.h>
#include <subsystem/printsession.h>
#include <subsystem/productfiles.h>
#include <subsystem/xmlfile.h>
#include "commands.h"
#include "providerchoice.h"

namespace {

// What the job of the demonstration sets beside the product's defaults: public fields, and the driver's own copy count.
const DevmodeSettings kJobSettings = {{{"dmCopies", "3"}, {"dmOrientation", "2"}}, {{"43", "3"}}};

const char* Answer(bool yes) { return yes ? "yes" : "no"; }

bool HaveSamePublicPart(const DevmodeBuffer& a, const DevmodeBuffer& b) {
    return a.GetPublicBytes() == b.GetPublicBytes() &&
           a.GetBytesView().substr(0, a.GetPublicBytes()) == b.GetBytesView().substr(0, b.GetPublicBytes());
}

bool HaveSamePrivateBlock(DevmodeBuffer& a, DevmodeBuffer& b) {
    const BYTE* first = XDevmode::GetOemDevmodeFromDevmode(a.Get());
    const BYTE* second = XDevmode::GetOemDevmodeFromDevmode(b.Get());
    return first && second && std::equal(first, first + privateblock::kBytes, second);
}

// Writes one file of the demonstration and prints its name and size.
void Leave(std::ostream& out, const std::filesystem::path& folder, const char* name, std::string_view bytes,
           const char* account) {
    WriteWholeFile(folder / name, bytes);
    out << "  " << std::left << std::setw(18) << name << std::right << std::setw(6) << bytes.size() << " bytes  "
        << account << '\n';
}

// Whether everything came back as it went.
bool ShowProduct(std::ostream& out, const std::filesystem::path& productFile, const std::filesystem::path& folder,
                 const ProviderSource& provider) {
    const auto product = LoadProduct(productFile);
    const CXString printer = CXString::FromUtf8("Demo " + PathToUtf8(productFile.stem()));
    InstallPrinter(printer.AsWideString(), productFile, WideString());
    RebuildCapabilityCaches(OpenInstalledPrinter(printer).Get());
    const PrintSession session(printer, provider);
    MakeFolder(folder);

    out << product->modelName << ", installed as '" << printer.ToUtf8() << "':\n";
    DevmodeBuffer devmode = MakeDevmode(*product, printer.AsWideString(), kJobSettings);
    Leave(out, folder, "devmode.bin", devmode.GetBytesView(), "a job's settings, as programs hand them to the driver");

    const PrintSession::Document ticket = session.MakeTicket(devmode);
    Leave(out, folder, "ticket.xml", FormatDocument(ticket.Get()),
          "the same settings as a PrintTicket, made by the component");

    if (const std::optional<std::string> jobTicket = ReadJobTicket(ticket.Get()))
        Leave(out, folder, "jobticket.txt", *jobTicket, "the job ticket in it, which tells the controller what to do");

    DevmodeBuffer back = MakeDevmode(*product, printer.AsWideString(), {});
    session.ApplyTicket(ticket.Get(), back);
    Leave(out, folder, "devmode-back.bin", back.GetBytesView(),
          "a DEVMODE of default settings, after the ticket was applied to it");

    const PrintSession::Document capabilities = session.MakeCapabilities(ticket.Get());
    Leave(out, folder, "capabilities.xml", FormatDocument(capabilities.Get()), "what the printer can do");

    const bool samePublicPart = HaveSamePublicPart(devmode, back);
    const bool samePrivateBlock = HaveSamePrivateBlock(devmode, back);
    out << "  devmode.bin and devmode-back.bin have the same public fields: " << Answer(samePublicPart)
        << ", the same private block: " << Answer(samePrivateBlock) << "\n\n";
    return samePublicPart && samePrivateBlock;
}

void RunDemo(HostContext& context, const std::string& output, const ProviderChoice& provider) {
    const ProviderSource source = MakeProviderSource(provider);
    const std::vector<std::filesystem::path> products = FindKnownProducts().files;
    if (products.empty()) throw InputError("there are no products beside the program; build or install it whole");
    const std::filesystem::path folder = output.empty() ? MakeTemporaryFolder("mvpthost-demo-") : PathFromUtf8(output);
    context.UseThrowawayStore();
    context.out << "The settings of a print job travel from a DEVMODE to a PrintTicket and back,\n"
                   "through the driver's PrintTicket provider, on "
                << products.size() << " products.\n\n";
    bool allSame = true;
    for (const std::filesystem::path& product : products)
        allSame = ShowProduct(context.out, product, folder / product.stem(), source) && allSame;
    context.out << "The files are in " << PathToUtf8(folder)
                << "; 'mvpthost devmode show FILE' shows what a DEVMODE holds.\n";
    if (!allSame) throw OperationError("a DEVMODE came back changed; compare the files named above");
}

}  // namespace

void AddDemoCommand(Command app, HostContext& context) {
    const auto folder = std::make_shared<std::string>();
    const auto provider = std::make_shared<ProviderChoice>();
    const Command demo = app.AddCommand("demo", "Shows a job's settings travel through the component on each product",
                                        [&context, folder, provider] { RunDemo(context, *folder, *provider); });
    demo.AddOption("-o,--out", *folder, "Folder for the files (default: a new temporary one)").NotEmpty();
    AddProviderOption(demo, *provider);
}
