// Feature: one feature of a data model, with its value and with what it offers.
#pragma once

#include <mvcore/features.h>

#include "optionvalues.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

class ChangeHub;
class FeatureList;

// What the features of one model share; lives as long as they do.
struct ModelContext {
    ChangeHub& changes;
    const MvValueNames& names;
    const FeatureList& root;
};

// A boolean, integer, option, text, dimension or resolution, or a list: of features, or of rows that each hold
// features.
class Feature final : public MvFeature, public CapabilitiesNode, public MvListOfValues {
public:
    static constexpr LONG kLongestText = 255;  // unless the product states another length

    // The path leads from the root of the model to the feature, itself included. rowHolder is the feature whose rows it
    // is part of, or 0.
    Feature(const ModelContext& context, const FeatureIdWithContext& path, FeatureKind kind, DWORD rowHolder);
    // The same feature in another model. The pattern has no value set, changes no more and outlives the new one.
    Feature(const ModelContext& context, const Feature& pattern);
    ~Feature();
    Feature(const Feature&) = delete;
    Feature& operator=(const Feature&) = delete;

    FeatureId GetFeatureId() const override { return path_.GetFeatureId(); }
    FeatureKind GetKind() const override { return kind_; }
    bool GetValue(FeatureValue& value, int instance) const override;
    bool SetValue(const FeatureValue& value) override;
    bool SetDefault(const FeatureValue& value) override;
    const MvValueNames* GetValueNames() const override { return &context_.names; }

    bool IsSupported() const override { return true; }
    bool IsRequired() const override;
    bool IsUsable() const override { return usable_; }

    std::size_t GetNumItems() const override { return rows_.size(); }
    MvListOfFeatures& GetItem(std::size_t index) override;

    const FeatureIdWithContext& GetIdWithContext() const noexcept { return path_; }
    std::span<const DWORD> GetPath() const noexcept { return path_.GetPath(); }
    DWORD GetRowHolder() const noexcept { return rowHolder_; }
    bool IsOfUser() const noexcept { return ofUser_; }
    void SetOfUser() noexcept { ofUser_ = true; }

    // What GetValue gives for the current value.
    std::optional<FeatureValue> GetEffective() const;
    // Whether a value was set; without one the default holds.
    bool IsSet() const noexcept { return value_.has_value(); }
    void Reset();

    const OptionValues& GetOptions() const noexcept {
        if (optionsHolder_) return optionsHolder_->GetOptions();
        return ownOptions_ || !pattern_ ? *ownOptions_ : pattern_->GetOptions();
    }
    // Features of rows may offer what a feature outside of them does.
    void ShareOptionsOf(const Feature& feature) { optionsHolder_ = &feature; }
    void AddUnlistedOption(DWORD value) { ChangeOptions().AddUnlisted(value); }
    void SetRequired(bool required) noexcept { required_ = required; }
    void AddOptions(const std::vector<DWORD>& values);
    void ReplaceOptions(const std::vector<DWORD>& values);
    const std::vector<Resolution>& GetResolutions() const noexcept { return resolutions_; }
    void SetResolutions(const std::vector<Resolution>& resolutions);
    bool HasRange() const noexcept { return minimum_ <= maximum_; }
    LONG GetMinimum() const noexcept { return minimum_; }
    LONG GetMaximum() const noexcept { return maximum_; }
    void SetRange(LONG minimum, LONG maximum);  // of a text: 0 and its greatest length
    void SetUsable(bool usable);

    FeatureList& GetList() const noexcept { return *list_; }  // of a list
    FeatureList& GetRow(std::size_t index) const;
    FeatureList& AddRow();

private:
    std::optional<FeatureValue> Fit(const FeatureValue& value) const;
    std::optional<FeatureValue> Refit(const std::optional<FeatureValue>& value) const;
    void TellWhatIsOffered(const std::optional<FeatureValue>& valueBefore);
    OptionValues& ChangeOptions();

    const ModelContext& context_;
    const Feature* pattern_ = nullptr;
    FeatureIdWithContext path_;
    FeatureKind kind_;
    DWORD rowHolder_;
    std::optional<FeatureValue> value_;
    std::optional<FeatureValue> default_;
    LONG minimum_ = 0;
    LONG maximum_ = -1;  // below the minimum: no range
    bool required_ = false;
    bool usable_ = true;
    bool ofUser_ = false;
    std::unique_ptr<OptionValues> ownOptions_;  // else the pattern's
    const Feature* optionsHolder_ = nullptr;    // of a row: whose options it offers
    std::vector<Resolution> resolutions_;
    std::unique_ptr<FeatureList> list_;
    mutable std::vector<std::unique_ptr<FeatureList>> rows_;  // null: as the pattern's, not asked for yet
};
