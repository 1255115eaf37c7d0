// Makes DEVMODEs as the driver would.
#include "devmodemaker.h"

#include <devmodesettingssink.h>
#include <facts/units.h>
#include <msdevicecapabilities.h>
#include <mvutil/persistentattributes.h>
#include <printsubsystem/driverextra.h>
#include <privateblock.h>

#include <algorithm>

#include "attributesettings.h"
#include "devmodefields.h"
#include "hosterror.h"
#include "hostplatform.h"
#include "hosttext.h"
#include "installedprinter.h"

namespace {

constexpr DWORD kBlockVersion = 1;
constexpr WideStringView kExecutableName = W("mvpthost.exe");
using facts::kMicrometresPerTenth;

// The private block follows the core driver's part, and a WORD in it says so. The core driver for PostScript keeps that
// word elsewhere than the one for the others.
void WriteCorePart(BYTE* extra, const ProductDescription& product) {
    const privateblock::Locator& locator = privateblock::kLocators[IsPostScript(product) ? 1 : 0];
    privateblock::WriteWord(extra + locator.wordOffset, kCoreDriverPartBytes);
}

void WriteBlock(BYTE* block, const std::vector<std::pair<WORD, ByteBuffer>>& entries) {
    using namespace privateblock;
    WriteDword(block + kSizeOffset, kBytes);
    WriteDword(block + kSignatureOffset, kSignature);
    WriteDword(block + kVersionOffset, kBlockVersion);
    WriteWord(block + kEntryCountOffset, static_cast<WORD>(entries.size()));
    std::size_t offset = kEntriesOffset;
    for (const auto& [key, value] : entries) {
        if (kBytes - offset < kEntryHeaderBytes + value.getDword())
            throw InputError("the settings do not fit in the DEVMODE; give fewer or shorter ones");
        WriteWord(block + offset, key);
        WriteWord(block + offset + 2, static_cast<WORD>(value.getDword()));
        std::copy_n(value.getLpbyte(), value.getDword(), block + offset + kEntryHeaderBytes);
        offset += kEntryHeaderBytes + value.getDword();
    }
    WriteDword(block + kChecksumOffset, ComputeChecksum(block));
}

ByteBuffer MakeAttributeState(const ProductDescription& product, const DevmodeSettings& settings) {
    AttributeBytesIndexedList list = MakeDefaultSettings(product);
    for (const auto& [path, value] : settings.attributes) SetAttribute(list, product, path, value);
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    ByteBuffer state = PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
    if (state.getDword() > privateblock::kMaximumStateBytes)
        throw InputError("the attributes do not fit in the DEVMODE; give fewer or shorter ones");
    return state;
}

ByteBuffer MakeText(WideStringView text) {
    ByteBuffer bytes;
    bytes.createFromStringValue(CXString(text));
    return bytes;
}

// Name and size of the paper that the number selects, where the settings leave them open. The number alone counts: no
// bit says otherwise, as the component leaves it.
void CompletePaperFields(DEVMODEW& devmode, const ProductDescription& product) {
    const ProductPaper* paper = product.FindPaper(static_cast<WORD>(devmode.dmPaperSize));
    if (!paper || (devmode.dmFields & DM_PAPERSIZE) == 0) return;
    if ((devmode.dmFields & DM_FORMNAME) == 0) {
        SetDevmodeText(devmode, GetDevmodeField("dmFormName"), CXString::FromUtf8(paper->name).AsWideString());
    }
    if ((devmode.dmFields & DM_PAPERWIDTH) == 0)
        devmode.dmPaperWidth = static_cast<SHORT>(paper->width / kMicrometresPerTenth);
    if ((devmode.dmFields & DM_PAPERLENGTH) == 0)
        devmode.dmPaperLength = static_cast<SHORT>(paper->length / kMicrometresPerTenth);
}

}  // namespace

DevmodeBuffer MakeDevmode(const ProductDescription& product, WideStringView printerName,
                          const DevmodeSettings& settings) {
    DevmodeBuffer buffer(kDriverExtraBytes);
    DEVMODEW& devmode = *buffer.Get();
    SetDevmodeText(devmode, GetDevmodeField("dmDeviceName"), printerName);
    devmode.dmSpecVersion = DM_SPECVERSION;
    devmode.dmDriverVersion = product.driverVersion;
    for (const ProductDevmodeField& field : product.devmode)
        SetDevmodeField(devmode, field.name, std::to_string(field.value));
    for (const auto& [field, value] : settings.fields) SetDevmodeField(devmode, field, value);
    CompletePaperFields(devmode, product);

    BYTE* extra = reinterpret_cast<BYTE*>(&devmode) + devmode.dmSize;
    WriteCorePart(extra, product);
    const std::string user = GetEnvironment("USER").value_or(GetEnvironment("USERNAME").value_or("user"));
    WriteBlock(extra + kCoreDriverPartBytes,
               {{privateblock::kAttributeStateKey, MakeAttributeState(product, settings)},
                {privateblock::kApplicationNameKey, MakeText(kExecutableName)},
                {privateblock::kJobTextKey, MakeText(CXString::FromUtf8(user).AsWideString())}});
    return buffer;
}

void ExportCapabilityCaches(HANDLE printer, DevmodeBuffer& devmode) {
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer, true);
    XDevmode xdevmode(devmode.Get());
    DevmodeSettingsSink sink(xdevmode);
    if (!capabilities.ExportCachesToDevmode(sink) || !sink.Commit())
        throw OperationError("the printer's capability caches cannot be put into the DEVMODE; rebuild them first");
}
