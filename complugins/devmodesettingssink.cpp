// DevmodeSettingsSink: takes exported settings into the private block of a DEVMODE.
#include <devmodesettingssink.h>

#include <stdexcept>

namespace {

ByteBuffer StateOf(XDevmode& xdevmode) {
    const ByteBuffer* const state = xdevmode.GetProperty(privateblock::kAttributeStateKey);
    return state ? *state : ByteBuffer();
}

}  // namespace

DevmodeSettingsSink::DevmodeSettingsSink(XDevmode& xdevmode)
    : xdevmode_(xdevmode), settings_(StateOf(xdevmode), false, nullptr) {}

void DevmodeSettingsSink::SetList(PersistentAttributes& settings, const AttributeBytesRawList& list) const {
    AttributeBytesNameSpaces nameSpaces = settings.GetNameSpaces();
    nameSpaces.SetNameSpaceAttributes(namespace_, list);
    settings.SetAttributeBytesNameSpaces(nameSpaces);
}

void DevmodeSettingsSink::SetNameSpace(const AttributeBytesNameSpaceId& namespaceId) {
    namespace_ = namespaceId.GetId();
    SetList(settings_, {});
}

bool DevmodeSettingsSink::AddDataBlob(AttributeBytesFeatureId feature, const ByteBuffer& value) {
    AttributeBytesRawList list;
    settings_.GetAttributeBytesListForNameSpace(namespace_, list);
    list.Append(feature, AttributeBytesDataBlobValue(value));
    PersistentAttributes changed = settings_;
    SetList(changed, list);
    try {
        ByteBuffer image;
        changed.GetPersistentAttributesState(image);
        if (image.getDword() > kMaximumImageBytes) return false;
    } catch (const std::length_error&) {
        return false;  // beyond what any image may hold
    }
    settings_ = std::move(changed);
    return true;
}

bool DevmodeSettingsSink::Commit() {
    ByteBuffer image;
    settings_.GetPersistentAttributesState(image);
    return xdevmode_.GetOemDevmode() && xdevmode_.SetAttributeBytesState(image);
}
