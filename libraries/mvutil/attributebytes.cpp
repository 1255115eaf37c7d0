// Attribute lists: values, raw and indexed lists, namespaces, and the text of a list for the debugger.
#include <mvutil/attributebytes.h>

#include <mvutil/formatting.h>
#include <mvutil/morvaneexception.h>

#include <algorithm>
#include <stdexcept>

AttributeBytesBooleanValue::AttributeBytesBooleanValue(bool value)
    : AttributeBytesValue(Kind::Boolean, true, value ? 1 : 0) {}

AttributeBytesIntegerValue::AttributeBytesIntegerValue(LONG value) : AttributeBytesValue(Kind::Integer, true, value) {}

AttributeBytesOptionValue::AttributeBytesOptionValue(AttributeBytesValueId value, bool set)
    : AttributeBytesValue(Kind::Option, set, static_cast<LONG>(value.id)) {}

AttributeBytesOptionValue::AttributeBytesOptionValue(const AttributeBytesNewValueId& value, bool set)
    : AttributeBytesValue(Kind::NewOption, set, 0) {
    text_ = value.text;
}

AttributeBytesStringValue::AttributeBytesStringValue(const CXString& value)
    : AttributeBytesValue(Kind::String, true, 0) {
    text_ = value;
}

AttributeBytesListValue::AttributeBytesListValue(int flag, const AttributeBytesRawList& list)
    : AttributeBytesValue(Kind::List, flag != 0, 0) {
    if (list.GetDepth() >= AttributeBytesRawList::kMaximumDepth) {
        throw std::invalid_argument("the attribute list nests too deep");
    }
    list_ = std::make_shared<const AttributeBytesRawList>(list);
}

AttributeBytesDataBlobValue::AttributeBytesDataBlobValue(const ByteBuffer& value)
    : AttributeBytesValue(Kind::DataBlob, true, 0) {
    blob_ = std::make_shared<const ByteBuffer>(value);
}

const ByteBuffer& AttributeBytesValue::GetDataBlob() const {
    static const ByteBuffer empty;
    return blob_ ? *blob_ : empty;
}

const AttributeBytesRawList& AttributeBytesValue::GetList() const {
    static const AttributeBytesRawList empty;
    return list_ ? *list_ : empty;
}

bool operator==(const AttributeBytesValue& a, const AttributeBytesValue& b) {
    return a.kind_ == b.kind_ && a.set_ == b.set_ && a.number_ == b.number_ && a.text_ == b.text_ &&
           (a.blob_ == b.blob_ || a.GetDataBlob() == b.GetDataBlob()) &&
           (a.list_ == b.list_ || a.GetList() == b.GetList());
}

void AttributeBytesRawList::ImportFromIndexedList(const AttributeBytesIndexedList& list) {
    AttributeBytesRawList imported;
    imported.items_.reserve(list.GetItems().size());
    for (const auto& [feature, value] : list.GetItems()) imported.Append(feature, value);
    *this = std::move(imported);
}

void AttributeBytesRawList::Append(AttributeBytesFeatureId feature, const AttributeBytesValue& value) {
    if (value.GetKind() == AttributeBytesValue::Kind::List) depth_ = std::max(depth_, value.GetList().GetDepth() + 1);
    items_.emplace_back(feature, value);
}

bool operator==(const AttributeBytesRawList& a, const AttributeBytesRawList& b) { return a.items_ == b.items_; }

void AttributeBytesIndexedList::ImportFromRawList(const AttributeBytesRawList& list) {
    std::map<AttributeBytesFeatureId, AttributeBytesValue> items;
    for (const auto& [feature, value] : list.GetItems()) items.emplace(feature, value);  // the first of its id stays
    items_ = std::move(items);
}

void AttributeBytesIndexedList::SetAttributeBytes(AttributeBytesFeatureId feature, const AttributeBytesValue& value) {
    items_.insert_or_assign(feature, value);
}

const AttributeBytesValue* AttributeBytesIndexedList::Find(AttributeBytesFeatureId feature) const {
    const auto found = items_.find(feature);
    return found == items_.end() ? nullptr : &found->second;
}

namespace {

const AttributeBytesValue* FindOfKind(const AttributeBytesIndexedList& list, AttributeBytesFeatureId feature,
                                      AttributeBytesValue::Kind kind) {
    const AttributeBytesValue* value = list.Find(feature);
    return value && value->GetKind() == kind ? value : nullptr;
}

}  // namespace

