// FeatureList: one index a list serves whatever depth a feature lies at.
#include "featurelist.h"

#include <mvutil/formatting.h>
#include <mvutil/throwfailure.h>
#include <products/reader/featurecatalogue.h>

#include <algorithm>

void ThrowUnsupportedFeature(FeatureId feature, const WCHAR* methodName) {
    CXString message;
    message.Format(W("The data model does not have feature %u."), feature.GetId());
    ThrowFailure(&GetExceptionUnsupportedFeatureRequest, message, methodName, W("mvcore/featurelist"));
}

// Stands for a feature that the driver family knows and this model does not have.
class FeatureList::Absent final : public MvFeature {
public:
    Absent(FeatureId feature, FeatureKind kind, const MvValueNames& names)
        : feature_(feature), kind_(kind), names_(names) {}

    FeatureId GetFeatureId() const override { return feature_; }
    FeatureKind GetKind() const override { return kind_; }
    bool GetValue(FeatureValue&, int) const override { return false; }
    bool SetValue(const FeatureValue&) override { ThrowUnsupportedFeature(feature_, W("FeatureRef::SetValue")); }
    bool SetDefault(const FeatureValue&) override { ThrowUnsupportedFeature(feature_, W("FeatureRef::SetDefault")); }
    const MvValueNames* GetValueNames() const override { return &names_; }

private:
    FeatureId feature_;
    FeatureKind kind_;
    const MvValueNames& names_;
};

FeatureList::FeatureList(const ModelContext& context, const FeatureIdWithContext* holder, DWORD rowHolder)
    : context_(context), holder_(holder), rowHolder_(rowHolder) {}

FeatureList::~FeatureList() = default;

void FeatureList::Follow(const FeatureList& pattern) {
    pattern_ = &pattern;
    features_.resize(pattern.features_.size());
}

Feature& FeatureList::GetAt(std::size_t place) const {
    std::unique_ptr<Feature>& feature = features_[place];
    if (!feature) feature = std::make_unique<Feature>(context_, pattern_->GetAt(place));
    return *feature;
}

const std::vector<std::unique_ptr<Feature>>& FeatureList::GetFeatures() const {
    for (std::size_t place = 0; place < features_.size(); ++place) GetAt(place);
    return features_;
}

std::optional<std::size_t> FeatureList::FindPlace(DWORD id) const {
    if (const auto found = places_.find(id); found != places_.end()) return found->second;
    return pattern_ ? pattern_->FindPlace(id) : std::nullopt;
}

Feature* FeatureList::FindById(DWORD id) const {
    const std::optional<std::size_t> place = FindPlace(id);
    if (!place) return nullptr;
    Feature& feature = GetAt(*place);
    return feature.GetFeatureId().GetId() == id ? &feature : feature.GetList().FindById(id);
}

Feature* FeatureList::Find(const FeatureIdWithContext& feature) const {
    Feature* found = FindById(feature.GetFeatureId().GetId());
    return found && feature.Matches(found->GetPath()) ? found : nullptr;
}

MvFeature& FeatureList::GetFeature(const FeatureIdWithContext& feature, FeatureKind kind) {
    const FeatureId id = feature.GetFeatureId();
    if (Feature* found = Find(feature)) {
        if (found->GetKind() != kind) ThrowUnsupportedFeature(id, W("ListOfFeatures::GetFeature"));
        return *found;
    }
    const CatalogueFeature* known = FindCatalogueFeature(id.GetId());
    if (!known || known->kind != kind) ThrowUnsupportedFeature(id, W("ListOfFeatures::GetFeature"));
    std::unique_ptr<Absent>& absent = absent_[id.GetId()];
    if (!absent) absent = std::make_unique<Absent>(id, kind, context_.names);
    return *absent;
}

MvListOfFeatures& FeatureList::GetList(const FeatureIdWithContext& feature) {
    Feature* found = Find(feature);
    if (!found || found->GetKind() != FeatureKind::List)
        ThrowUnsupportedFeature(feature.GetFeatureId(), W("ListOfFeatures::GetList"));
    return found->GetList();
}

Feature& FeatureList::Declare(const std::vector<DWORD>& pathBelow) {
    const DWORD id = pathBelow.front();
    std::optional<std::size_t> place = FindPlace(id);
    if (!place) {
        const CatalogueFeature* known = FindCatalogueFeature(id);
        if (!known) ThrowUnsupportedFeature(FeatureId(id), W("ListOfFeatures::Declare"));
        FeatureIdWithContext path = holder_ ? *holder_ : FeatureIdWithContext(FeatureId(id));
        if (holder_) path.PushFeature(FeatureId(id));
        place = features_.size();
        features_.push_back(std::make_unique<Feature>(context_, path, known->kind, rowHolder_));
        places_[id] = *place;
    }
    Feature& present = GetAt(*place);
    if (pathBelow.size() == 1) return present;
    if (present.GetKind() != FeatureKind::List) ThrowUnsupportedFeature(FeatureId(id), W("ListOfFeatures::Declare"));
    Feature& below = present.GetList().Declare({pathBelow.begin() + 1, pathBelow.end()});
    for (auto step = pathBelow.begin() + 1; step != pathBelow.end(); ++step) places_[*step] = *place;
    return below;
}
