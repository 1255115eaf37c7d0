// FeatureList: features in their order, found by id at any depth.
#pragma once

#include "feature.h"

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

class FeatureList final : public MvListOfFeatures {
public:
    // The path of the feature that holds the list, which outlives it; null for the root. rowHolder as for a feature.
    FeatureList(const ModelContext& context, const FeatureIdWithContext* holder, DWORD rowHolder);
    ~FeatureList();
    FeatureList(const FeatureList&) = delete;
    FeatureList& operator=(const FeatureList&) = delete;

    MvFeature& GetFeature(const FeatureIdWithContext& feature, FeatureKind kind) override;
    MvListOfFeatures& GetList(const FeatureIdWithContext& feature) override;

    // An empty list starts with the features of that one, which changes no more and outlives it. Each is made when it
    // is asked for: of the hundreds of a product a job needs few.
    void Follow(const FeatureList& pattern);
    bool IsEmpty() const noexcept { return features_.empty(); }

    // A feature at any depth; null when there is none.
    Feature* Find(const FeatureIdWithContext& feature) const;
    // Makes the feature of that path below the list present, and the lists on the way to it. The one that is there
    // already stays as it is.
    Feature& Declare(const std::vector<DWORD>& pathBelow);
    const std::vector<std::unique_ptr<Feature>>& GetFeatures() const;

private:
    class Absent;

    Feature& GetAt(std::size_t place) const;
    std::optional<std::size_t> FindPlace(DWORD id) const;
    Feature* FindById(DWORD id) const;

    const ModelContext& context_;
    const FeatureIdWithContext* holder_;
    DWORD rowHolder_;
    const FeatureList* pattern_ = nullptr;
    mutable std::vector<std::unique_ptr<Feature>> features_;  // null: as the pattern's, not asked for yet
    // By id, of this list and of those below: the place of the feature in this list that is it or holds it. Those of
    // the pattern are looked up there.
    std::unordered_map<DWORD, std::size_t> places_;
    std::unordered_map<DWORD, std::unique_ptr<Absent>> absent_;
};

// Throws ExceptionUnsupportedFeatureRequest, whose message names the feature.
[[noreturn]] void ThrowUnsupportedFeature(FeatureId feature, const WCHAR* methodName);
