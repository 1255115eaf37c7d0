// Documents that are damaged, odd or huge, as applications send them: every operation answers, what it leaves is a
// document, and a good one leads afterwards to what it led to before.
#include <subsystem/xmlfile.h>

#include <chrono>

#include <verify/check.h>
#include <verify/documentcorruptor.h>
#include <verify/operationtrial.h>
#include <verify/shrink.h>

namespace {

using Clock = std::chrono::steady_clock;

// One operation on documents that are damaged.
class DocumentTrial {
public:
    DocumentTrial(TestBench& bench, OperationKind kind)
        : bench_(bench),
          kind_(kind),
          session_(bench.OpenSession()),
          trial_(bench, *session_, kind),
          corruptor_(trial_.GetDocument(), bench.GetRandom()) {}

    const DocumentCorruptor& GetCorruptor() const { return corruptor_; }
    const std::string& GetDocument() const { return trial_.GetDocument(); }

    // Tries the document with these edits, and makes them fewer where that fails. What no reader takes never comes to
    // the provider.
    void Try(const DocumentEdits& edits) const {
        if (!FindFault([&] { TryOnce(trial_, edits); })) return;
        const DocumentEdits fewer = Shrink(edits, [&](const DocumentEdits& some) { return TryAnew(some).has_value(); });
        const auto fault = TryAnew(fewer);
        bench_.Fail((fault ? *fault : "a fault that does not show again") + "; in the document " +
                    DescribeEdits(fewer));
    }

private:
    // Nothing where a good document already leads to something else in a session of its own.
    std::optional<std::string> TryAnew(const DocumentEdits& edits) const {
        const auto session = bench_.OpenSession();
        const OperationTrial trial(bench_, *session, kind_);
        return FindFault([&] { TryOnce(trial, edits); });
    }

    void TryOnce(const OperationTrial& trial, const DocumentEdits& edits) const {
        const std::string text = MakeDamaged(trial.GetDocument(), edits);
        TestBench::Document document;
        try {
            document = ReadDocumentBytes(text, "the document");
        } catch (const HostError&) {
            return;
        }
        bench_.SetInput("xml", text);
        bench_.Step(trial.GetCall());
        trial.Call(document.Get());
        bench_.Step(trial.GetCall() + std::string(" with a good document, after a damaged one"));
        trial.RequireAsEver();
    }

