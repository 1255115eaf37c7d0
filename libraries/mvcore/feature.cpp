// Feature: values are fitted to what is offered, and changes are reported.
#include "feature.h"

#include "changehub.h"
#include "featurelist.h"

#include <algorithm>

namespace {

// The user's protected strings.
bool HoldsSecret(DWORD feature) noexcept { return feature == 42 || feature == 648; }

// A text cut to the length, never between the two halves of a character.
CXString CutText(const CXString& text, LONG longest) {
    if (static_cast<LONG>(text.GetLength()) <= longest) return text;
    const bool splits = longest > 0 && (text.GetString()[longest - 1] & 0xFC00) == 0xD800;
    CXString cut = text.Left(splits ? longest - 1 : longest);
    if (text.IsSecret()) cut.SetSecret();
    return cut;
}

}  // namespace

Feature::Feature(const ModelContext& context, const FeatureIdWithContext& path, FeatureKind kind, DWORD rowHolder)
    : context_(context), path_(path), kind_(kind), rowHolder_(rowHolder) {
    if (kind == FeatureKind::Option) ownOptions_ = std::make_unique<OptionValues>();
    if (kind == FeatureKind::List) list_ = std::make_unique<FeatureList>(context, &path_, rowHolder);
    if (kind == FeatureKind::String) maximum_ = kLongestText;
}

Feature::Feature(const ModelContext& context, const Feature& pattern)
    : context_(context),
      pattern_(&pattern),
      path_(pattern.path_),
      kind_(pattern.kind_),
      rowHolder_(pattern.rowHolder_),
      default_(pattern.default_),
      minimum_(pattern.minimum_),
      maximum_(pattern.maximum_),
      required_(pattern.required_),
      usable_(pattern.usable_),
      ofUser_(pattern.ofUser_),
      resolutions_(pattern.resolutions_),
      rows_(pattern.rows_.size()) {
    if (pattern.optionsHolder_) optionsHolder_ = context.root.Find(pattern.optionsHolder_->path_);
    if (kind_ == FeatureKind::List) {
        list_ = std::make_unique<FeatureList>(context, &path_, rowHolder_);
        list_->Follow(*pattern.list_);
    }
}

Feature::~Feature() = default;

std::optional<FeatureValue> Feature::GetEffective() const {
    std::optional<FeatureValue> value = value_ ? value_ : default_;
    if (kind_ == FeatureKind::String && value && value->text.IsEmpty()) value.reset();
    return value;
}

bool Feature::GetValue(FeatureValue& value, int instance) const {
    std::optional<FeatureValue> found;
    if (instance == DataModelIds::kCurrentValue) found = GetEffective();
    if (instance == DataModelIds::kDefaultValue) found = default_;
    if (!found || (kind_ == FeatureKind::String && found->text.IsEmpty())) return false;
    value = *found;
    return true;
}

// The value as the feature would hold it; none when it is not offered.
std::optional<FeatureValue> Feature::Fit(const FeatureValue& value) const {
    switch (kind_) {
        case FeatureKind::Boolean:
            return FeatureValue{.number = value.number != 0};
        case FeatureKind::Integer:
        case FeatureKind::Dimension:
            return FeatureValue{.number = HasRange() ? std::clamp(value.number, minimum_, maximum_) : value.number};
        case FeatureKind::Option: {
            const DWORD option = static_cast<DWORD>(value.number);
            if (option != DataModelIds::kNotSet && !GetOptions().Accepts(option)) return std::nullopt;
            return FeatureValue{.number = value.number};
        }
        case FeatureKind::String: {
            FeatureValue fitted{.text = CutText(value.text, maximum_)};
            if (HoldsSecret(path_.GetFeatureId().GetId())) fitted.text.SetSecret();
            return fitted;
        }
        case FeatureKind::Resolution: {
            const Resolution resolution(value.number, value.crossFeed, value.units);
            if (std::find(resolutions_.begin(), resolutions_.end(), resolution) == resolutions_.end())
                return std::nullopt;
            return ToFeatureValue(resolution);
        }
        case FeatureKind::List:
            break;
    }
    return std::nullopt;
}

