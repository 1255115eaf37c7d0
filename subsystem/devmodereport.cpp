// What a DEVMODE holds, written as JSON or as text.
#include "devmodereport.h"

#include <mvutil/persistentattributes.h>
#include <privateblock.h>
#include <xdevmode.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

#include "devmodefields.h"
#include "driversettings.h"
#include "hosttext.h"
#include "jsontext.h"
#include "settingnames.h"

namespace {

using Json = nlohmann::ordered_json;

Json DescribeFields(const DevmodeBuffer& buffer) {
    const DEVMODEW devmode = buffer.CopyPublicPart();
    Json fields = Json::object();
    for (const DevmodeField& field : GetDevmodeFields()) {
        if (field.offset + field.GetBytes() > buffer.GetPublicBytes()) continue;
        if (field.kind == DevmodeFieldKind::Text) {
            fields[field.name] = GetDevmodeText(devmode, field);
        } else {
            fields[field.name] = GetDevmodeNumber(devmode, field);
        }
    }
    return fields;
}

// UTF-16 text with at most one NUL, at its end, and no controls; anything else is no text.
std::optional<std::string> ReadText(const privateblock::Entry& entry) {
    if (entry.length < sizeof(WCHAR) || entry.length % sizeof(WCHAR) != 0) return std::nullopt;
    WideString text;
    for (std::size_t at = 0; at < entry.length; at += sizeof(WCHAR))
        text.push_back(static_cast<WCHAR>(privateblock::ReadWord(entry.value + at)));
    if (text.back() == W('\0')) text.pop_back();
    const auto isControl = [](WCHAR character) { return character < W(' '); };
    if (std::any_of(text.begin(), text.end(), isControl)) return std::nullopt;
    return ToUtf8(text);
}

Json DescribeValue(const AttributeBytesValue& value) {
    using Kind = AttributeBytesValue::Kind;
    switch (value.GetKind()) {
        case Kind::Boolean:
            return {{"kind", "boolean"}, {"value", value.GetBoolean()}};
        case Kind::Integer:
            return {{"kind", "integer"}, {"value", value.GetInteger()}};
        case Kind::Option:
            return {{"kind", "option"}, {"value", value.GetOption()}, {"set", value.IsSet()}};
        case Kind::NewOption:
            return {{"kind", "new option"}, {"value", value.GetText().ToUtf8()}, {"set", value.IsSet()}};
        case Kind::String:
            return {{"kind", "string"}, {"value", value.GetText().ToUtf8()}};
        case Kind::DataBlob:
            return {{"kind", "data"}, {"bytes", value.GetDataBlob().getDword()}};
        case Kind::List:
            break;
    }
    return {{"kind", "list"}};
}

Json DescribeList(const AttributeBytesRawList& list) {
    Json attributes = Json::array();
    for (const DriverSetting& setting : ListDriverSettings(list)) {
        Json attribute = {{"path", setting.path}, {"name", NameFeature(setting.feature)}};
        attribute.update(DescribeValue(setting.value));
        attributes.push_back(std::move(attribute));
    }
    return attributes;
}

std::string NameNamespace(DWORD id) {
    if (id == PersistentAttributes::GetDataModelDocPropNameSpaceId()) return "document properties";
    if (id == PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId()) return "device capabilities";
    return "unknown";
}

Json DescribeState(const ByteBuffer& state) {
    Json nameSpaces = Json::array();
    const PersistentAttributes persistent(state, false, nullptr);
    for (const auto& [id, list] : persistent.GetNameSpaces().GetNameSpaces())
        nameSpaces.push_back({{"namespace", id}, {"name", NameNamespace(id)}, {"attributes", DescribeList(list)}});
    return nameSpaces;
}

Json DescribeBlock(DevmodeBuffer& buffer) {
    const BYTE* block = XDevmode::GetOemDevmodeFromDevmode(buffer.Get());
    if (!block) return nullptr;
    using namespace privateblock;
    Json entries = Json::array();
    ByteBuffer state;
    bool stateFound = false;
    const std::size_t end = WalkEntries(block, [&](const Entry& entry) {
        Json described = {{"key", entry.key}, {"length", entry.length}};
        if (entry.key == kAttributeStateKey) {
            if (!stateFound) state.setWithLpbyte(entry.value, entry.length);
            stateFound = true;
        } else if (const std::optional<std::string> text = ReadText(entry)) {
            described["text"] = *text;
        }
        entries.push_back(std::move(described));
    });
    const DWORD stored = ReadDword(block + kChecksumOffset);
    const DWORD computed = ComputeChecksum(block);
    const WORD count = ReadWord(block + kEntryCountOffset);
    return {{"offset", block - reinterpret_cast<const BYTE*>(buffer.Get())},
            {"size", ReadDword(block + kSizeOffset)},
            {"signature", ReadDword(block + kSignatureOffset)},
            {"version", ReadDword(block + kVersionOffset)},
            {"checksum", {{"stored", stored}, {"computed", computed}, {"valid", stored == computed}}},
            {"entryCount", count},
            {"entryBytes", end - kEntriesOffset},
            {"entries", std::move(entries)},
            {"namespaces", DescribeState(state)}};
}

bool IsShownInHex(std::string_view name) {
    return name == "dmFields" || name == "dmSpecVersion" || name == "dmDriverVersion";
}

void PrintLine(std::ostream& out, std::string name, const std::string& value) {
    constexpr std::size_t kColumn = 20;
    name.resize(std::max(kColumn, name.size() + 1), ' ');
    out << "  " << name << value << '\n';
}

// Texts in quotes, numbers as they are.
std::string Show(const Json& value) { return value.dump(); }
std::string ShowHex(const Json& value, int digits) { return FormatHex(value.get<std::uint64_t>(), digits); }

void PrintBlock(const Json& block, std::ostream& out) {
    const Json& checksum = block["checksum"];
    out << "private block\n";
    PrintLine(out, "offset", Show(block["offset"]));
    PrintLine(out, "size", Show(block["size"]));
    PrintLine(out, "signature", ShowHex(block["signature"], 8));
    PrintLine(out, "version", Show(block["version"]));
    PrintLine(out, "checksum stored", ShowHex(checksum["stored"], 8));
    PrintLine(out, "checksum computed",
              ShowHex(checksum["computed"], 8) + (checksum["valid"].get<bool>() ? "" : " (the block is damaged)"));
    PrintLine(out, "entries", Show(block["entryCount"]));
    for (const Json& entry : block["entries"])
        PrintLine(out, "  key " + Show(entry["key"]),
                  Show(entry["length"]) + " bytes" + (entry.contains("text") ? "  " + Show(entry["text"]) : ""));
    if (block["entries"].size() != block["entryCount"].get<std::size_t>())
        out << "  the entries behind these run past the block's end\n";
    for (const Json& nameSpace : block["namespaces"]) {
        out << "attributes of namespace " << Show(nameSpace["namespace"]) << " ("
            << nameSpace["name"].get<std::string>() << ")\n";
        for (const Json& attribute : nameSpace["attributes"]) {
            std::string value = attribute.contains("value")   ? Show(attribute["value"])
                                : attribute.contains("bytes") ? Show(attribute["bytes"]) + " bytes"
                                                              : "empty list";
            if (!attribute.value("set", true)) value += " (automatic)";
            PrintLine(out, attribute["path"].get<std::string>(), value + "  " + attribute["name"].get<std::string>());
        }
    }
}

Json DescribeDevmode(DevmodeBuffer& devmode) {
    return {
        {"bytes", devmode.GetBytes()}, {"fields", DescribeFields(devmode)}, {"privateBlock", DescribeBlock(devmode)}};
}

}  // namespace

std::string FormatDevmodeAsJson(DevmodeBuffer& devmode) { return FormatJson(DescribeDevmode(devmode)); }

void PrintDevmodeDescription(DevmodeBuffer& devmode, std::ostream& out) {
    const Json description = DescribeDevmode(devmode);
    out << "DEVMODE of " << Show(description["bytes"]) << " bytes\n";
    for (const auto& [name, value] : description["fields"].items())
        PrintLine(out, name, IsShownInHex(name) ? ShowHex(value, 4) : Show(value));
    if (description["privateBlock"].is_null()) {
        out << "it holds no private block\n";
    } else {
        PrintBlock(description["privateBlock"], out);
    }
}
