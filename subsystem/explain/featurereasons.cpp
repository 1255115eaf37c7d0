// Why a driver did not take a feature, an option or a parameter of a ticket as it stands there.
#include "featurereasons.h"

#include <facts/printschemanamespaces.h>
#include <facts/units.h>
#include <printsubsystem/printschema.h>
#include <subsystem/hosttext.h>
#include <subsystem/nearestname.h>
#include <subsystem/settingnames.h>

#include <algorithm>
#include <cstdlib>

#include <subsystem/driverdata.h>
#include "devmodesettings.h"

namespace {

constexpr std::size_t kMostOptions = 12;  // that a reason lists
using facts::kLargestField, facts::kLongestSide, facts::kMicrometresPerTenth, facts::kSizeTolerance;

std::string Quote(const std::string& text) { return "'" + text + "'"; }

bool IsNear(const OptionSize& a, const OptionSize& b, std::int64_t tolerance) {
    return std::llabs(a.width - b.width) <= tolerance && std::llabs(a.height - b.height) <= tolerance;
}

std::string ListOptions(const SchemaSetting& offered) {
    std::string text;
    std::size_t count = 0;
    for (const SchemaOption& option : offered.options)
        if (++count <= kMostOptions) text += (count == 1 ? "" : ", ") + DescribeOption(offered, option);
    return count > kMostOptions ? text + " and " + std::to_string(count - kMostOptions) + " more" : text;
}

Judgement JudgePaper(const SchemaOption& wanted, const SchemaOption& made) {
    const std::optional<OptionSize> wantedSize = GetOptionSize(wanted), madeSize = GetOptionSize(made);
    if (!wantedSize || wantedSize->width < 1 || wantedSize->height < 1) {
        if (wanted.name == made.name)
            return {Verdict::Kept, "by its name, in dmPaperSize; the size is the printer's paper's"};
        return {Verdict::Changed, IsCustomSize(wanted)
                                      ? "a custom size without a usable size: the default paper was taken"
                                      : "the printer does not know the name, and the ticket gives no usable size"};
    }
    if (IsCustomSize(made) && !IsCustomSize(wanted))
        return {Verdict::Changed, "a custom size, since this printer does not list it"};
    if (wantedSize->width > kLongestSide || wantedSize->height > kLongestSide)
        return {Verdict::Changed,
                std::string("clamped: a DEVMODE holds at most ") + facts::kLongestMillimetres + " mm"};
    if (madeSize && IsNear(*wantedSize, *madeSize, kMicrometresPerTenth - 1) && wanted.name == made.name)
        return {Verdict::Changed, "rounded: a DEVMODE holds tenths of a millimetre"};
    if (madeSize && IsNear(*wantedSize, *madeSize, kSizeTolerance))
        return {Verdict::Changed,
                IsCustomSize(wanted) ? "this printer's paper of that size" : "another paper of the same size"};
    if (madeSize && IsNear(*wantedSize, {madeSize->height, madeSize->width}, kSizeTolerance))
        return {Verdict::Changed, "the sides were exchanged: a DEVMODE keeps the shorter one as the width"};
    if (wanted.name == made.name)
        return {Verdict::Changed, "the name counts, and this printer's paper of that name has another size"};
    return {Verdict::Changed, "name and size contradict each other, or this printer lists neither"};
}

// Settings that the driver reads into one field of the DEVMODE.
bool AreTwins(const SchemaName& a, const SchemaName& b) {
    const auto isDuplex = [](const SchemaName& name) {
        return name.local == "DocumentDuplex" || name.local == "JobDuplexAllDocumentsContiguously";
    };
    return a.local == b.local || (isDuplex(a) && isDuplex(b));
}

// Another setting of the ticket that says what the DEVMODE says now.
const SchemaSetting* FindOverruling(const SchemaSetting& setting, const SchemaSetting& made,
                                    const AppliedTicket& applied) {
    for (const SchemaSetting& other : applied.ticket.GetAll())
        if (other.kind == setting.kind && !(other.name == setting.name) && AreTwins(other.name, setting.name) &&
            SettingsAgree(other, made))
            return &other;
    return nullptr;
}

Judgement JudgeOption(const SchemaSetting& feature, const SchemaSetting* made, const AppliedTicket& applied) {
    const SchemaOption& option = feature.options.front();
    const SchemaSetting* offered = applied.printer.GetOffered().Find(feature.GetKey());
    const bool isOffered =
        offered && std::any_of(offered->options.begin(), offered->options.end(),
                               [&](const SchemaOption& candidate) { return OptionsAgree(feature, option, candidate); });
    if (const SchemaSetting* other = isOffered && made ? FindOverruling(feature, *made, applied) : nullptr)
        return {Verdict::Overruled, other->name.text + " says " + DescribeSetting(*other) + ", and counts"};
    const SchemaSetting* before = applied.GetUnchanged().Find(feature.GetKey());
    if (made && before && !SettingsAgree(*made, *before))
        return {Verdict::Changed, "the driver takes " + DescribeSetting(*made) + " for it"};
    if (isOffered) return {Verdict::Ignored, "the printer offers it, and the driver does not read it from a ticket"};
    if (!offered || offered->options.empty())
        return {Verdict::Ignored, "this printer offers no option of " + feature.name.local};
    std::vector<std::string> names;
    for (const SchemaOption& candidate : offered->options) names.push_back(candidate.name.local);
    if (const std::optional<std::string> nearest = FindNearest(option.name.local, names))
        return {Verdict::Ignored,
                Quote(option.name.text) + " is no option of this printer; the nearest one is " + Quote(*nearest)};
    return {Verdict::Ignored, "this printer does not offer it; it offers " + ListOptions(*offered)};
}

std::string TellPlace(const SchemaSetting& feature) {
    if (const DevmodeSettingKind* kind = FindDevmodeSettingKind(feature.name.local))
        return std::string("in ") + kind->field;
    if (feature.name.local == "PageMediaType") return "in the driver's settings";
    return "the DEVMODE gives it back";
}

}  // namespace

