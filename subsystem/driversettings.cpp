// The driver's own settings in a private block.
#include "driversettings.h"

#include <mvutil/persistentattributes.h>
#include <privateblock.h>

#include "settingnames.h"

namespace {

void AppendSettings(const AttributeBytesRawList& list, const std::string& prefix,
                    std::vector<DriverSetting>& settings) {
    for (const auto& [feature, value] : list.GetItems()) {
        const std::string path = prefix + std::to_string(feature.id);
        if (value.GetKind() == AttributeBytesValue::Kind::List && !value.GetList().IsEmpty()) {
            AppendSettings(value.GetList(), path + "/", settings);
        } else {
            settings.push_back({path, feature.id, value});
        }
    }
}

}  // namespace

std::vector<DriverSetting> ListDriverSettings(const AttributeBytesRawList& list) {
    std::vector<DriverSetting> settings;
    AppendSettings(list, std::string(), settings);
    return settings;
}

std::vector<DriverSetting> ReadDriverSettings(const BYTE* block) {
    ByteBuffer state;
    bool found = false;
    privateblock::WalkEntries(block, [&](const privateblock::Entry& entry) {
        if (entry.key != privateblock::kAttributeStateKey || found) return;
        state.setWithLpbyte(entry.value, entry.length);
        found = true;
    });
    AttributeBytesRawList list;
    PersistentAttributes(state, false, nullptr)
        .GetAttributeBytesListForNameSpace(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
    return ListDriverSettings(list);
}

std::string DescribeDriverValue(const DriverSetting& setting, const ProductDescription& product) {
    using Kind = AttributeBytesValue::Kind;
    const AttributeBytesValue& value = setting.value;
    switch (value.GetKind()) {
        case Kind::Boolean:
            return value.GetBoolean() ? "on" : "off";
        case Kind::Integer:
            return std::to_string(value.GetInteger());
        case Kind::Option:
            return NameValue(value.GetOption(), product);
        case Kind::NewOption:
        case Kind::String:
            return IsProtectedFeature(setting.feature) && !value.GetText().IsEmpty() ? "****"
                                                                                     : value.GetText().ToUtf8();
        case Kind::DataBlob:
            return std::to_string(value.GetDataBlob().getDword()) + " bytes";
        case Kind::List:
            break;
    }
    return "empty list";
}
