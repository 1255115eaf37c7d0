// Attribute lists: the driver family's typed settings, by feature id, as they travel in the private DEVMODE block.
#pragma once

#include <mvutil/bytebuffer.h>

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class AttributeBytesRawList;

struct AttributeBytesFeatureId {
    explicit AttributeBytesFeatureId(DWORD featureId) noexcept : id(featureId) {}
    DWORD id;
    friend bool operator<(AttributeBytesFeatureId a, AttributeBytesFeatureId b) noexcept { return a.id < b.id; }
    friend bool operator==(AttributeBytesFeatureId a, AttributeBytesFeatureId b) noexcept { return a.id == b.id; }
};

// A value of an option feature that the data model knows by number.
struct AttributeBytesValueId {
    explicit AttributeBytesValueId(DWORD valueId) noexcept : id(valueId) {}
    DWORD id;
};

// A value of an option feature that the user made: known by its text.
struct AttributeBytesNewValueId {
    explicit AttributeBytesNewValueId(const CXString& valueText) : text(valueText) {}
    CXString text;
};

// One typed value. A list value shares the list it holds, which never changes.
class MVUTIL_API AttributeBytesValue {
public:
    enum class Kind : BYTE { Boolean = 1, Integer = 2, Option = 3, NewOption = 4, String = 5, List = 6, DataBlob = 7 };

    Kind GetKind() const noexcept { return kind_; }
    // Options: whether the user chose the value (false: automatic). Lists: the flag given at construction.
    bool IsSet() const noexcept { return set_; }
    bool GetBoolean() const noexcept { return number_ != 0; }
    LONG GetInteger() const noexcept { return number_; }
    DWORD GetOption() const noexcept { return static_cast<DWORD>(number_); }
    const CXString& GetText() const noexcept { return text_; }  // of a String or NewOption
    const ByteBuffer& GetDataBlob() const;                      // the empty buffer for other kinds
    const AttributeBytesRawList& GetList() const;               // the empty list for other kinds

    friend MVUTIL_API bool operator==(const AttributeBytesValue& a, const AttributeBytesValue& b);

protected:
    AttributeBytesValue(Kind kind, bool set, LONG number) : kind_(kind), set_(set), number_(number) {}

    Kind kind_;
    bool set_;
    LONG number_;
    CXString text_;
    std::shared_ptr<const ByteBuffer> blob_;  // shared by the value's copies, as the list is
    std::shared_ptr<const AttributeBytesRawList> list_;
};

// The kinds of value; they add nothing to the base, so a copy into AttributeBytesValue loses nothing.
class MVUTIL_API AttributeBytesBooleanValue : public AttributeBytesValue {
public:
    explicit AttributeBytesBooleanValue(bool value);
};
class MVUTIL_API AttributeBytesIntegerValue : public AttributeBytesValue {
public:
    explicit AttributeBytesIntegerValue(LONG value);
};
class MVUTIL_API AttributeBytesOptionValue : public AttributeBytesValue {
public:
    AttributeBytesOptionValue(AttributeBytesValueId value, bool set);
    AttributeBytesOptionValue(const AttributeBytesNewValueId& value, bool set);
};
class MVUTIL_API AttributeBytesStringValue : public AttributeBytesValue {
public:
    explicit AttributeBytesStringValue(const CXString& value);
};
class MVUTIL_API AttributeBytesListValue : public AttributeBytesValue {
public:
    // Throws std::invalid_argument when a list that holds the value would nest deeper than kMaximumDepth.
    AttributeBytesListValue(int flag, const AttributeBytesRawList& list);
};
class MVUTIL_API AttributeBytesDataBlobValue : public AttributeBytesValue {
public:
    explicit AttributeBytesDataBlobValue(const ByteBuffer& value);
};

class AttributeBytesIndexedList;

// Settings in the order in which they were stored.
class MVUTIL_API AttributeBytesRawList {
public:
    using Item = std::pair<AttributeBytesFeatureId, AttributeBytesValue>;

    void ImportFromIndexedList(const AttributeBytesIndexedList& list);  // replaces the contents; ascending feature ids
    void Append(AttributeBytesFeatureId feature, const AttributeBytesValue& value);
    const std::vector<Item>& GetItems() const noexcept { return items_; }
    bool IsEmpty() const noexcept { return items_.empty(); }
    int GetDepth() const noexcept { return depth_; }  // 1 for a list that holds no list

