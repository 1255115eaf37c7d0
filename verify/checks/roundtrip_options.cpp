// What the capabilities offer, selected by a ticket, applied to a DEVMODE, and read back from a ticket made of it.
#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

#include <algorithm>
#include <set>

#include <verify/check.h>
#include <verify/offeredoptions.h>
#include <verify/testbench.h>

namespace {

class OptionsTrial {
public:
    explicit OptionsTrial(TestBench& bench)
        : bench_(bench),
          session_(bench.OpenSession()),
          offered_(FormatDocument(session_->MakeCapabilities().Get())),
          fresh_(bench.MakeDevmode(*session_)) {}

    const OfferedOptions& GetOffered() const { return offered_; }

    // The text of the ticket that is made of a fresh DEVMODE, after the ticket was applied to it.
    std::string TakeBack(const std::string& ticketText) {
        bench_.SetInput("xml", ticketText);
        DevmodeBuffer devmode = fresh_;
        session_->ApplyTicket(ReadDocumentBytes(ticketText, "the ticket").Get(), devmode);
        return FormatDocument(session_->MakeTicket(devmode).Get());
    }
    SelectedOptions Select(const std::vector<const OfferedOption*>& options) {
        std::string names;
        for (const OfferedOption* const option : options) names += ", " + OfferedOptions::Describe(*option);
        bench_.Step("a ticket with " + names.substr(2));
        return ReadSelectedOptions(TakeBack(offered_.SelectOptions(options)));
    }
    void RequireSelected(const SelectedOptions& selected, const OfferedOption& option) {
        if (IsSelected(selected, option)) return;
        const auto got = selected.find(option.feature);
        std::string found = got == selected.end() ? "nothing" : got->second;
        std::replace(found.begin(), found.end(), '\n', ' ');
        bench_.Fail(OfferedOptions::Describe(option) + " is offered, and comes back as " + found);
    }
    HRESULT Validate(const OfferedOption& option) {
        const std::string text = offered_.SelectOptions({&option});
        bench_.SetInput("xml", text);
        bench_.Step("ValidatePrintTicket with " + OfferedOptions::Describe(option));
        const auto ticket = ReadDocumentBytes(text, "the ticket");
        session_->DeclareNamespaces(ticket.Get());
        return session_->CallValidate(ticket.Get());
    }

private:
    TestBench& bench_;
    std::unique_ptr<PrintSession> session_;
    OfferedOptions offered_;
    DevmodeBuffer fresh_;
};

void EachOptionComesBack(TestBench& bench) {
    OptionsTrial trial(bench);
    bench.Require(!trial.GetOffered().GetOptions().empty(), "the capabilities offer no option at all");
    for (const OfferedOption& option : trial.GetOffered().GetOptions())
        trial.RequireSelected(trial.Select({&option}), option);
}

// Of each feature, those whose selection an option of it changes beside its own.
std::map<std::string, std::set<std::string>> FindLinks(OptionsTrial& trial) {
    const SelectedOptions fresh = ReadSelectedOptions(trial.TakeBack(trial.GetOffered().SelectOptions({})));
    std::map<std::string, std::set<std::string>> links;
    for (const OfferedOption& option : trial.GetOffered().GetOptions()) {
        SelectedOptions selected = trial.Select({&option});
        for (const auto& [feature, choice] : fresh)
            if (selected[feature] != choice) links[option.feature].insert(feature);
    }
    return links;
}

// Features that name the same setting are linked: an option of one selects one of the other. Of them no pair is tried.
void PairsComeBack(TestBench& bench) {
    constexpr std::size_t kFewPairs = 300;
    OptionsTrial trial(bench);
    const std::map<std::string, std::set<std::string>> links = FindLinks(trial);
    const auto isLinked = [&](const std::string& a, const std::string& b) {
        const auto found = links.find(a);
        return found != links.end() && found->second.contains(b);
    };
    std::vector<std::pair<const OfferedOption*, const OfferedOption*>> pairs;
    for (const OfferedOption& a : trial.GetOffered().GetOptions())
        for (const OfferedOption& b : trial.GetOffered().GetOptions())
            if (a.feature < b.feature && !isLinked(a.feature, b.feature) && !isLinked(b.feature, a.feature))
                pairs.emplace_back(&a, &b);
    std::shuffle(pairs.begin(), pairs.end(), bench.GetRandom());
    pairs.resize(std::min(pairs.size(), bench.Choose(kFewPairs, pairs.size())));
    for (const auto& [a, b] : pairs) {
        const SelectedOptions selected = trial.Select({a, b});
        trial.RequireSelected(selected, *a);
        trial.RequireSelected(selected, *b);
    }
}

void ParametersComeBack(TestBench& bench) {
    OptionsTrial trial(bench);
    const std::string fresh = trial.TakeBack(trial.GetOffered().SelectOptions({}));
    bool isAny = false;
    for (const OfferedParameter& parameter : trial.GetOffered().GetParameters()) {
        if (ReadParameter(fresh, parameter).empty()) continue;  // for a choice that a fresh DEVMODE has not
        isAny = true;
        for (const std::string& value : parameter.values) {
            bench.Step("a ticket with " + parameter.name + " " + value);
            const std::string back =
                ReadParameter(trial.TakeBack(trial.GetOffered().SetParameter(parameter, value)), parameter);
            bench.Require(back == value, parameter.name + " " + value + " is offered, and comes back as " +
                                             (back.empty() ? "nothing" : back));
        }
    }
    if (!isAny) throw CheckNotApplicable("no ticket states a number that the capabilities offer");
}

void OffersNothingThatIsRefused(TestBench& bench) {
    OptionsTrial trial(bench);
    for (const OfferedOption& option : trial.GetOffered().GetOptions()) {
        const HRESULT result = trial.Validate(option);
        bench.Require(result == S_NO_CONFLICT || result == S_CONFLICT_RESOLVED,
                      OfferedOptions::Describe(option) + " is offered, and ValidatePrintTicket answers " +
                          DescribeHresult(result));
    }
}

const CheckRegistration registrations[] = {
    {{CheckGroup::RoundTrip, "options", "every offered option of every feature, applied and read back by name",
      EachOptionComesBack}},
    {{CheckGroup::RoundTrip, "pairs-of-options", "pairs of options of two features, applied and read back",
      PairsComeBack}},
    {{CheckGroup::RoundTrip, "parameters", "every offered number at its smallest, default and largest, read back",
      ParametersComeBack}},
    {{CheckGroup::RoundTrip, "offers-hold", "every offered option is valid in a ticket", OffersNothingThatIsRefused}},
};

}  // namespace
