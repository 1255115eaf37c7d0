// XOemPdev: an in-memory property bag that stands in for a rendering device's store of one job.
#include <xoempdev.h>

XOemPdev::XOemPdev() = default;
XOemPdev::~XOemPdev() = default;

bool XOemPdev::GetPropertyString(LONG key, CXString& text) {
    ByteBuffer buffer;
    const bool found = GetPropertyBuffer(key, buffer);
    text = buffer.getAsStringValue();
    return found;
}

bool XOemPdev::GetPropertyLong(LONG key, LONG& value) {
    ByteBuffer buffer;
    const bool found = GetPropertyBuffer(key, buffer);
    value = buffer.getAsLongValue();
    return found;
}

bool XOemPdev::GetPropertyBuffer(LONG key, ByteBuffer& buffer) {
    const auto found = properties_.find(key);
    if (found == properties_.end())
        buffer.clear();
    else
        buffer = *found->second;
    return found != properties_.end();
}

void XOemPdev::SetPropertyLong(LONG key, LONG value) {
    ByteBuffer buffer;
    buffer.createFromLongValue(value);
    SetPropertyBuffer(key, buffer);
}

void XOemPdev::SetPropertyString(LONG key, const CXString& text) {
    ByteBuffer buffer;
    buffer.createFromStringValue(text);
    SetPropertyBuffer(key, buffer);
}

void XOemPdev::SetPropertyBuffer(LONG key, const ByteBuffer& buffer) {
    properties_[key] = std::make_shared<const ByteBuffer>(buffer);
    if (key == kAttributeStateKey) SetPropertyBuffer(kAttributeStateChangedKey, ByteBuffer());
}

void XOemPdev::ClearProperties() { properties_.clear(); }

void XOemPdev::Flush() {}
