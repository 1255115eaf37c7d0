// Ids of the data model: numbers that every library of the driver family agrees on. facts/ holds the numbers.
#pragma once

#include <facts/features.h>
#include <facts/pagesizes.h>
#include <facts/values.h>
#include <mvutil/formatting.h>

#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>

namespace DataModelIds {

// A controller family, or any value of an option feature.
enum Value : DWORD {
    kNotSet = facts::value::kNotSet,
    kPageSizeLetter = facts::value::kPageSizeLetter,
    kPageSizeA4 = facts::value::kPageSizeA4,
    kPageSizeCustom = facts::value::kPageSizeCustom,
    kUnitsOfSystem = facts::value::kUnitsOfSystem,
    kUnitsMillimetres = facts::value::kUnitsMillimetres,
    kUnitsInches = facts::value::kUnitsInches,
    kControllerFamily8430 = facts::value::kControllerFamily8430,
    kControllerFamily8431 = facts::value::kControllerFamily8431,
    kControllerFamily8432 = facts::value::kControllerFamily8432,
    kControllerFamily8433 = facts::value::kControllerFamily8433,
    kControllerFamily8434 = facts::value::kControllerFamily8434,
};

// Which of a feature's values is asked for.
enum ValueInstance : int { kDefaultValue = 1, kCurrentValue = 2 };

// What a registration for changes is about.
enum SettingsInstance : DWORD {
    kCurrentSettings = 23002,  // the values that features hold
    kCapabilities = 23004,     // what features offer: their values, ranges, defaults, and whether they can be used
};
enum FeatureChange : DWORD {
    kContentsChanged = 22003,  // the value (current settings), or what is offered (capabilities)
    kUsableChanged = 22006,    // whether the feature can be used now (capabilities only)
};
enum Event : DWORD {
    kSettingsApplied = 21002,
    kConfigurationRead = 21003,
    kJobPrinted = 21004,
    kLoadedMediaChanged = 21032,  // what the trays hold may have changed
};

// Numbers that the library's translators are asked for by.
inline constexpr int kAttributeListTranslator = 214;
inline constexpr int kMvjtTranslator = 216;
inline constexpr int kDocumentSettings = 401;  // whose settings an attribute list holds
inline constexpr int kAttributeListVersion = 301;

}  // namespace DataModelIds

using PageSizeTypeEnum = facts::PageSizeType;

// Names of values, kept by a data model.
class MvValueNames {
public:
    virtual CXString GetValueName(DWORD value) const = 0;      // for files and tickets: letters and digits
    virtual CXString GetDisplayString(DWORD value) const = 0;  // for people

protected:
    ~MvValueNames() = default;
};

// A value of an option feature. One that a data model gave knows its names as long as the model's manager lives.
class ValueId {
public:
    explicit ValueId(DWORD value, const MvValueNames* names = nullptr) noexcept : value_(value), names_(names) {}
    DWORD GetValueEnum() const noexcept { return value_; }
    // The number in decimal for a value that no model gave, or that the model does not name.
    CXString GetValueName() const { return names_ ? names_->GetValueName(value_) : GetNumber(); }
    CXString GetDisplayString() const { return names_ ? names_->GetDisplayString(value_) : GetNumber(); }

    friend bool operator==(const ValueId& a, const ValueId& b) noexcept { return a.value_ == b.value_; }

private:
    CXString GetNumber() const {
        CXString text;
        text.Format(W("%u"), value_);
        return text;
    }

    DWORD value_;
    const MvValueNames* names_;
};

// A number that is an id of its own kind.
template <class Tag>
class DataModelId {
public:
    explicit constexpr DataModelId(DWORD id) noexcept : id_(id) {}
    constexpr DWORD GetId() const noexcept { return id_; }
    friend constexpr bool operator==(DataModelId a, DataModelId b) noexcept { return a.id_ == b.id_; }

private:
    DWORD id_;
};
using FeatureId = DataModelId<struct FeatureIdTag>;
using SettingsInstanceId = DataModelId<struct SettingsInstanceIdTag>;
using FeatureChangeId = DataModelId<struct FeatureChangeIdTag>;
using EventId = DataModelId<struct EventIdTag>;

// A feature and the lists of features that hold it, outermost first. Lists between those named may be left out:
// media type, paper/media type and paper/stock/media type mean the same feature.
class FeatureIdWithContext {
public:
    static constexpr std::size_t kMaximumDepth = 8;

    FeatureIdWithContext(FeatureId feature) { PushFeature(feature); }
    FeatureIdWithContext(FeatureId list, FeatureId feature) {
        PushFeature(list);
        PushFeature(feature);
    }

    // Steps into the present feature, a list: the pushed one is the feature from now on.
    // Throws std::length_error beyond kMaximumDepth.
    void PushFeature(FeatureId feature) {
        if (depth_ == kMaximumDepth) throw std::length_error("features nest too deep");
        path_[depth_++] = feature.GetId();
    }
    FeatureId GetFeatureId() const noexcept { return FeatureId(path_[depth_ - 1]); }
    std::span<const DWORD> GetPath() const noexcept { return {path_.data(), depth_}; }

    // Whether a feature of that full path is meant.
    bool Matches(std::span<const DWORD> fullPath) const noexcept {
        if (fullPath.empty() || fullPath.back() != path_[depth_ - 1]) return false;
        std::size_t named = 0;
        for (const DWORD id : fullPath)
            if (named < depth_ && path_[named] == id) ++named;
        return named == depth_;
    }
    friend bool operator==(const FeatureIdWithContext& a, const FeatureIdWithContext& b) noexcept {
        return a.depth_ == b.depth_ && a.path_ == b.path_;
    }

private:
    std::array<DWORD, kMaximumDepth> path_{};
    std::size_t depth_ = 0;
};
