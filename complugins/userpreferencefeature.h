// UserPreferenceVerticalFeature: the current user's remembered job preferences as a source of the data model.
#pragma once

#include <mvcore/featureservices.h>
#include <mvcore/notifications.h>
#include <mvutil/datasource.h>

#include <array>

class XDevmode;

// Declares the user's preferences in a model, gives them their values, and saves them when it is notified that settings
// were applied or a job was printed. The protected strings are kept encrypted, for each controller family its own; one
// that cannot be read, is no number of the family's length or does not fit its feature counts as none. Registered with
// a model, it must not end before the model's ReleaseSourceData. For one thread at a time.
class UserPreferenceVerticalFeature final : public IObserver, public DataSource {
public:
    // Reads the protected strings of the family. The private DEVMODE is not used.
    UserPreferenceVerticalFeature(DWORD controllerFamily, XDevmode& xdevmode, const CXString& documentName);
    ~UserPreferenceVerticalFeature() override;

    void OnNotification(INotification& notification) override;

    void IntegrateSourceData(IntegrationInterface& integration) override;
    void RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) override;
    void SetFeatureServices(FeatureServices& services) override;
    void UnregisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) override;
    bool ExportSourceData(AttributeBytesSink& sink) override;  // exports nothing: false

private:
    // How the title, the sender or the recipient of a job is found.
    struct Identification {
        DWORD textFeature;     // the text itself
        DWORD systemFeature;   // true: the system's own text (the document's or the user's name)
        DWORD restoreFeature;  // true: the remembered text comes back
        const WCHAR* kindValue;
        const WCHAR* textValue;
        LONG kind = 0;  // kSystemText, kCustomText, or 0 when none is remembered
        CXString text = {};
    };
    struct OptionPreference {
        DWORD feature;
        const WCHAR* value;
        DWORD kept;
    };

    static Identification MakeIdentification(DWORD textFeature, DWORD systemFeature, DWORD restoreFeature,
                                             const WCHAR* kindValue, const WCHAR* textValue);
    void ReadProtectedStrings();
    void SetProtectedString(DWORD feature, CXString& text);
    void Save();
    void SaveMask();
    void SaveIdentification(Identification& identification);
    void SaveProtectedString(DWORD feature, const WCHAR* valuePrefix, bool withTime);
    void OnSettingChanged(DWORD feature);
    void ApplyIdentification(const Identification& identification);
    bool IsSupported(DWORD feature);

    DWORD controllerFamily_;
    std::array<OptionPreference, 3> options_;
    std::array<Identification, 3> identifications_;
    LONG integer_;
    LONG mask_;
    DWORD companion_;
    CXString protectedString_;
    CXString secondProtectedString_;
    FILETIME protectedStringTime_ = {};
    CXString documentName_;
    FeatureServices* services_ = nullptr;
};