    TestBench& bench_;
    OperationKind kind_;
    std::unique_ptr<PrintSession> session_;
    OperationTrial trial_;
    DocumentCorruptor corruptor_;
};

constexpr std::size_t kFewCuts = 25, kFewElements = 4, kFewRandomOnes = 25;

template <class Function>
void ForEachOperation(TestBench& bench, Function function) {
    for (const OperationKind kind : ListOperationKinds()) function(DocumentTrial(bench, kind));
}

// At every byte, or from a random one on at as many as the short form has.
void TryCuts(TestBench& bench) {
    ForEachOperation(bench, [&](const DocumentTrial& trial) {
        const std::size_t bytes = trial.GetDocument().size(), count = bench.Choose(kFewCuts, bytes);
        for (std::size_t index = 0, first = bench.GetRandom()() % bytes; index < count; ++index)
            trial.Try({trial.GetCorruptor().MakeCut((first + index * bytes / count) % bytes)});
    });
}

void TryElements(TestBench& bench) {
    ForEachOperation(bench, [&](const DocumentTrial& trial) {
        const std::size_t elements = trial.GetCorruptor().CountElements() - 1;
        const std::size_t count = std::min(elements, bench.Choose(kFewElements, elements));
        for (std::size_t index = 0, first = bench.GetRandom()(); index < count; ++index)
            for (const DocumentEdits& edits :
                 trial.GetCorruptor().ListEditsOf(1 + (first + index * elements / count) % elements))
                trial.Try(edits);
    });
}

void TryAtRandom(TestBench& bench) {
    const std::chrono::duration<double> each(bench.GetOptions().seconds /
                                             static_cast<double>(ListOperationKinds().size()));
    ForEachOperation(bench, [&](const DocumentTrial& trial) {
        const auto begin = Clock::now();
        for (std::size_t number = 0;
             number < kFewRandomOnes || (bench.GetOptions().isLong && Clock::now() - begin < each); ++number)
            trial.Try(trial.GetCorruptor().MakeRandom());
    });
}

std::string Repeat(std::size_t count, std::string_view before, std::string_view after) {
    std::string text;
    for (std::size_t number = 0; number < count; ++number)
        text.append(before).append(after.empty() ? "" : std::to_string(number)).append(after);
    return text;
}

void TryHugeOnes(TestBench& bench) {
    const std::size_t many = bench.Choose(2000, 10000), long_ = bench.Choose(100000, 2000000);
    const std::string times = std::to_string(many) + " ", characters = " of " + std::to_string(long_) + " characters";
    ForEachOperation(bench, [&](const DocumentTrial& trial) {
        const DocumentCorruptor& corruptor = trial.GetCorruptor();
        trial.Try({corruptor.MakeContent("psf:Value", 2, std::string(long_, 'A'), "holds values" + characters)});
        trial.Try({corruptor.MakeContent("psf:Feature", 1, "<psf:Option name=\"psk:" + std::string(long_, 'n') + "\"/>",
                                         "has an option with a name" + characters)});
        trial.Try({corruptor.MakeInsertion("psf:Feature", 1, Repeat(many, "<psf:Option name=\"psk:Odd", "\"/>"),
                                           "has a feature of " + times + "more options")});
        for (const std::string root : {"psf:PrintTicket", "psf:PrintCapabilities"}) {
            trial.Try({corruptor.MakeInsertion(
                root, 1,
                Repeat(many, "<psf:Feature name=\"psk:PageOdd", "\"><psf:Option name=\"psk:None\"/></psf:Feature>"),
                "has " + times + "more features")});
            trial.Try({corruptor.MakeInsertion(root, 1,
                                               "<!--" + std::string(long_, '-').replace(0, long_, long_, '*') + "-->",
                                               "has a comment" + characters)});
            trial.Try({corruptor.MakeInsertion(root, 1,
                                               "<psf:Property" + Repeat(many, " xmlns:p", "=\"urn:p\"") +
                                                   " name=\"psk:PageOdd\"><psf:Value>1</psf:Value></psf:Property>",
                                               "has a property with " + times + "declarations")});
        }
    });
}

// Depths that a reader takes, and some beyond.
constexpr std::size_t kDepths[] = {30, 100, 250, 2000, 20000};

void TryDeepOnes(TestBench& bench) {
    ForEachOperation(bench, [&](const DocumentTrial& trial) {
        for (const std::size_t depth : kDepths) {
            const auto tryWithin = [&](const std::string& place, const std::string& element, const char* attributes) {
                const std::string nested =
                    Repeat(depth, "<" + element + attributes + ">", "") + Repeat(depth, "</" + element + ">", "");
                trial.Try({trial.GetCorruptor().MakeInsertion(
                    place, 1, nested, "has " + std::to_string(depth) + " " + element + " one inside the other")});
            };
            for (const char* const root : {"psf:PrintTicket", "psf:PrintCapabilities"}) {
                tryWithin(root, "psf:Feature", " name=\"psk:PageOdd\"");
                tryWithin(root, "psf:Property", " name=\"psk:PageOdd\"");
                tryWithin(root, "x:y", " xmlns:x=\"urn:x\"");
            }
            tryWithin("psf:Option", "psf:ScoredProperty", " name=\"psk:MediaSizeWidth\"");
        }
    });
}

const CheckRegistration kCuts({CheckGroup::Damage, "documents-cut",
                               "documents that end at any byte, with what is open there closed", TryCuts});
const CheckRegistration kElements({CheckGroup::Damage, "documents-odd",
                                   "elements doubled, dropped, moved, renamed, emptied; attributes gone; odd values",
                                   TryElements});
const CheckRegistration kAtRandom({CheckGroup::Damage, "documents-at-random",
                                   "documents with a handful of random damages each", TryAtRandom});
const CheckRegistration kHugeOnes({CheckGroup::Damage, "documents-huge",
                                   "long values, names and comments; thousands of options, features and declarations",
                                   TryHugeOnes});
const CheckRegistration kDeepOnes({CheckGroup::Damage, "documents-deep",
                                   "elements nested as deep as a reader takes them", TryDeepOnes});

}  // namespace
