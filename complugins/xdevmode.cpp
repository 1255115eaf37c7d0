// XDevmode: the driver's private settings inside a DEVMODE.
#include <xdevmode.h>

#include <privateblock.h>
#include <throwscheme.h>

#include <algorithm>

using namespace privateblock;

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/xdevmode");
constexpr DWORD kNoNamespace = static_cast<DWORD>(-1);
constexpr const WCHAR* kDeviceCapabilitiesListCache = W("XDevmodeDeviceCapsABILCache");
constexpr const WCHAR* kDocPropListCache = W("XDevmodeDocPropABILCache");

// The block where the locator points to, or null.
BYTE* FindBlock(BYTE* area, std::size_t areaBytes, const Locator& locator) {
    if (areaBytes <= locator.areaMinimum) return nullptr;
    const std::size_t offset = ReadWord(area + locator.wordOffset);
    if (offset == 0 || areaBytes < offset + kBytes) return nullptr;
    BYTE* const block = area + offset;
    const bool isBlock = ReadDword(block + kSizeOffset) == kBytes && ReadDword(block + kSignatureOffset) == kSignature;
    return isBlock ? block : nullptr;
}

}  // namespace

XDevmode::XDevmode(DEVMODEW* devmode) : devmode_(devmode), listNamespace_(kNoNamespace) {
    if (!devmode) ThrowException(&GetExceptionInvalidArgumentNullPointer, W("XDevmode::XDevmode"), kSourceUnit, 78);
    SetDevmode(devmode);
}

XDevmode::~XDevmode() = default;

BYTE* XDevmode::GetOemDevmodeFromDevmode(DEVMODEW* devmode) {
    if (!devmode) {
        ThrowException(&GetExceptionInvalidArgumentNullPointer, W("XDevmode::GetOemDevmodeFromDevmode"), kSourceUnit,
                       402);
    }
    BYTE* const area = reinterpret_cast<BYTE*>(devmode) + devmode->dmSize;
    for (const Locator& locator : kLocators)
        if (BYTE* const block = FindBlock(area, devmode->dmDriverExtra, locator)) return block;
    return nullptr;
}

bool XDevmode::SetDevmode(DEVMODEW* devmode) {
    if (!devmode) return false;
    BYTE* const block = GetOemDevmodeFromDevmode(devmode);
    if (!block) return false;
    devmode_ = devmode;
    block_ = block;
    properties_.clear();
    DropLists();
    intact_.reset();
    needsLoad_ = ReadDword(block + kChecksumOffset) != 0 || ReadWord(block + kEntryCountOffset) != 0;
    return needsLoad_;
}

void XDevmode::DropLists() noexcept {
    state_.reset();
    list_.reset();
    listNamespace_ = kNoNamespace;
}

// The checksum is over nearly all of the block: once for each attachment is enough.
bool XDevmode::IsBlockIntact() {
    if (!intact_) intact_ = block_ && ReadDword(block_ + kChecksumOffset) == ComputeChecksum(block_);
    return *intact_;
}

bool XDevmode::LoadPropertyBag() {
    if (!block_) {
        needsLoad_ = false;
        return false;
    }
    if (!needsLoad_) return true;
    needsLoad_ = false;
    // Checked before the cache is asked: a damaged block still bears the checksum of its good twin.
    if (!IsBlockIntact()) return false;

    const DWORD checksum = ReadDword(block_ + kChecksumOffset);
    GlobalCaches::PropertyBag bag;
    if (!GlobalCaches::CheckXDevmodePropertyBagCache(checksum, bag)) {
        bag.clear();
        WalkEntries(block_, [&](const Entry& entry) {
            bag.emplace_back(entry.key, std::make_shared<const ByteBuffer>(entry.value, entry.length));
        });
        GlobalCaches::AddXDevmodePropertyBagCacheEntry(checksum, bag);
    }
    properties_.insert(bag.begin(), bag.end());  // keeps the first of two entries under one key
    return true;
}

const ByteBuffer* XDevmode::GetProperty(WORD key) {
    if (!LoadPropertyBag()) return nullptr;
    const auto found = properties_.find(key);
    return found == properties_.end() ? nullptr : found->second.get();
}

