// Features of a data model, as its users read and set them: typed references, lists of features, lists of values.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvutil/dimension.h>

#include <cstddef>

using FeatureKind = facts::FeatureKind;

class Resolution {
public:
    static constexpr int kDotsPerInch = 3;

    Resolution(LONG feed, LONG crossFeed, int units) noexcept : feed_(feed), crossFeed_(crossFeed), units_(units) {}
    LONG GetFeed() const noexcept { return feed_; }
    LONG GetCrossFeed() const noexcept { return crossFeed_; }
    int GetUnits() const noexcept { return units_; }
    friend bool operator==(const Resolution&, const Resolution&) noexcept = default;

private:
    LONG feed_;
    LONG crossFeed_;
    int units_;
};

// A value of any kind of feature.
struct FeatureValue {
    LONG number = 0;  // boolean 0 or 1, integer, option, dimension in micrometres, resolution's feed
    LONG crossFeed = 0;
    int units = 0;  // of a resolution
    CXString text = {};
    friend bool operator==(const FeatureValue& a, const FeatureValue& b) noexcept {
        return a.number == b.number && a.crossFeed == b.crossFeed && a.units == b.units && a.text == b.text;
    }
};

class MvFeature {
public:
    virtual FeatureId GetFeatureId() const = 0;
    virtual FeatureKind GetKind() const = 0;
    virtual bool GetValue(FeatureValue& value, int instance) const = 0;
    virtual bool SetValue(const FeatureValue& value) = 0;
    virtual bool SetDefault(const FeatureValue& value) = 0;
    virtual const MvValueNames* GetValueNames() const = 0;

protected:
    ~MvFeature() = default;
};

// How a C++ type stands in a FeatureValue.
inline void Assign(const FeatureValue& from, const MvValueNames*, bool& to) { to = from.number != 0; }
inline void Assign(const FeatureValue& from, const MvValueNames*, LONG& to) { to = from.number; }
inline void Assign(const FeatureValue& from, const MvValueNames* names, ValueId& to) {
    to = ValueId(static_cast<DWORD>(from.number), names);
}
inline void Assign(const FeatureValue& from, const MvValueNames*, CXString& to) { to = from.text; }
inline void Assign(const FeatureValue& from, const MvValueNames*, Dimension& to) {
    to = Dimension(from.number, Dimension::Micrometres);
}
inline void Assign(const FeatureValue& from, const MvValueNames*, Resolution& to) {
    to = Resolution(from.number, from.crossFeed, from.units);
}
inline FeatureValue ToFeatureValue(bool value) { return {.number = value ? 1 : 0}; }
inline FeatureValue ToFeatureValue(LONG value) { return {.number = value}; }
inline FeatureValue ToFeatureValue(const ValueId& value) { return {.number = static_cast<LONG>(value.GetValueEnum())}; }
inline FeatureValue ToFeatureValue(const CXString& value) { return {.text = value}; }
inline FeatureValue ToFeatureValue(const Dimension& value) {
    return {.number = value.GetValue(Dimension::Micrometres).GetLongValue(0.5)};
}
inline FeatureValue ToFeatureValue(const Resolution& value) {
    return {.number = value.GetFeed(), .crossFeed = value.GetCrossFeed(), .units = value.GetUnits()};
}

// A feature that holds a T; valid as long as the model's manager. One that the model does not have gives no value, and
// setting it throws ExceptionUnsupportedFeatureRequest.
template <class T>
class FeatureRef {
public:
    explicit FeatureRef(MvFeature& feature) noexcept : feature_(&feature) {}

    FeatureId GetFeatureId() const { return feature_->GetFeatureId(); }
    // True when a value came back; else the out argument is unchanged. A string feature gives a value when it holds
    // text. Instances: DataModelIds::kDefaultValue, kCurrentValue (the default until a value is set).
    bool GetValue(T& value, int instance) const {
        FeatureValue found;
        if (!feature_->GetValue(found, instance)) return false;
        Assign(found, feature_->GetValueNames(), value);
        return true;
    }
    // Whether the model took the value: an option must be offered (or not set), an integer or dimension is moved
    // into its range, a text that is too long is cut. Observers are notified when the value changes.
    bool SetValue(const T& value) const { return feature_->SetValue(ToFeatureValue(value)); }
    // The value that holds until one is set; a change of it is a change of the capabilities, too.
    bool SetDefault(const T& value) const { return feature_->SetDefault(ToFeatureValue(value)); }

protected:
    MvFeature* feature_;
};

