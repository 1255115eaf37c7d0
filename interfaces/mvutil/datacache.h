// DataCache: a printer's cached values in the registry.
#pragma once

#include <mvutil/bytebuffer.h>

// The keyed forms keep their values under the key name; the others under that of the printer's port.
// The location is stated in interfaces/mvutil/cachelocation.h. A missing key is made by the first write when "create"
// is true; without it such a write fails. Keys are opened for each call, so the object holds no handle. A printer
// handle that is null or all ones throws ExceptionDataCacheFailure; a spooler that does not know the printer,
// ExceptionPrinterFailure.
class MVUTIL_API DataCache {
public:
    DataCache(HANDLE printer, DWORD crcStart, bool create);
    DataCache(HANDLE printer, const CXString& key, DWORD crcStart, bool create);
    DataCache(HANDLE printer, HKEY hive, DWORD crcStart, bool create);
    DataCache(HANDLE printer, HKEY hive, const CXString& key, DWORD crcStart, bool create);

    // Returns whether the value was stored. "volatileValue" true keeps it for this object only.
    bool SetCachedValue(const CXString& name, const ByteBuffer& value, bool volatileValue);
    bool SetCachedValue(const CXString& name, LONG value, bool volatileValue);
    // The value's bytes; empty when it is absent. Returns whether it exists.
    bool GetCachedBytesValue(const CXString& name, ByteBuffer& value) const;
    LONG GetCachedLongValue(const CXString& name, LONG defaultValue) const;  // 4-byte values of either type count
    bool DoesCacheExist(const CXString& name) const;
    bool DeleteCache(const CXString& name, bool volatileValue);  // whether something was deleted
    void SetHKEY(HKEY hive);                                     // the same key in another hive from now on
    void Dump() const;                                           // reports to the debugger where the cache lies
    // CRC-32, from the start value on, of the printer's name: the same for every process that opens this printer.
    DWORD GetCurrentCRC() const noexcept { return crc_; }

private:
    bool SetValue(const CXString& name, DWORD type, const ByteBuffer& value, bool volatileValue);
    std::vector<std::pair<CXString, ByteBuffer>>::iterator FindVolatile(const CXString& name);

    HKEY hive_;
    CXString path_;
    DWORD crc_;
    bool create_;
    std::vector<std::pair<CXString, ByteBuffer>> volatileValues_;
};