bool XDevmode::GetPropertyString(WORD key, CXString& text) {
    const ByteBuffer* const value = GetProperty(key);
    if (value) text = value->getAsStringValue();
    return value != nullptr;
}

const PersistentAttributes* XDevmode::GetAttributeBytesState() {
    if (!state_) {
        const ByteBuffer* const image = GetProperty(kAttributeStateKey);
        if (!image) return nullptr;
        state_.emplace(*image, false, nullptr);
    }
    return &*state_;
}

AttributeBytesIndexedList* XDevmode::GetDocPropAttributeBytesIndexedList() {
    return GetAttributeBytesIndexedList(PersistentAttributes::GetDataModelDocPropNameSpaceId());
}

void XDevmode::OnPrivateDataCommitted() {}

AttributeBytesIndexedList* XDevmode::GetAttributeBytesIndexedList(const AttributeBytesNameSpaceId& namespaceId) {
    return GetAttributeBytesIndexedList(namespaceId.GetId());
}

AttributeBytesIndexedList* XDevmode::GetAttributeBytesIndexedList(DWORD namespaceId) {
    if (list_ && listNamespace_ == namespaceId) return list_.get();
    listNamespace_ = kNoNamespace;
    list_ = std::make_unique<AttributeBytesIndexedList>();
    if (!IsBlockIntact()) return list_.get();

    const DWORD checksum = ReadDword(block_ + kChecksumOffset);
    if (!GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(namespaceId, checksum, *list_)) {
        const PersistentAttributes* const state = GetAttributeBytesState();
        if (!state) return list_.get();
        AttributeBytesRawList rawList;
        state->GetAttributeBytesListForNameSpace(namespaceId, rawList);
        list_->ImportFromRawList(rawList);
        list_->Dump(true);
        const bool isCapabilities = namespaceId == PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
        GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(
            isCapabilities ? kDeviceCapabilitiesListCache : kDocPropListCache, namespaceId, checksum, *list_);
    }
    listNamespace_ = namespaceId;
    return list_.get();
}

// Bytes that the header and the properties take in a block.
std::size_t XDevmode::SizeWithHeader(const Properties& properties) noexcept {
    std::size_t size = kEntriesOffset;
    for (const auto& [key, value] : properties) size += kEntryHeaderBytes + value->getDword();
    return size;
}

// Replaces all of the block behind its header by the properties, which fit.
void XDevmode::WriteBlock() noexcept {
    std::fill(block_ + kChecksumOffset, block_ + kBytes, BYTE{0});
    WriteWord(block_ + kEntryCountOffset, static_cast<WORD>(properties_.size()));
    BYTE* next = block_ + kEntriesOffset;
    for (const auto& [key, value] : properties_) {
        WriteWord(next, key);
        WriteWord(next + 2, static_cast<WORD>(value->getDword()));
        next = std::copy_n(value->getLpbyte(), value->getDword(), next + kEntryHeaderBytes);
    }
    WriteDword(block_ + kChecksumOffset, ComputeChecksum(block_));
    intact_ = true;
}

bool XDevmode::SetAttributeBytesState(const ByteBuffer& state) {
    LoadPropertyBag();
    Properties changed = properties_;
    // A new buffer: the one held may be shared with the process-wide cache.
    changed[kAttributeStateKey] = std::make_shared<const ByteBuffer>(state);
    if (block_ && SizeWithHeader(changed) > kBytes) return false;
    properties_.swap(changed);
    DropLists();
    if (block_) WriteBlock();
    OnPrivateDataCommitted();
    return true;
}

std::size_t XDevmode::GetPrivateDataSize() const {
    if (!block_) return SizeWithHeader(properties_);
    // From the bytes and not from the properties, which lack repeated keys and are empty for a damaged block: the same
    // block must give the same ticket whatever was read of it before.
    const std::size_t entriesEnd = WalkEntries(block_, [](const Entry&) {});
    std::size_t used = kBytes;
    while (used > entriesEnd && block_[used - 1] == 0) --used;
    return used;
}