bool AttributeBytesIndexedList::GetCollection(AttributeBytesFeatureId feature,
                                              AttributeBytesIndexedList& collection) const {
    AttributeBytesIndexedList found;  // the collection asked into may be this list
    const AttributeBytesValue* value = FindOfKind(*this, feature, AttributeBytesValue::Kind::List);
    if (value) found.ImportFromRawList(value->GetList());
    collection = std::move(found);
    return value != nullptr;
}

bool AttributeBytesIndexedList::GetBooleanValue(AttributeBytesFeatureId feature, bool& value) const {
    const AttributeBytesValue* found = FindOfKind(*this, feature, AttributeBytesValue::Kind::Boolean);
    if (found) value = found->GetBoolean();
    return found != nullptr;
}

bool AttributeBytesIndexedList::GetIntegerValue(AttributeBytesFeatureId feature, LONG& value) const {
    const AttributeBytesValue* found = FindOfKind(*this, feature, AttributeBytesValue::Kind::Integer);
    if (found) value = found->GetInteger();
    return found != nullptr;
}

bool AttributeBytesIndexedList::GetOptionValue(AttributeBytesFeatureId feature, DWORD& value) const {
    const AttributeBytesValue* found = FindOfKind(*this, feature, AttributeBytesValue::Kind::Option);
    if (found) value = found->GetOption();
    return found != nullptr;
}

bool AttributeBytesIndexedList::GetStringValue(AttributeBytesFeatureId feature, CXString& value) const {
    const AttributeBytesValue* found = FindOfKind(*this, feature, AttributeBytesValue::Kind::String);
    if (found) value = found->GetText();
    return found != nullptr;
}

bool AttributeBytesIndexedList::GetDataBlobValue(AttributeBytesFeatureId feature, ByteBuffer& value) const {
    const AttributeBytesValue* found = FindOfKind(*this, feature, AttributeBytesValue::Kind::DataBlob);
    if (found) value = found->GetDataBlob();
    return found != nullptr;
}

bool AttributeBytesIndexedList::GetOptionValueOrNewId(AttributeBytesFeatureId feature, DWORD& value,
                                                      CXString& newValueText) const {
    const AttributeBytesValue* found = Find(feature);
    if (!found) return false;
    const bool isNew = found->GetKind() == AttributeBytesValue::Kind::NewOption;
    if (!isNew && found->GetKind() != AttributeBytesValue::Kind::Option) return false;
    newValueText = found->GetText();
    value = found->GetOption();
    return true;
}

namespace {

CXString DescribeValue(const AttributeBytesValue& value) {
    using Kind = AttributeBytesValue::Kind;
    const WCHAR* automatic = value.IsSet() ? W("") : W(" (automatic)");
    CXString text;
    switch (value.GetKind()) {
        case Kind::Boolean:
            text.Format(W("boolean %s"), value.GetBoolean() ? W("true") : W("false"));
            break;
        case Kind::Integer:
            text.Format(W("integer %i"), value.GetInteger());
            break;
        case Kind::Option:
            text.Format(W("option %u%s"), value.GetOption(), automatic);
            break;
        case Kind::NewOption:
            text.Format(W("option \"%s\"%s"), value.GetText(), automatic);
            break;
        case Kind::String:
            text.Format(W("text \"%s\""), value.GetText());
            break;
        case Kind::List:
            text.Format(W("list of %u"), value.GetList().GetItems().size());
            break;
        case Kind::DataBlob:
            text.Format(W("data of %u bytes"), value.GetDataBlob().getDword());
            break;
    }
    return text;
}

void AppendDump(CXString& text, AttributeBytesFeatureId feature, const AttributeBytesValue& value, bool nested,
                int level) {
    const WideString indent(2 * static_cast<std::size_t>(level), W(' '));
    CXString line;
    line.Format(W("%s%u: %s\n"), indent, feature.id, DescribeValue(value));
    text += line;
    if (!nested) return;
    for (const auto& [innerFeature, innerValue] : value.GetList().GetItems()) {
        AppendDump(text, innerFeature, innerValue, nested, level + 1);
    }
}

}  // namespace

CXString AttributeBytesIndexedList::GetDumpText(bool nested) const {
    CXString text;
    for (const auto& [feature, value] : items_) AppendDump(text, feature, value, nested, 0);
    return text;
}

void AttributeBytesIndexedList::Dump(bool nested) const {
    if (MorvaneException::HasDebugHook()) OutputDebugStringW(GetDumpText(nested));
}

void AttributeBytesNameSpaces::SetNameSpaceAttributes(DWORD namespaceId, const AttributeBytesRawList& list) {
    namespaces_.insert_or_assign(namespaceId, list);
}
