// Attribute lists as bytes: a count, then for each item its feature id, kind, flag and value, all little-endian.
#include <mvutil/attributebytes.h>

#include "bytereader.h"

#include <cstring>
#include <optional>

namespace {

using Kind = AttributeBytesValue::Kind;

constexpr std::size_t kSmallestItem = 7;  // feature id (4), kind (1), flag (1) and a boolean (1)

void WriteText(ByteBuffer& bytes, const CXString& text) {
    WriteDword(bytes, static_cast<DWORD>(text.GetLength()));
    bytes.appendLpbyte(text.GetString(), text.GetLength() * sizeof(WCHAR));
}

void WriteValue(ByteBuffer& bytes, const AttributeBytesValue& value) {
    WriteByte(bytes, static_cast<BYTE>(value.GetKind()));
    WriteByte(bytes, value.IsSet() ? 1 : 0);
    switch (value.GetKind()) {
        case Kind::Boolean:
            WriteByte(bytes, value.GetBoolean() ? 1 : 0);
            break;
        case Kind::Integer:
        case Kind::Option:
            WriteDword(bytes, value.GetOption());
            break;
        case Kind::NewOption:
        case Kind::String:
            WriteText(bytes, value.GetText());
            break;
        case Kind::List:
            value.GetList().Encode(bytes);
            break;
        case Kind::DataBlob:
            WriteDword(bytes, value.GetDataBlob().getDword());
            bytes.append(value.GetDataBlob());
            break;
    }
}

bool ReadFlag(ByteReader& reader, bool& flag) {
    BYTE byte = 0;
    if (!reader.ReadByte(byte) || byte > 1) return false;
    flag = byte == 1;
    return true;
}

bool ReadText(ByteReader& reader, CXString& text) {
    DWORD units = 0;
    const BYTE* bytes = nullptr;
    if (!reader.ReadDword(units) || units > reader.GetLeft() / sizeof(WCHAR) ||
        !reader.ReadBytes(units * sizeof(WCHAR), bytes)) {
        return false;
    }
    WideString read(units, WCHAR());
    if (units > 0) std::memcpy(read.data(), bytes, units * sizeof(WCHAR));
    text = CXString(std::move(read));
    return true;
}

bool ReadList(ByteReader& reader, int depth, AttributeBytesRawList& list);

std::optional<AttributeBytesValue> ReadTextValue(ByteReader& reader, Kind kind, bool set) {
    CXString text;
    if (!ReadText(reader, text)) return std::nullopt;
    if (kind == Kind::NewOption) return AttributeBytesOptionValue(AttributeBytesNewValueId(text), set);
    return AttributeBytesStringValue(text);
}

std::optional<AttributeBytesValue> ReadBlob(ByteReader& reader) {
    DWORD length = 0;
    const BYTE* bytes = nullptr;
    if (!reader.ReadDword(length) || !reader.ReadBytes(length, bytes)) return std::nullopt;
    return AttributeBytesDataBlobValue(ByteBuffer(bytes, length));
}

// The value of an item at the given depth; none when the bytes hold none.
std::optional<AttributeBytesValue> ReadValue(ByteReader& reader, int depth) {
    BYTE kind = 0;
    bool set = false;
    DWORD number = 0;
    if (!reader.ReadByte(kind) || !ReadFlag(reader, set)) return std::nullopt;
    // Kinds without a flag of their own are always written with it set.
    const bool carriesFlag = kind == static_cast<BYTE>(Kind::Option) || kind == static_cast<BYTE>(Kind::NewOption) ||
                             kind == static_cast<BYTE>(Kind::List);
    if (!set && !carriesFlag) return std::nullopt;
    switch (static_cast<Kind>(kind)) {
        case Kind::Boolean: {
            bool value = false;
            if (!ReadFlag(reader, value)) return std::nullopt;
            return AttributeBytesBooleanValue(value);
        }
        case Kind::Integer:
            if (!reader.ReadDword(number)) return std::nullopt;
            return AttributeBytesIntegerValue(static_cast<LONG>(number));
        case Kind::Option:
            if (!reader.ReadDword(number)) return std::nullopt;
            return AttributeBytesOptionValue(AttributeBytesValueId(number), set);
        case Kind::NewOption:
        case Kind::String:
            return ReadTextValue(reader, static_cast<Kind>(kind), set);
        case Kind::List: {
            AttributeBytesRawList list;
            if (!ReadList(reader, depth + 1, list)) return std::nullopt;
            return AttributeBytesListValue(set ? 1 : 0, list);
        }
        case Kind::DataBlob:
            return ReadBlob(reader);
    }
    return std::nullopt;
}

bool ReadList(ByteReader& reader, int depth, AttributeBytesRawList& list) {
    DWORD count = 0;
    if (depth > AttributeBytesRawList::kMaximumDepth || !reader.ReadDword(count) ||
        count > reader.GetLeft() / kSmallestItem) {
        return false;
    }
    for (; count > 0; --count) {
        DWORD feature = 0;
        if (!reader.ReadDword(feature)) return false;
        const std::optional<AttributeBytesValue> value = ReadValue(reader, depth);
        if (!value) return false;
        list.Append(AttributeBytesFeatureId(feature), *value);
    }
    return true;
}

}  // namespace

void AttributeBytesRawList::Encode(ByteBuffer& bytes) const {
    WriteDword(bytes, static_cast<DWORD>(items_.size()));
    for (const auto& [feature, value] : items_) {
        WriteDword(bytes, feature.id);
        WriteValue(bytes, value);
    }
}

bool AttributeBytesRawList::Decode(const BYTE* bytes, std::size_t length) {
    ByteReader reader(bytes, length);
    AttributeBytesRawList decoded;
    const bool whole = ReadList(reader, 1, decoded) && reader.GetLeft() == 0;
    *this = whole ? std::move(decoded) : AttributeBytesRawList();
    return whole;
}