const SchemaSettings& AppliedTicket::GetUnchanged() const {
    if (!unchanged_) unchanged_ = printer.MakeTicketSettings(before);
    return *unchanged_;
}

const SchemaSetting* FindCounterpart(const SchemaSetting& setting, const SchemaSettings& other) {
    if (const SchemaSetting* found = other.Find(setting.GetKey())) return found;
    if (setting.name.isPrivate) return other.FindKeyword(setting.kind, setting.name.local);
    if (!setting.name.IsKeyword()) return nullptr;
    return setting.kind == SchemaSetting::Kind::Parameter ? other.FindPrivate(setting.kind, setting.name.local)
                                                          : other.FindKeyword(setting.kind, setting.name.local);
}

Judgement JudgeUnknownName(const SchemaSetting& setting) {
    const SchemaName& name = setting.name;
    if (name.text.empty()) return {Verdict::Ignored, "it has no name"};
    if (name.isPrivate) {
        static const std::vector<std::string> own = {facts::kDriverDataParameter, facts::kJobTicketParameter,
                                                     facts::kPrivateCopiesParameter};
        const std::string text = Quote(name.text) + " is no name of this driver";
        if (const std::optional<std::string> nearest = FindNearest(name.local, own))
            return {Verdict::Ignored, text + "; the nearest one is " + Quote(*nearest)};
        // Under the fallback prefix another maker's names look like the driver's.
        if (name.uri.empty() || name.uri == facts::kPrivateKeywordsNamespace) return {Verdict::Ignored, text};
    }
    if (name.hasUndeclaredPrefix)
        return {Verdict::Ignored,
                "the prefix of " + Quote(name.text) + " is not declared, so that the name means nothing"};
    if (name.uri.empty()) return {Verdict::Ignored, "the name has no prefix, so that it is nobody's"};
    if (!name.IsKeyword())
        return {Verdict::Ignored, "the name is another maker's (" + name.uri + "), which this driver does not read"};
    if (FindKeywordName(name.local)) return {Verdict::Ignored, "this printer has no such setting"};
    const std::optional<std::string> nearest = FindNearestKeyword(name.local);
    return {Verdict::Ignored, Quote(name.text) + " is no keyword of the Print Schema" +
                                  (nearest ? "; the nearest one is " + Quote(*nearest) : " that is known here")};
}

Judgement JudgeFeature(const SchemaSetting& feature, const SchemaSetting* made, const AppliedTicket& applied) {
    if (feature.options.empty()) return {Verdict::Ignored, "the feature selects no option"};
    const bool hasResult = made && !made->options.empty();
    if (hasResult && SettingsAgree(feature, *made)) return {Verdict::Kept, TellPlace(feature)};
    if (!hasResult && !applied.printer.GetOffered().Find(feature.GetKey())) return JudgeUnknownName(feature);
    if (hasResult && feature.name.local == kMediaSizeKeyword)
        return JudgePaper(feature.options.front(), made->options.front());
    return JudgeOption(feature, made, applied);
}

Judgement JudgeChangedParameter(const SchemaSetting& parameter, const SchemaSetting& made,
                                const AppliedTicket& applied) {
    const std::optional<std::int64_t> wanted = parameter.GetNumber(), found = made.GetNumber();
    if (const SchemaSetting* other = FindOverruling(parameter, made, applied))
        return {Verdict::Overruled, other->name.text + " says " + DescribeSetting(*other) + " and is read after it"};
    if (parameter.name.local == facts::kJobTicketParameter) return {Verdict::Changed, "made anew of the settings"};
    if (parameter.isReferenced && wanted && found)
        return {Verdict::Changed, std::llabs(*wanted - *found) < kMicrometresPerTenth
                                      ? "rounded: a DEVMODE holds tenths of a millimetre"
                                      : "a side of the paper size, which changed"};
    if (!wanted) return {Verdict::Ignored, Quote(DescribeSetting(parameter)) + " is no whole number"};
    if (*wanted > kLargestField || *wanted < -kLargestField - 1)
        return {parameter.name.isPrivate ? Verdict::Changed : Verdict::Ignored,
                "it does not fit in the 16 bits of a DEVMODE's field"};
    return {Verdict::Ignored, "the driver does not take this number"};
}
