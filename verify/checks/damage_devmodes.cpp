// DEVMODEs that are damaged, as other drivers, other versions and bad luck leave them: a provider answers, keeps to the
// DEVMODE's bytes, and converts a good one afterwards as it did before.
#include <subsystem/documentkind.h>
#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include <verify/check.h>
#include <verify/devmodecorruptor.h>
#include <verify/guardedmemory.h>
#include <verify/operationtrial.h>
#include <verify/shrink.h>

namespace {

using Document = TestBench::Document;

// A DEVMODE as near to the unreadable page as its alignment allows; before and behind it lie bytes that stay.
class GuardedDevmode {
public:
    explicit GuardedDevmode(const DevmodeBytes& bytes)
        : bytes_(bytes.size()),
          start_(reinterpret_cast<BYTE*>(GetEndOfGuardedMemory()) -
                 (bytes.size() + kAlignment - 1) / kAlignment * kAlignment) {
        std::fill(start_ - kBytesBefore, GetEnd(), kCanary);
        std::copy(bytes.begin(), bytes.end(), start_);
    }

    DEVMODEW* Get() const { return reinterpret_cast<DEVMODEW*>(start_); }
    ULONG GetBytes() const { return static_cast<ULONG>(bytes_); }
    std::string_view GetView() const { return {reinterpret_cast<const char*>(start_), bytes_}; }
    // What a caller who looks at the bytes that there are takes for the private part.
    std::size_t GetPrivateStart() const {
        return std::min<std::size_t>(bytes_, ReadWordAt(offsetof(DEVMODEW, dmSize)));
    }
    PVOID GetPrivatePart() const { return start_ + GetPrivateStart(); }
    ULONG GetPrivateBytes() const {
        return static_cast<ULONG>(
            std::min<std::size_t>(bytes_ - GetPrivateStart(), ReadWordAt(offsetof(DEVMODEW, dmDriverExtra))));
    }
    bool IsAloneChanged() const {
        const auto isCanary = [](BYTE byte) { return byte == kCanary; };
        return std::all_of(start_ - kBytesBefore, start_, isCanary) && std::all_of(start_ + bytes_, GetEnd(), isCanary);
    }

private:
    static constexpr std::size_t kAlignment = alignof(DEVMODEW);
    static constexpr std::size_t kBytesBefore = 256;
    static constexpr BYTE kCanary = 0xC5;

    BYTE* GetEnd() const { return reinterpret_cast<BYTE*>(GetEndOfGuardedMemory()); }
    WORD ReadWordAt(std::size_t offset) const {
        WORD word = 0;
        if (offset + sizeof(word) <= bytes_) std::memcpy(&word, start_ + offset, sizeof(word));
        return word;
    }

    std::size_t bytes_;
    BYTE* start_;
};

class DevmodeTrial {
public:
    explicit DevmodeTrial(TestBench& bench)
        : bench_(bench),
          session_(bench.OpenSession()),
          good_(bench.MakeDevmode(*session_)),
          coreTicket_(FormatDocument(bench.MakeCoreTicket(*session_, good_).Get())) {
        DevmodeBuffer devmode = good_;
        ticket_ = FormatDocument(session_->MakeTicket(devmode, Read(coreTicket_)).Get());
    }

    std::string_view GetGood() const { return good_.GetBytesView(); }

    // Tries a good DEVMODE with these edits, and makes them fewer where that fails.
    void Try(const DevmodeEdits& edits) {
        if (!FindFault([&] { TryOnce(edits); })) return;
        const DevmodeEdits fewer = Shrink(edits, [&](const DevmodeEdits& some) {
            session_ = bench_.OpenSession();
            return !FindFault([&] { RequireAsEver(); }) && FindFault([&] { TryOnce(some); });
        });
        session_ = bench_.OpenSession();
        const auto fault = FindFault([&] { TryOnce(fewer); });
        bench_.Fail((fault ? *fault : "a fault that does not show again") + "; in the DEVMODE " + DescribeEdits(fewer));
    }

private:
    static Document Read(const std::string& text) { return ReadDocumentBytes(text, "the ticket"); }

    void TryOnce(const DevmodeEdits& edits) {
        const DevmodeBytes bytes = MakeDamaged(GetGood(), edits);
        bench_.SetInput("bin", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        IPrintOemPrintTicketProvider& provider = *session_->GetProvider();
        RequireSound("ConvertDevModeToPrintTicket", bytes, coreTicket_,
                     [&](const GuardedDevmode& devmode, const Document& ticket) {
                         return provider.ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(),
                                                                     devmode.GetPrivateBytes(),
                                                                     devmode.GetPrivatePart(), ticket.Get());
                     });
        RequireSound(
            "ConvertPrintTicketToDevMode", bytes, ticket_, [&](const GuardedDevmode& devmode, const Document& ticket) {
                return provider.ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(),
                                                            devmode.GetPrivateBytes(), devmode.GetPrivatePart());
            });
        RequireAsEver();
    }