    // The list as bytes, and back. Equal lists give equal bytes. Decode gives false and an empty list on bytes that are
    // not exactly one list, nest deeper than kMaximumDepth or hold an unknown kind.
    static constexpr int kMaximumDepth = 10;
    void Encode(ByteBuffer& bytes) const;  // appends
    bool Decode(const BYTE* bytes, std::size_t length);

    friend MVUTIL_API bool operator==(const AttributeBytesRawList& a, const AttributeBytesRawList& b);

private:
    std::vector<Item> items_;
    int depth_ = 1;
};

// Settings by feature id. When a list holds a feature twice, the first one counts.
class MVUTIL_API AttributeBytesIndexedList {
public:
    void ImportFromRawList(const AttributeBytesRawList& list);                                  // replaces the contents
    void SetAttributeBytes(AttributeBytesFeatureId feature, const AttributeBytesValue& value);  // replaces or adds
    // The value, or null; valid until the next change.
    const AttributeBytesValue* Find(AttributeBytesFeatureId feature) const;
    // Copies the collection stored under the feature; an empty list when there is none. Whether there was one.
    bool GetCollection(AttributeBytesFeatureId feature, AttributeBytesIndexedList& collection) const;
    // Each is true when the feature is there with that kind; else the out argument is unchanged.
    bool GetBooleanValue(AttributeBytesFeatureId feature, bool& value) const;
    bool GetIntegerValue(AttributeBytesFeatureId feature, LONG& value) const;
    bool GetOptionValue(AttributeBytesFeatureId feature, DWORD& value) const;
    bool GetStringValue(AttributeBytesFeatureId feature, CXString& value) const;
    bool GetDataBlobValue(AttributeBytesFeatureId feature, ByteBuffer& value) const;
    // An option by number, or (value 0) a user-made one by its text.
    bool GetOptionValueOrNewId(AttributeBytesFeatureId feature, DWORD& value, CXString& newValueText) const;

    const std::map<AttributeBytesFeatureId, AttributeBytesValue>& GetItems() const noexcept { return items_; }
    bool IsEmpty() const noexcept { return items_.empty(); }
    // What the list holds, one line a feature; with nested, the lists inside it as well, indented.
    CXString GetDumpText(bool nested) const;
    // Sends that text to the debugger; costs one test and does nothing unless a hook of MorvaneException::SetDebugHook
    // is installed.
    void Dump(bool nested) const;

private:
    std::map<AttributeBytesFeatureId, AttributeBytesValue> items_;
};

// Lists by namespace id.
class MVUTIL_API AttributeBytesNameSpaces {
public:
    void SetNameSpaceAttributes(DWORD namespaceId, const AttributeBytesRawList& list);  // replaces or adds
    const std::map<DWORD, AttributeBytesRawList>& GetNameSpaces() const noexcept { return namespaces_; }

private:
    std::map<DWORD, AttributeBytesRawList> namespaces_;
};

class AttributeBytesNameSpaceId {
public:
    explicit AttributeBytesNameSpaceId(DWORD id) noexcept : id_(id) {}
    DWORD GetId() const noexcept { return id_; }

private:
    DWORD id_;
};

// Whatever typed settings can be read from. The order of the virtual operations binds.
class MVUTIL_API AttributeBytesReader {
public:
    virtual ~AttributeBytesReader();
    virtual AttributeBytesIndexedList* GetDefaultAttributeBytesIndexedList();  // forwards to the next operation
    virtual AttributeBytesIndexedList* GetDocPropAttributeBytesIndexedList() = 0;
    virtual void OnPrivateDataCommitted() = 0;
    virtual AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpaceId& namespaceId) = 0;
    virtual AttributeBytesIndexedList* GetAttributeBytesIndexedList(DWORD namespaceId) = 0;

    // From the default list: true when the feature is there with that kind; else the out argument is unchanged.
    bool GetBooleanValueFromAttributeBytes(DWORD feature, bool& value);
    bool GetIntegerValueFromAttributeBytes(DWORD feature, LONG& value);
    bool GetOptionValueFromAttributeBytes(DWORD feature, DWORD& value);
    bool GetStringValueFromAttributeBytes(DWORD feature, CXString& value);
};