using BooleanFeatureRef = FeatureRef<bool>;
using IntegerFeatureRef = FeatureRef<LONG>;
using StringFeatureRef = FeatureRef<CXString>;
using DimensionFeatureRef = FeatureRef<Dimension>;
using ResolutionFeatureRef = FeatureRef<Resolution>;

class OptionFeatureRef : public FeatureRef<ValueId> {
public:
    using FeatureRef<ValueId>::FeatureRef;
    using FeatureRef<ValueId>::GetValue;
    // The current value; not set when there is none.
    ValueId GetValue() const {
        ValueId value(DataModelIds::kNotSet, feature_->GetValueNames());
        GetValue(value, DataModelIds::kCurrentValue);
        return value;
    }
};

class MvListOfFeatures {
public:
    // Features at any depth below the list. Throws ExceptionUnsupportedFeatureRequest for an id that the driver family
    // does not know or that is of another kind, and for a list that the model does not have.
    virtual MvFeature& GetFeature(const FeatureIdWithContext& feature, FeatureKind kind) = 0;
    virtual MvListOfFeatures& GetList(const FeatureIdWithContext& feature) = 0;

protected:
    ~MvListOfFeatures() = default;
};

// Features by id. Those in lists below are found as well.
class ListOfFeaturesRef {
public:
    ListOfFeaturesRef() = default;  // refers to no list yet; only to be filled by an operation that gives one
    explicit ListOfFeaturesRef(MvListOfFeatures& list) noexcept : list_(&list) {}

    OptionFeatureRef GetOptionFeature(const FeatureIdWithContext& feature) const {
        return OptionFeatureRef(list_->GetFeature(feature, FeatureKind::Option));
    }
    BooleanFeatureRef GetBooleanFeature(const FeatureIdWithContext& feature) const {
        return BooleanFeatureRef(list_->GetFeature(feature, FeatureKind::Boolean));
    }
    IntegerFeatureRef GetIntegerFeature(const FeatureIdWithContext& feature) const {
        return IntegerFeatureRef(list_->GetFeature(feature, FeatureKind::Integer));
    }
    StringFeatureRef GetStringFeature(const FeatureIdWithContext& feature) const {
        return StringFeatureRef(list_->GetFeature(feature, FeatureKind::String));
    }
    DimensionFeatureRef GetDimensionFeature(const FeatureIdWithContext& feature) const {
        return DimensionFeatureRef(list_->GetFeature(feature, FeatureKind::Dimension));
    }
    ResolutionFeatureRef GetResolutionFeature(const FeatureIdWithContext& feature) const {
        return ResolutionFeatureRef(list_->GetFeature(feature, FeatureKind::Resolution));
    }
    ListOfFeaturesRef GetListOfFeatures(const FeatureIdWithContext& feature) const {
        return ListOfFeaturesRef(list_->GetList(feature));
    }

private:
    MvListOfFeatures* list_ = nullptr;
};

class MvListOfValues {
public:
    virtual std::size_t GetNumItems() const = 0;
    virtual MvListOfFeatures& GetItem(std::size_t index) = 0;

protected:
    ~MvListOfValues() = default;
};

// A feature whose value is a row of lists of features: of feature 192 one for each tray.
class ListOfValuesRef {
public:
    explicit ListOfValuesRef(MvListOfValues& values) noexcept : values_(&values) {}
    std::size_t GetNumItems() const { return values_->GetNumItems(); }
    // Throws std::out_of_range.
    ListOfFeaturesRef GetListOfFeatures(std::size_t index) const { return ListOfFeaturesRef(values_->GetItem(index)); }

private:
    MvListOfValues* values_;
};

// What a feature can do.
class CapabilitiesNode {
public:
    virtual bool IsSupported() const = 0;  // the model has the feature
    virtual bool IsRequired() const = 0;   // an option must be chosen: not set is not offered
    virtual bool IsUsable() const = 0;     // has the feature, and nothing bars it now

protected:
    ~CapabilitiesNode() = default;
};
