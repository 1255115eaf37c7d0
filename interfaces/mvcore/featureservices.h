// FeatureServices: the data model as its users see it when it is filled.
#pragma once

#include <mvcore/features.h>
#include <mvcore/integration.h>
#include <mvutil/attributebytes.h>

#include <memory>

// Lets an object of the library go where it came from.
struct MvDestroy {
    template <class Object>
    void operator()(Object* object) const noexcept {
        object->Destroy();
    }
};

class MvAttributeBytesListTranslator {
public:
    virtual bool ImportSettings(const AttributeBytesRawList& list, int mode) = 0;
    virtual void ExportSettings(AttributeBytesRawList& list, int mode) const = 0;

protected:
    ~MvAttributeBytesListTranslator() = default;
};

// Settings between the model and attribute lists; valid as long as the model's manager.
class AttributeBytesListTranslator {
public:
    AttributeBytesListTranslator() = default;  // to be filled by FeatureServices::GetAttributeBytesListTranslator
    explicit AttributeBytesListTranslator(MvAttributeBytesListTranslator& translator) noexcept
        : translator_(&translator) {}

    // Sets the features that the list holds, as one bundle. Mode 1 leaves the others as they are; mode 0 first gives
    // every feature its default. Features that the model does not have, values that it does not offer and kinds that do
    // not fit are passed over; whether there were none of these. A feature that a list repeats takes the first one,
    // rows of a list of values each their own.
    bool ImportSettings(const AttributeBytesRawList& list, int mode) { return translator_->ImportSettings(list, mode); }
    bool ImportSettings(const AttributeBytesIndexedList& list, int mode) {
        AttributeBytesRawList raw;
        raw.ImportFromIndexedList(list);
        return translator_->ImportSettings(raw, mode);
    }
    // Appends the settings that were made (mode 1), or all (mode 0); those of the user are left out.
    void ExportSettings(AttributeBytesRawList& list, int mode) const { translator_->ExportSettings(list, mode); }

private:
    MvAttributeBytesListTranslator* translator_ = nullptr;
};

// The order of the virtual operations binds. References to features that the model does not have give no value; ids
// that the driver family does not know, or of another kind, throw ExceptionUnsupportedFeatureRequest.
class FeatureServices {
public:
    virtual void RegisterEventObserver(IObserver* observer, EventId event, int number) = 0;
    virtual void RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                               const FeatureIdWithContext& feature, FeatureChangeId change,
                                               int number) = 0;
    virtual bool IsFeatureSupported(const FeatureIdWithContext& feature) = 0;
    virtual void GetRootListOfFeatures(ListOfFeaturesRef& features) = 0;
    virtual CapabilitiesNode& GetCapabilitiesNode(const FeatureIdWithContext& feature) = 0;
    // Without items for a feature that the model does not have.
    virtual ListOfValuesRef GetListOfValues(const FeatureIdWithContext& feature) = 0;
    virtual BooleanFeatureRef GetBooleanFeature(const FeatureIdWithContext& feature) = 0;
    virtual IntegerFeatureRef GetIntegerFeature(const FeatureIdWithContext& feature) = 0;
    virtual DimensionFeatureRef GetDimensionFeature(const FeatureIdWithContext& feature) = 0;
    virtual OptionFeatureRef GetOptionFeature(const FeatureIdWithContext& feature) = 0;
    virtual StringFeatureRef GetStringFeature(const FeatureIdWithContext& feature) = 0;
    // The numbers are 214, 401 and 301 of DataModelIds; others throw std::invalid_argument.
    virtual void GetAttributeBytesListTranslator(AttributeBytesListTranslator& translator, int kind, int settings,
                                                 int version) = 0;

    virtual void UnregisterFeatureChangeObserver(IObserver* observer) = 0;
    virtual void UnregisterEventObserver(IObserver* observer) = 0;
    // Tells the observers of that event, in the order in which they registered; those among the model's data sources
    // that are observers and asked for no event are notified of each.
    virtual void RaiseEvent(EventId event) = 0;

protected:
    ~FeatureServices() = default;
};

class AttributeTranslatorForXml {
public:
    // Appends the text of the settings that were made; with defaults, of all that hold a value. Whether it wrote any.
    virtual bool ExportToBuffer(ByteBuffer& buffer, bool withDefaults) = 0;

protected:
    ~AttributeTranslatorForXml() = default;
};

// Writes the model's settings as job ticket text.
class MvjtTranslator : public AttributeTranslatorForXml {
public:
    virtual void Destroy() noexcept = 0;

protected:
    ~MvjtTranslator() = default;
};

class SpecialPagesServices {
public:
    // Makes the settings agree with what special pages allow: transparencies are printed on one side.
    virtual void MakePrintInstructionAdjustments() = 0;

protected:
    ~SpecialPagesServices() = default;
};

// What only the owner of a model does with it.
class DataModelFeatureServices : public FeatureServices {
public:
    // Changes between the two are reported as one bundle, at the end of the outermost pair.
    virtual void BeginMassSet() = 0;
    virtual void EndMassSet() = 0;
    virtual MvjtTranslator* CreateMvjtTranslator(int kind) = 0;
    virtual SpecialPagesServices& GetSpecialPagesServices() = 0;

    // The kind is 216; others throw std::invalid_argument. The translator must not outlive the model's manager.
    std::unique_ptr<MvjtTranslator, MvDestroy> GetMvjtTranslator(int kind) {
        return std::unique_ptr<MvjtTranslator, MvDestroy>(CreateMvjtTranslator(kind));
    }

protected:
    ~DataModelFeatureServices() = default;
};
