// AttributeBytesReader: typed settings read from whatever list the derived class keeps as its default.
#include <mvutil/attributebytes.h>

AttributeBytesReader::~AttributeBytesReader() = default;

AttributeBytesIndexedList* AttributeBytesReader::GetDefaultAttributeBytesIndexedList() {
    return GetDocPropAttributeBytesIndexedList();
}

bool AttributeBytesReader::GetBooleanValueFromAttributeBytes(DWORD feature, bool& value) {
    const AttributeBytesIndexedList* list = GetDefaultAttributeBytesIndexedList();
    return list && list->GetBooleanValue(AttributeBytesFeatureId(feature), value);
}

bool AttributeBytesReader::GetIntegerValueFromAttributeBytes(DWORD feature, LONG& value) {
    const AttributeBytesIndexedList* list = GetDefaultAttributeBytesIndexedList();
    return list && list->GetIntegerValue(AttributeBytesFeatureId(feature), value);
}

bool AttributeBytesReader::GetOptionValueFromAttributeBytes(DWORD feature, DWORD& value) {
    const AttributeBytesIndexedList* list = GetDefaultAttributeBytesIndexedList();
    return list && list->GetOptionValue(AttributeBytesFeatureId(feature), value);
}

bool AttributeBytesReader::GetStringValueFromAttributeBytes(DWORD feature, CXString& value) {
    const AttributeBytesIndexedList* list = GetDefaultAttributeBytesIndexedList();
    return list && list->GetStringValue(AttributeBytesFeatureId(feature), value);
}
