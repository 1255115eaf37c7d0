// DEVMODEs at the edge of what may be read: each ends at an unreadable page, and bytes before it stay as they are.
#include <subsystem/xmlfile.h>

#include <algorithm>
#include <cstring>

#include <verify/check.h>
#include <verify/guardedmemory.h>
#include <verify/testbench.h>

namespace {

constexpr std::size_t kBytesBefore = 256;
constexpr std::byte kCanary{0xC5};

// A DEVMODE's bytes that end where memory does, as near as its alignment allows.
class EdgeDevmode {
public:
    // The first bytes of the DEVMODE, whose public and extra parts are made to fit them.
    EdgeDevmode(const DevmodeBuffer& whole, std::size_t bytes)
        : bytes_(bytes), start_(GetEndOfGuardedMemory() - (bytes + kAlignment - 1) / kAlignment * kAlignment) {
        std::fill(start_ - kBytesBefore, GetEndOfGuardedMemory(), kCanary);
        std::memcpy(start_, whole.GetBytesView().data(), bytes);
        const WORD publicBytes = static_cast<WORD>(std::min<std::size_t>(bytes, whole.GetPublicBytes()));
        StoreWord(offsetof(DEVMODEW, dmSize), publicBytes);
        StoreWord(offsetof(DEVMODEW, dmDriverExtra), static_cast<WORD>(bytes - publicBytes));
    }

    DEVMODEW* Get() const { return reinterpret_cast<DEVMODEW*>(start_); }
    ULONG GetBytes() const { return static_cast<ULONG>(bytes_); }
    std::string_view GetView() const { return {reinterpret_cast<const char*>(start_), bytes_}; }
    bool IsAloneChanged() const {
        const auto isCanary = [](std::byte byte) { return byte == kCanary; };
        return std::all_of(start_ - kBytesBefore, start_, isCanary) &&
               std::all_of(start_ + bytes_, GetEndOfGuardedMemory(), isCanary);
    }

private:
    static constexpr std::size_t kAlignment = alignof(DEVMODEW);

    void StoreWord(std::size_t offset, WORD word) {
        if (offset + sizeof(word) <= bytes_) std::memcpy(start_ + offset, &word, sizeof(word));
    }

    std::size_t bytes_;
    std::byte* start_;
};

void StaysInsideTheDevmode(TestBench& bench) {
    const auto session = bench.OpenSession();
    const DevmodeBuffer whole = bench.MakeDevmode(*session);
    const std::string ticketText = FormatDocument(bench.MakeCoreTicket(*session, whole).Get());
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    // Every size that ends in the public part, which has the fields; of the private part some, in the long form all.
    const std::size_t publicBytes = whole.GetPublicBytes(), step = bench.Choose(37, 1);
    for (std::size_t bytes = 0; bytes <= whole.GetBytes();
         bytes = bytes == whole.GetBytes() ? bytes + 1
                 : bytes < publicBytes     ? bytes + 1
                                           : std::min<std::size_t>(bytes + step, whole.GetBytes())) {
        const EdgeDevmode devmode(whole, bytes);
        bench.SetInput("bin", devmode.GetView());
        const auto ticket = ReadDocumentBytes(ticketText, "the ticket");
        const auto require = [&](const char* call) {
            bench.Require(devmode.IsAloneChanged(),
                          std::string(call) + " writes beside a DEVMODE of " + std::to_string(bytes) + " bytes");
        };
        bench.Step("ConvertDevModeToPrintTicket of " + std::to_string(bytes) + " bytes");
        provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), 0, nullptr, ticket.Get());
        require("ConvertDevModeToPrintTicket");
        bench.Step("ConvertPrintTicketToDevMode onto " + std::to_string(bytes) + " bytes");
        provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(), 0, nullptr);
        require("ConvertPrintTicketToDevMode");
    }
}

// The private part, handed in beside the DEVMODE, ends at the unreadable page.
void StaysInsideThePrivatePart(TestBench& bench) {
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const std::string_view own = devmode.GetBytesView().substr(devmode.GetPublicBytes());
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    const std::size_t step = bench.GetOptions().isLong ? 1 : 1 + own.size() / 20;
    for (std::size_t bytes = 0; bytes <= own.size(); bytes += step) {
        std::byte* const start = GetEndOfGuardedMemory() - bytes;
        std::fill(start - kBytesBefore, start, kCanary);
        std::memcpy(start, own.data(), bytes);
        const ULONG size = static_cast<ULONG>(bytes);
        bench.Step("the conversions with a private part of " + std::to_string(bytes) + " bytes");
        provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), size, start, ticket.Get());
        provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(), size, start);
        bench.Require(std::all_of(start - kBytesBefore, start, [](std::byte byte) { return byte == kCanary; }),
                      "a conversion writes before a private part of " + std::to_string(bytes) + " bytes");
    }
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Memory, "devmode-edges",
      "DEVMODEs of every size that end at an unreadable page, with bytes before them that must stay",
      StaysInsideTheDevmode}},
    {{CheckGroup::Memory, "private-part-edges", "private parts that end at an unreadable page",
      StaysInsideThePrivatePart}},
};

}  // namespace