std::optional<FeatureValue> Feature::Refit(const std::optional<FeatureValue>& value) const {
    return value ? Fit(*value) : value;
}

bool Feature::SetValue(const FeatureValue& value) {
    std::optional<FeatureValue> fitted = Fit(value);
    if (!fitted) return false;
    const std::optional<FeatureValue> before = GetEffective();
    value_ = std::move(fitted);
    context_.changes.NoteValue(*this, before);
    return true;
}

bool Feature::SetDefault(const FeatureValue& value) {
    std::optional<FeatureValue> fitted = Fit(value);
    if (!fitted) return false;
    if (fitted == default_) return true;
    const std::optional<FeatureValue> before = GetEffective();
    default_ = std::move(fitted);
    TellWhatIsOffered(before);
    return true;
}

void Feature::Reset() {
    const std::optional<FeatureValue> before = GetEffective();
    value_.reset();
    context_.changes.NoteValue(*this, before);
}

// The value before shows whether the change of what is offered changed the value, too.
void Feature::TellWhatIsOffered(const std::optional<FeatureValue>& valueBefore) {
    MassChange change(context_.changes);
    context_.changes.NoteCapabilities(*this, FeatureChangeId(DataModelIds::kContentsChanged));
    context_.changes.NoteValue(*this, valueBefore);
    change.End();
}

bool Feature::IsRequired() const { return kind_ == FeatureKind::Option && required_; }

void Feature::AddOptions(const std::vector<DWORD>& values) {
    const auto isNew = [&](DWORD value) { return !GetOptions().Lists(value); };
    if (std::none_of(values.begin(), values.end(), isNew)) return;
    OptionValues& options = ChangeOptions();
    for (const DWORD value : values) options.Add(value);
    TellWhatIsOffered(GetEffective());
}

OptionValues& Feature::ChangeOptions() {
    if (!ownOptions_) ownOptions_ = std::make_unique<OptionValues>(GetOptions());
    return *ownOptions_;
}

void Feature::ReplaceOptions(const std::vector<DWORD>& values) {
    if (values == GetOptions().GetListed()) return;
    const std::optional<FeatureValue> before = GetEffective();
    ChangeOptions().Replace(values);
    value_ = Refit(value_);
    default_ = Refit(default_);
    TellWhatIsOffered(before);
}

void Feature::SetResolutions(const std::vector<Resolution>& resolutions) {
    if (resolutions == resolutions_) return;
    const std::optional<FeatureValue> before = GetEffective();
    resolutions_ = resolutions;
    value_ = Refit(value_);
    default_ = Refit(default_);
    TellWhatIsOffered(before);
}

void Feature::SetRange(LONG minimum, LONG maximum) {
    if (minimum == minimum_ && maximum == maximum_) return;
    const std::optional<FeatureValue> before = GetEffective();
    minimum_ = minimum;
    maximum_ = maximum;
    value_ = Refit(value_);
    default_ = Refit(default_);
    TellWhatIsOffered(before);
}

void Feature::SetUsable(bool usable) {
    if (usable == usable_) return;
    usable_ = usable;
    context_.changes.NoteCapabilities(*this, FeatureChangeId(DataModelIds::kUsableChanged));
}

MvListOfFeatures& Feature::GetItem(std::size_t index) { return GetRow(index); }

FeatureList& Feature::GetRow(std::size_t index) const {
    std::unique_ptr<FeatureList>& row = rows_.at(index);
    if (!row) {
        row = std::make_unique<FeatureList>(context_, &path_, path_.GetFeatureId().GetId());
        row->Follow(pattern_->GetRow(index));
    }
    return *row;
}

FeatureList& Feature::AddRow() {
    rows_.push_back(std::make_unique<FeatureList>(context_, &path_, path_.GetFeatureId().GetId()));
    return *rows_.back();
}
