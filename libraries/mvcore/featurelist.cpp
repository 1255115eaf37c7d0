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

FeatureList::FeatureList(const ModelContext& context, std::vector<DWORD> path, DWORD rowHolder)
    : context_(context), path_(std::move(path)), rowHolder_(rowHolder) {}

FeatureList::~FeatureList() = default;

Feature* FeatureList::Find(const FeatureIdWithContext& feature) const {
    const auto found = byId_.find(feature.GetFeatureId().GetId());
    return found != byId_.end() && feature.Matches(found->second->GetPath()) ? found->second : nullptr;
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
    auto present = std::find_if(features_.begin(), features_.end(),
                                [&](const auto& feature) { return feature->GetFeatureId().GetId() == id; });
    if (present == features_.end()) {
        const CatalogueFeature* known = FindCatalogueFeature(id);
        if (!known) ThrowUnsupportedFeature(FeatureId(id), W("ListOfFeatures::Declare"));
        std::vector<DWORD> path = path_;
        path.push_back(id);
        features_.push_back(std::make_unique<Feature>(context_, std::move(path), known->kind, rowHolder_));
        byId_[id] = features_.back().get();
        present = features_.end() - 1;
    }
    if (pathBelow.size() == 1) return **present;
    if ((*present)->GetKind() != FeatureKind::List)
        ThrowUnsupportedFeature(FeatureId(id), W("ListOfFeatures::Declare"));
    FeatureList& list = (*present)->GetList();
    Feature& below = list.Declare({pathBelow.begin() + 1, pathBelow.end()});
    for (auto step = pathBelow.begin() + 1; step != pathBelow.end(); ++step) byId_[*step] = list.byId_.at(*step);
    return below;
}