    template <class Call>
    void RequireSound(const char* name, const DevmodeBytes& bytes, const std::string& document, Call call) {
        const GuardedDevmode devmode(bytes);
        const Document ticket = Read(document);
        const ULONG references = CountReferences(ticket.Get());
        bench_.Step(name);
        const HRESULT answer = CallBehindWall(bench_, name, [&] { return call(devmode, ticket); });
        const std::string call_ = name;
        bench_.Require(IsPublishedResult(answer),
                       call_ + " answered " + DescribeHresult(answer) + ", which is not published");
        bench_.Require(devmode.IsAloneChanged(), call_ + " wrote beside the DEVMODE");
        constexpr std::size_t sizes = offsetof(DEVMODEW, dmSize), end = offsetof(DEVMODEW, dmFields);
        const std::string_view before(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        bench_.Require(
            bytes.size() < end || before.substr(sizes, end - sizes) == devmode.GetView().substr(sizes, end - sizes),
            call_ + " changed the sizes of the DEVMODE");
        bench_.Require(CountReferences(ticket.Get()) == references, call_ + " changed the ticket's reference count");
        RequireTicket(call_, ticket);
    }

    void RequireTicket(const std::string& call, const Document& ticket) const {
        try {
            RequireRoot(Read(FormatDocument(ticket.Get())).Get(), kTicketRoot, "the ticket");
        } catch (const HostError& error) {
            bench_.Fail(call + " left what is no ticket: " + error.what());
        }
    }

    void RequireAsEver() {
        bench_.Step("ConvertDevModeToPrintTicket of a good DEVMODE, after a damaged one");
        DevmodeBuffer devmode = good_;
        const Document ticket = Read(coreTicket_);
        const HRESULT answer = session_->CallTicket(devmode, ticket.Get());
        bench_.Require(SUCCEEDED(answer), "ConvertDevModeToPrintTicket of a good DEVMODE answers " +
                                              DescribeHresult(answer) + " after a damaged one");
        bench_.Require(FormatDocument(ticket.Get()) == ticket_,
                       "a good DEVMODE leads to another ticket after a damaged one than before");
    }

    TestBench& bench_;
    std::unique_ptr<PrintSession> session_;
    DevmodeBuffer good_;
    std::string coreTicket_, ticket_;
};

constexpr std::size_t kFewPrivateBytes = 60;
constexpr std::size_t kFewRandomOnes = 150;

void TryAll(DevmodeTrial& trial, const std::vector<DevmodeEdits>& list) {
    for (const DevmodeEdits& edits : list) trial.Try(edits);
}

void TryPublicFields(TestBench& bench) {
    DevmodeTrial trial(bench);
    TryAll(trial, DevmodeCorruptor(trial.GetGood(), bench.GetRandom()).ListPublicEdges());
}

void TrySizes(TestBench& bench) {
    DevmodeTrial trial(bench);
    TryAll(trial, DevmodeCorruptor(trial.GetGood(), bench.GetRandom()).ListSizes());
}

void TryPrivateBytes(TestBench& bench) {
    DevmodeTrial trial(bench);
    const DevmodeCorruptor corruptor(trial.GetGood(), bench.GetRandom());
    TryAll(trial, corruptor.ListHeaders());
    TryAll(trial, corruptor.ListPrivateFlips(bench.Choose(kFewPrivateBytes, trial.GetGood().size())));
    TryAll(trial, corruptor.ListOddAttributes(bench.Choose(kFewPrivateBytes, 1000)));
}

void TryAtRandom(TestBench& bench) {
    DevmodeTrial trial(bench);
    const DevmodeCorruptor corruptor(trial.GetGood(), bench.GetRandom());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(bench.GetOptions().seconds);
    for (std::size_t number = 0;
         number < kFewRandomOnes || (bench.GetOptions().isLong && std::chrono::steady_clock::now() < end); ++number)
        trial.Try(corruptor.MakeRandom());
}

const CheckRegistration kPublicFields({CheckGroup::Damage, "devmode-fields",
                                       "every public field of a DEVMODE at the edges of what it can hold",
                                       TryPublicFields});
const CheckRegistration kSizes({CheckGroup::Damage, "devmode-sizes",
                                "DEVMODEs that are cut, too long, or lie about their sizes", TrySizes});
const CheckRegistration kPrivateBytes(
    {CheckGroup::Damage, "devmode-private-bytes",
     "private bytes of a DEVMODE changed: headers, counts, lengths, checksums, values", TryPrivateBytes});
const CheckRegistration kAtRandom({CheckGroup::Damage, "devmodes-at-random",
                                   "DEVMODEs with a handful of random damages each", TryAtRandom});

}  // namespace
