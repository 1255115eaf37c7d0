// FeatureList: features in their order, found by id at any depth.
#pragma once

#include "feature.h"

#include <memory>
#include <unordered_map>
#include <vector>

class FeatureList final : public MvListOfFeatures {
public:
    // The path of the feature that holds the list; empty for the root. rowHolder as for a feature.
    FeatureList(const ModelContext& context, std::vector<DWORD> path, DWORD rowHolder);
    ~FeatureList();
    FeatureList(const FeatureList&) = delete;
    FeatureList& operator=(const FeatureList&) = delete;

    MvFeature& GetFeature(const FeatureIdWithContext& feature, FeatureKind kind) override;
    MvListOfFeatures& GetList(const FeatureIdWithContext& feature) override;

    // A feature at any depth; null when there is none.
    Feature* Find(const FeatureIdWithContext& feature) const;
    // Makes the feature of that path below the list present, and the lists on the way to it. The one that is there
    // already stays as it is.
    Feature& Declare(const std::vector<DWORD>& pathBelow);
    const std::vector<std::unique_ptr<Feature>>& GetFeatures() const noexcept { return features_; }

private:
    class Absent;

    const ModelContext& context_;
    std::vector<DWORD> path_;
    DWORD rowHolder_;
    std::vector<std::unique_ptr<Feature>> features_;
    std::unordered_map<DWORD, Feature*> byId_;  // of this list and of those below
    std::unordered_map<DWORD, std::unique_ptr<Absent>> absent_;
};

// Throws ExceptionUnsupportedFeatureRequest, whose message names the feature.
[[noreturn]] void ThrowUnsupportedFeature(FeatureId feature, const WCHAR* methodName);
