// DEVMODEs of jobs: settings made by hand in the private block.
#pragma once

#include <support/privatedevmode.h>

#include <mvutil/attributebytes.h>

#include <functional>

using SettingsMaker = std::function<void(AttributeBytesIndexedList&)>;

inline void SetBoolean(AttributeBytesIndexedList& list, DWORD feature, bool value) {
    list.SetAttributeBytes(AttributeBytesFeatureId(feature), AttributeBytesBooleanValue(value));
}
inline void SetText(AttributeBytesIndexedList& list, DWORD feature, const CXString& value) {
    list.SetAttributeBytes(AttributeBytesFeatureId(feature), AttributeBytesStringValue(value));
}
inline void SetInteger(AttributeBytesIndexedList& list, DWORD feature, LONG value) {
    list.SetAttributeBytes(AttributeBytesFeatureId(feature), AttributeBytesIntegerValue(value));
}
inline void SetOption(AttributeBytesIndexedList& list, DWORD feature, DWORD value) {
    list.SetAttributeBytes(AttributeBytesFeatureId(feature),
                           AttributeBytesOptionValue(AttributeBytesValueId(value), true));
}

// A DEVMODE that asks for a job ticket (attribute 286), of one copy, collated; "owner" is the block's job text.
inline TestDevmode MakeJobDevmode(const SettingsMaker& make = {}) {
    AttributeBytesIndexedList list;
    SetBoolean(list, 286, true);
    if (make) make(list);
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    const ByteBuffer state =
        PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
    TestDevmode devmode(MakePrivateBlock({{1, state}, {4, TextBytes(W("owner"))}}));
    devmode.Get()->dmCopies = 1;
    devmode.Get()->dmCollate = DMCOLLATE_TRUE;
    return devmode;
}
