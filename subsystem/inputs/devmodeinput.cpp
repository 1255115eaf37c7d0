// DEVMODEs as support engineers get them.
#include "devmodeinput.h"

#include <printsubsystem/driverextra.h>
#include <privateblock.h>

#include <algorithm>

#include <subsystem/devmodefields.h>
#include <subsystem/driverdata.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/regfile.h>
#include <subsystem/schemasettings.h>

#include "inputform.h"
#include "ticketinput.h"

namespace {

constexpr WideStringView kDefaultDevmodeValue = W("Default DevMode");
// The public parts that there have been, up to a later system's.
constexpr std::size_t kLargestPublicBytes = 1024;

[[noreturn]] void Refuse(const std::string& name, const std::string& what) {
    throw InputError("'" + name + "' is " + what +
                     "; a DEVMODE is wanted here, raw, as hex or Base64 text, in a .reg file "
                     "or inside a PrintTicket");
}

DevmodeBuffer FromBytes(std::vector<BYTE> bytes, const std::string& name, const std::string& what) {
    WORD publicBytes = 0;
    if (bytes.size() >= DevmodeBuffer::kSmallestPublicBytes)
        publicBytes = privateblock::ReadWord(bytes.data() + offsetof(DEVMODEW, dmSize));
    // Bytes that claim such a size were never a DEVMODE; those that claim more than there is are a cut one.
    if (bytes.size() >= DevmodeBuffer::kSmallestPublicBytes &&
        (publicBytes < DevmodeBuffer::kSmallestPublicBytes || publicBytes > kLargestPublicBytes))
        Refuse(name, what + " that holds no DEVMODE (its dmSize would be " + std::to_string(publicBytes) + ")");
    return DevmodeBuffer(std::move(bytes), name);
}

std::vector<BYTE> DecodeHex(std::string_view text, const std::string& name) {
    std::vector<BYTE> bytes;
    int pending = -1;
    for (std::size_t at = 0; at < text.size(); ++at) {
        // "0x" before a number and "hex:" before a value are no digits of it.
        for (const std::string_view prefix : {"0x", "hex:"})
            if (pending < 0 && LowerSchemaWord(text.substr(at, prefix.size())) == prefix) at += prefix.size();
        if (at >= text.size()) break;
        const std::size_t digit = std::string_view("0123456789abcdef").find(LowerSchemaWord(text.substr(at, 1)));
        const bool isDigit = digit != std::string_view::npos;
        if (!isDigit && pending >= 0) Refuse(name, "a text of hex digits, an odd number of them in a group");
        if (!isDigit) continue;
        if (pending < 0) {
            pending = static_cast<int>(digit);
        } else {
            bytes.push_back(static_cast<BYTE>(pending << 4 | static_cast<int>(digit)));
            pending = -1;
        }
    }
    if (pending >= 0) Refuse(name, "a text of hex digits, an odd number of them");
    return bytes;
}

// The last part of a registry path.
WideString GetLastKey(const WideString& path) { return path.substr(path.rfind(W('\\')) + 1); }

DevmodeBuffer FromRegFile(std::string_view bytes, const std::string& name, const std::string& printer) {
    std::vector<const RegFileKey*> keys;
    std::vector<const RegFileValue*> values;
    const RegFile file = ParseRegFile(bytes);
    for (const RegFileKey& key : file)
        for (const RegFileValue& value : key.values)
            if (EqualRegistryNames(value.name, kDefaultDevmodeValue) && value.type == REG_BINARY) {
                keys.push_back(&key);
                values.push_back(&value);
            }
    if (values.empty()) Refuse(name, "a .reg file without a DEVMODE (a binary value \"Default DevMode\")");
    std::size_t chosen = 0;
    if (values.size() > 1) {
        const WideString wanted = ArgumentToWide(printer);
        const auto found = std::find_if(keys.begin(), keys.end(), [&](const RegFileKey* key) {
            return EqualRegistryNames(GetLastKey(key->path), wanted);
        });
        if (found == keys.end())
            Refuse(name, "a .reg file with the DEVMODEs of " + std::to_string(values.size()) +
                             " printers, none of them named '" + printer + "'");
        chosen = static_cast<std::size_t>(found - keys.begin());
    }
    return FromBytes(values[chosen]->data, name, "a .reg file with a value \"Default DevMode\"");
}

// A DEVMODE around the block, all of its public fields unset.
DevmodeBuffer WrapBlock(const std::vector<BYTE>& block) {
    DevmodeBuffer devmode(kDriverExtraBytes);
    BYTE* extra = reinterpret_cast<BYTE*>(devmode.Get()) + devmode.GetPublicBytes();
    privateblock::WriteWord(extra + privateblock::kLocators[0].wordOffset, kCoreDriverPartBytes);
    std::copy(block.begin(), block.end(), extra + kCoreDriverPartBytes);
    return devmode;
}

DevmodeBuffer FromTicket(IXMLDOMDocument2* ticket, const std::string& name) {
    const SchemaSettings settings(ticket);
    std::string fault;
    for (const SchemaSetting& setting : settings.GetAll()) {
        if (setting.kind != SchemaSetting::Kind::Parameter || setting.name.local != facts::kDriverDataParameter)
            continue;
        DriverData data = DecodeDriverData(setting.text);
        if (!data.block.empty()) return WrapBlock(data.block);
        fault = data.fault;
    }
    for (const SchemaSetting& setting : settings.GetAll())
        if (std::optional<DevmodeBuffer> devmode = FindDevmode(DecodeBase64(setting.text))) return *std::move(devmode);
    Refuse(name, fault.empty() ? "a PrintTicket without driver data"
                               : "a PrintTicket whose driver data cannot be used: " + fault);
}

}  // namespace

