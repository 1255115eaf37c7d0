// Attribute lists: dimensions travel as integers in micrometres, resolutions as integers with the feed in the high half
// and the cross-feed in the low half, values of users and printers by their names.
#include "attributelisttranslator.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace {

constexpr int kAddSettings = 1;
constexpr int kMadeSettings = 1;
constexpr int kListFlag = 1;
constexpr DWORD kLargestHalf = 0x7FFF;

using Kind = AttributeBytesValue::Kind;

void ResetAll(FeatureList& list) {
    for (const auto& feature : list.GetFeatures()) {
        if (feature->IsOfUser()) continue;
        feature->Reset();
        if (feature->GetKind() != FeatureKind::List) continue;
        ResetAll(feature->GetList());
        for (std::size_t row = 0; row < feature->GetNumItems(); ++row) ResetAll(feature->GetRow(row));
    }
}

class Importer {
public:
    explicit Importer(const ValueNames& names) : names_(names) {}

    // Whether every setting was taken.
    bool Import(const AttributeBytesRawList& settings, FeatureList& list) {
        bool all = true;
        std::unordered_set<DWORD> seen;
        std::unordered_map<DWORD, std::size_t> rows;
        for (const auto& [id, value] : settings.GetItems()) {
            Feature* feature = list.Find(FeatureId(id.id));
            if (feature && feature->GetNumItems() != 0) {
                const std::size_t row = rows[id.id]++;
                all &= value.GetKind() == Kind::List && row < feature->GetNumItems() &&
                       Import(value.GetList(), feature->GetRow(row));
            } else if (seen.insert(id.id).second) {
                all &= feature && ImportOne(value, *feature);
            }
        }
        return all;
    }

private:
    bool ImportOne(const AttributeBytesValue& value, Feature& feature) {
        if (feature.GetKind() == FeatureKind::List)
            return value.GetKind() == Kind::List && Import(value.GetList(), feature.GetList());
        const std::optional<FeatureValue> converted = Convert(value, feature);
        if (!converted) return false;
        // What was not chosen needs no setting of its own when it is what holds anyway.
        const bool isOption = feature.GetKind() == FeatureKind::Option;
        return (isOption && !value.IsSet() && converted == feature.GetEffective()) || feature.SetValue(*converted);
    }

    // None when the kinds do not fit.
    std::optional<FeatureValue> Convert(const AttributeBytesValue& value, const Feature& feature) const {
        switch (feature.GetKind()) {
            case FeatureKind::Boolean:
                if (value.GetKind() != Kind::Boolean) return std::nullopt;
                return FeatureValue{.number = value.GetBoolean()};
            case FeatureKind::Integer:
            case FeatureKind::Dimension:
                if (value.GetKind() != Kind::Integer) return std::nullopt;
                return FeatureValue{.number = value.GetInteger()};
            case FeatureKind::Resolution:
                if (value.GetKind() != Kind::Integer) return std::nullopt;
                return FeatureValue{.number = static_cast<LONG>(static_cast<DWORD>(value.GetInteger()) >> 16),
                                    .crossFeed = static_cast<LONG>(static_cast<DWORD>(value.GetInteger()) & 0xFFFF),
                                    .units = Resolution::kDotsPerInch};
            case FeatureKind::Option:
                if (value.GetKind() == Kind::NewOption) return FindOption(value.GetText(), feature);
                if (value.GetKind() != Kind::Option) return std::nullopt;
                return FeatureValue{.number = static_cast<LONG>(value.GetOption())};
            case FeatureKind::String:
                if (value.GetKind() != Kind::String) return std::nullopt;
                return FeatureValue{.text = value.GetText()};
            case FeatureKind::List:
                break;
        }
        return std::nullopt;
    }

    std::optional<FeatureValue> FindOption(const CXString& name, const Feature& feature) const {
        for (const DWORD value : feature.GetOptions().GetListed())
            if (value >= facts::value::kFirstOwnValue && names_.GetDisplayString(value) == name)
                return FeatureValue{.number = static_cast<LONG>(value)};
        return std::nullopt;
    }

    const ValueNames& names_;
};

class Exporter {
public:
    Exporter(const ValueNames& names, bool madeOnly) : names_(names), madeOnly_(madeOnly) {}

    void Export(const FeatureList& list, AttributeBytesRawList& settings) const {
        for (const auto& feature : list.GetFeatures()) {
            const AttributeBytesFeatureId id(feature->GetFeatureId().GetId());
            if (feature->IsOfUser()) continue;
            if (feature->GetKind() == FeatureKind::List)
                ExportList(id, *feature, settings);
            else if (feature->IsSet() || !madeOnly_)
                ExportValue(id, *feature, settings);
        }
    }

private:
    void ExportList(AttributeBytesFeatureId id, const Feature& feature, AttributeBytesRawList& settings) const {
        if (feature.GetNumItems() == 0) {
            AttributeBytesRawList inner;
            Export(feature.GetList(), inner);
            if (!inner.IsEmpty()) settings.Append(id, AttributeBytesListValue(kListFlag, inner));
            return;
        }
        // Rows are distinguished by their place, so one without settings takes its place, too.
        std::vector<AttributeBytesRawList> rows(feature.GetNumItems());
        bool any = false;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            Export(feature.GetRow(row), rows[row]);
            any |= !rows[row].IsEmpty();
        }
        if (!any) return;
        for (const AttributeBytesRawList& row : rows) settings.Append(id, AttributeBytesListValue(kListFlag, row));
    }

    void ExportValue(AttributeBytesFeatureId id, const Feature& feature, AttributeBytesRawList& settings) const {
        const std::optional<FeatureValue> value = feature.GetEffective();
        if (!value) return;
        switch (feature.GetKind()) {
            case FeatureKind::Boolean:
                return settings.Append(id, AttributeBytesBooleanValue(value->number != 0));
            case FeatureKind::Integer:
            case FeatureKind::Dimension:
                return settings.Append(id, AttributeBytesIntegerValue(value->number));
            case FeatureKind::Resolution: {
                const DWORD feed = static_cast<DWORD>(value->number);
                const DWORD crossFeed = static_cast<DWORD>(value->crossFeed);
                if (feed > kLargestHalf || crossFeed > kLargestHalf || value->units != Resolution::kDotsPerInch) return;
                return settings.Append(id, AttributeBytesIntegerValue(static_cast<LONG>(feed << 16 | crossFeed)));
            }
            case FeatureKind::Option: {
                const DWORD option = static_cast<DWORD>(value->number);
                if (option >= facts::value::kFirstOwnValue)
                    return settings.Append(
                        id, AttributeBytesOptionValue(AttributeBytesNewValueId(names_.GetDisplayString(option)), true));
                return settings.Append(
                    id, AttributeBytesOptionValue(AttributeBytesValueId(option), option != DataModelIds::kNotSet));
            }
            case FeatureKind::String:
                return settings.Append(id, AttributeBytesStringValue(value->text));
            case FeatureKind::List:
                break;
        }
    }

    const ValueNames& names_;
    bool madeOnly_;
};

}  // namespace

bool ModelAttributeListTranslator::ImportSettings(const AttributeBytesRawList& list, int mode) {
    MassChange change(parts_.changes);
    if (mode != kAddSettings) ResetAll(parts_.root);
    const bool all = Importer(parts_.names).Import(list, parts_.root);
    change.End();
    return all;
}

void ModelAttributeListTranslator::ExportSettings(AttributeBytesRawList& list, int mode) const {
    Exporter(parts_.names, mode == kMadeSettings).Export(parts_.root, list);
}
