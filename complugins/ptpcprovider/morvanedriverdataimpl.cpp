// The private driver data: the whole private block, carried in the private parameter JobMorvaneDriverData.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/privateparameters.h>
#include <mvutil/crc32.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/persistentattributes.h>
#include <privateblock.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <throwscheme.h>
#include <xdevmode.h>

#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/morvanedriverdataimpl");
constexpr const WCHAR* kDriverData = kWide<facts::kDriverDataParameter>.text;
constexpr int kMaximumDriverDataLength = 20000;  // characters of base64 text
constexpr int kChecksumBytes = 4;                // before the payload

// Whether the bytes can stand at a block's start: they cover its header and say what a block says of itself.
bool IsBlockPayload(const BYTE* payload, std::size_t bytes) {
    return bytes >= privateblock::kEntriesOffset && bytes <= privateblock::kBytes &&
           privateblock::ReadDword(payload + privateblock::kSizeOffset) == privateblock::kBytes &&
           privateblock::ReadDword(payload + privateblock::kSignatureOffset) == privateblock::kSignature;
}

}  // namespace

HRESULT MorvanePtProvider::AddMorvaneDriverDataCapabilities(PrintCapabilitiesXmlDocument& capabilities) {
    return RunFeatureUnit([&] {
        const Bstr prefix = capabilities.GetPrivatePrefix();
        DeleteEveryParameterDef(capabilities, prefix, kDriverData);
        ComPtr<IXMLDOMElement> definition;
        capabilities.CreateStringParameterDef(prefix.Get(), kDriverData, W("Optional"), CXString(), CXString(), 0,
                                              kMaximumDriverDataLength, W("base64"), definition.Put());
        return ComChecks(W("MorvanePtProvider::AddMorvaneDriverDataCapabilities"), kSourceUnit)
            .Succeeds(capabilities.GetRootNode()->appendChild(definition.Get(), nullptr));
    });
}

HRESULT MorvanePtProvider::SetMorvaneDriverDataInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& xdevmode) {
    return RunFeatureUnit([&]() -> HRESULT {
        const ComChecks checks(W("MorvanePtProvider::SetMorvaneDriverDataInPrintTicket"), kSourceUnit);
        const Bstr prefix = ticket.GetPrivatePrefix();
        const BYTE* block = xdevmode.GetOemDevmode();
        if (!block) {  // another driver's DEVMODE: driver data in the ticket cannot be its own
            DeleteEveryParameterInit(ticket, prefix, kDriverData);
            return S_FALSE;
        }
        const std::size_t payloadBytes = xdevmode.GetPrivateDataSize();
        std::vector<BYTE> data(kChecksumBytes + payloadBytes);
        privateblock::WriteDword(data.data(), Crc32::GetCrc(block, payloadBytes));
        std::memcpy(data.data() + kChecksumBytes, block, payloadBytes);

        const int bytes = static_cast<int>(data.size());
        constexpr DWORD kFlags = MorvaneUtilities::kBase64NoLineBreaks;
        const auto makeText = [&](const WCHAR* source, int length) {
            Bstr text;
            *text.Put() = SysAllocStringLen(source, static_cast<UINT>(length));
            checks.Require(text.Get() != nullptr, E_OUTOFMEMORY);
            return text;
        };
        const int room = MorvaneUtilities::Base64EncodeGetRequiredLength(bytes, kFlags);
        int characters = room;
        Bstr text = makeText(nullptr, room);
        if (!MorvaneUtilities::Base64Encode(data.data(), bytes, text.Get(), &characters, kFlags)) return E_FAIL;
        if (characters < room) text = makeText(text.Get(), characters);

        DeleteEveryParameterInit(ticket, prefix, kDriverData);
        ComPtr<IXMLDOMElement> parameter;
        ticket.CreateStringParameterInit(prefix.Get(), kDriverData, std::move(text), parameter.Put());
        return checks.Succeeds(ticket.GetRootNode()->appendChild(parameter.Get(), nullptr));
    });
}

HRESULT MorvanePtProvider::GetMorvaneDriverDataFromPrintTicketAndUpdateDevmode(PrintTicketXmlDocument& ticket,
                                                                               XDevmode& xdevmode) {
    return RunFeatureUnit([&]() -> HRESULT {
        ComPtr<IXMLDOMNode> value;
        const HRESULT found =
            ticket.GetParameterInitValueNodeIfExists(ticket.GetPrivatePrefix().Get(), kDriverData, value.Put());
        if (found != S_OK) return found;
        Bstr text;
        const HRESULT read = GetTrimmedText(value.Get(), &text);
        if (FAILED(read)) return read;

        BYTE* block = xdevmode.GetOemDevmode();
        if (!block) return S_OK;  // nothing to restore into
        const int characters = static_cast<int>(text.View().size());
        std::vector<BYTE> data(MorvaneUtilities::Base64DecodeGetRequiredLength(characters));
        int bytes = static_cast<int>(data.size());
        MorvaneUtilities::Base64Decode(text.Get(), characters, data.data(), &bytes);

        // A payload with a wrong checksum, or one that is no block, is ignored.
        if (bytes < kChecksumBytes) return S_OK;
        const BYTE* payload = data.data() + kChecksumBytes;
        const std::size_t payloadBytes = bytes - kChecksumBytes;
        if (!IsBlockPayload(payload, payloadBytes)) return S_OK;
        if (privateblock::ReadDword(data.data()) != Crc32::GetCrc(payload, payloadBytes)) return S_OK;
        std::memset(block, 0, privateblock::kBytes);
        std::memcpy(block, payload, payloadBytes);
        xdevmode.SetDevmode(xdevmode.GetDevmode());  // reads the restored entries afresh
        return S_OK;
    });
}

std::unique_ptr<AttributeBytesIndexedList> MorvanePtProvider::CreateDataModelDataAttributeBytesIndexedList(
    XDevmode& xdevmode) {
    const PersistentAttributes* const state = xdevmode.GetAttributeBytesState();
    if (!state) return nullptr;
    AttributeBytesRawList stored;
    state->GetAttributeBytesListForNameSpace(PersistentAttributes::GetDataModelDocPropNameSpaceId(), stored);
    auto list = std::make_unique<AttributeBytesIndexedList>();
    list->ImportFromRawList(stored);
    return list;
}

void MorvanePtProvider::CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(
    XDevmode& xdevmode, const AttributeBytesIndexedList* list) {
    const PersistentAttributes* const state = xdevmode.GetAttributeBytesState();
    if (!state || !list) return;
    PersistentAttributes attributes(ByteBuffer(), false, nullptr);
    AttributeBytesRawList documentProperties, deviceCapabilities;
    documentProperties.ImportFromIndexedList(*list);
    state->GetAttributeBytesListForNameSpace(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(),
                                             deviceCapabilities);
    AttributeBytesNameSpaces nameSpaces;
    nameSpaces.SetNameSpaceAttributes(PersistentAttributes::GetDataModelDocPropNameSpaceId(), documentProperties);
    nameSpaces.SetNameSpaceAttributes(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId(), deviceCapabilities);
    attributes.SetAttributeBytesNameSpaces(nameSpaces);
    ByteBuffer image;
    try {
        attributes.GetPersistentAttributesState(image);
    } catch (const std::length_error&) {
        return;  // beyond what any image may hold
    }
    if (image.getDword() <= privateblock::kMaximumStateBytes) xdevmode.SetAttributeBytesState(image);
}