std::optional<DevmodeBuffer> FindDevmode(std::span<const BYTE> bytes) {
    if (bytes.size() < DevmodeBuffer::kSmallestPublicBytes) return std::nullopt;
    const WORD publicBytes = privateblock::ReadWord(bytes.data() + offsetof(DEVMODEW, dmSize));
    const WORD extraBytes = privateblock::ReadWord(bytes.data() + offsetof(DEVMODEW, dmDriverExtra));
    if (publicBytes < DevmodeBuffer::kSmallestPublicBytes || publicBytes > kLargestPublicBytes ||
        std::size_t{publicBytes} + extraBytes > bytes.size())
        return std::nullopt;
    DevmodeBuffer devmode(std::vector<BYTE>(bytes.begin(), bytes.end()), "the parameter");
    const std::string name = GetDevmodeText(devmode.CopyPublicPart(), GetDevmodeField("dmDeviceName"));
    const bool isText = !name.empty() &&
                        std::none_of(name.begin(), name.end(), [](unsigned char character) { return character < ' '; });
    return isText ? std::optional(std::move(devmode)) : std::nullopt;
}

DevmodeBuffer ReadDevmodeInput(const std::filesystem::path& file, const std::string& printer) {
    return ReadDevmodeBytes(ReadWholeFile(file), NameInput(file), printer);
}

DevmodeBuffer ReadDevmodeBytes(std::string_view bytes, const std::string& name, const std::string& printer) {
    const InputKind kind = RecogniseInput(bytes);
    switch (kind.form) {
        case InputForm::Xml:
        case InputForm::Package:
            return FromTicket(ReadTicketBytes(bytes, name).Get(), name);
        case InputForm::RegistryFile:
            return FromRegFile(bytes, name, printer);
        case InputForm::Hex:
            return FromBytes(DecodeHex(DecodeText(bytes), name), name, kind.description);
        case InputForm::Base64: {
            std::vector<BYTE> decoded = DecodeBase64(DecodeText(bytes));
            if (decoded.empty()) Refuse(name, "a text file");
            return FromBytes(std::move(decoded), name, kind.description);
        }
        case InputForm::Binary:
            return FromBytes(std::vector<BYTE>(bytes.begin(), bytes.end()), name, kind.description);
        case InputForm::Other:
            break;
    }
    Refuse(name, kind.description);
}
