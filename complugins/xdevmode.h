// XDevmode: the driver's private settings inside a DEVMODE.
#pragma once

#include <mvutil/attributebytes.h>
#include <mvutil/globalcaches.h>
#include <mvutil/persistentattributes.h>

#include <map>
#include <memory>
#include <optional>

class MsCachedDeviceCapabilities;

// Finds the private block of a DEVMODE, checks it, and reads and rewrites its entries. A DEVMODE without a block, or
// with a damaged one, gives an object that finds nothing. The DEVMODE stays the caller's and must outlive the object;
// its dmSize and dmDriverExtra must not exceed the memory it lies in. For one thread at a time.
class XDevmode : public AttributeBytesReader {
public:
    // Throws ExceptionInvalidArgumentNullPointer on null.
    explicit XDevmode(DEVMODEW* devmode);
    ~XDevmode() override;
    XDevmode(const XDevmode&) = delete;
    XDevmode& operator=(const XDevmode&) = delete;

    // The list of the data model's document properties; see below.
    AttributeBytesIndexedList* GetDocPropAttributeBytesIndexedList() override;
    // Called at the end of SetAttributeBytesState; does nothing here.
    void OnPrivateDataCommitted() override;
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpaceId& namespaceId) override;
    // The attribute list of the namespace, empty when the block has none. Never null; owned by this object and valid
    // until a list of another namespace is asked for, SetAttributeBytesState, SetDevmode, or the object's end.
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(DWORD namespaceId) override;

    // The private block inside a DEVMODE, privateblock::kBytes bytes, or null.
    // Throws ExceptionInvalidArgumentNullPointer on null.
    static BYTE* GetOemDevmodeFromDevmode(DEVMODEW* devmode);

    // Attaches to a DEVMODE, or again to the same one after its block's bytes were changed. False without any effect
    // when the pointer is null or the DEVMODE has no block; else whether the block holds anything.
    bool SetDevmode(DEVMODEW* devmode);

    // The value under the key, or null; valid until SetAttributeBytesState, SetDevmode, or the object's end. Of two
    // entries under one key the first counts; entries that run past the block's end, and those behind them, do not.
    const ByteBuffer* GetProperty(WORD key);
    // The value as UTF-16 text. False, and the text unchanged, when the key is absent.
    bool GetPropertyString(WORD key, CXString& text);
    // The persistent attribute state (key 1), unpacked once; null when the block has none. Valid as a value is.
    const PersistentAttributes* GetAttributeBytesState();
    // Replaces the persistent attribute state (key 1) and rewrites the block with a new checksum. False, with neither
    // the object nor the block changed, when the entries would not fit in the block.
    bool SetAttributeBytesState(const ByteBuffer& state);
    // Bytes of the block in use, header included: up to the last entry's end, or to the last byte that is not zero when
    // that lies behind it; the whole block when an entry runs past the end. 62 for a block without entries.
    std::size_t GetPrivateDataSize() const;

    // Makes the DEVMODE's paper number, form name, width and length agree with one record of the printer's paper
    // database, and says whether one was matched; without one, or for a custom paper, the form name becomes that of the
    // user's default paper. The records are those of the printer and of the capabilities' DEVMODE.
    static bool NormalizeDevmodePaperSize(HANDLE printer, DEVMODEW* devmode, MsCachedDeviceCapabilities& capabilities);
    // Sets dmFormName, to at most 31 characters; and the paper's dimensions in tenths of a millimetre, clamped to what
    // the fields hold. dmFields stay as they are.
    static void SetFormName(DEVMODEW* devmode, const WCHAR* name);
    static void SetPaperDimensions(DEVMODEW* devmode, LONG width, LONG length);

    DEVMODEW* GetDevmode() const noexcept { return devmode_; }
    BYTE* GetOemDevmode() const noexcept { return block_; }  // the block, or null

private:
    using Properties = std::map<WORD, std::shared_ptr<const ByteBuffer>>;

    bool LoadPropertyBag();
    bool IsBlockIntact();
    static std::size_t SizeWithHeader(const Properties& properties) noexcept;
    void WriteBlock() noexcept;
    void DropLists() noexcept;

    DEVMODEW* devmode_;
    BYTE* block_ = nullptr;
    Properties properties_;
    std::optional<PersistentAttributes> state_;  // once it was asked for
    std::unique_ptr<AttributeBytesIndexedList> list_;
    DWORD listNamespace_;
    bool needsLoad_ = false;
    std::optional<bool> intact_;  // whether the block's checksum holds; unknown until it is first needed
};
