// DataCache: a printer's cached values under the driver family's registry keys.
#include <mvutil/datacache.h>

#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>
#include <mvutil/throwfailure.h>

#include "operationmemory.h"
#include "registryread.h"

#include <algorithm>

namespace {

CXString KeyedPath(const CXString& key) { return CXString(kPrinterCachesKey) + W("\\") + key; }

void RequirePrinter(HANDLE printer) {
    if (Printer::IsValidHandle(printer)) return;
    ThrowFailure(GetExceptionDataCacheFailure, W("A cache needs a printer"), W("DataCache::DataCache"), W("datacache"));
}

CXString PathOfPrinter(HANDLE printer) {
    RequirePrinter(printer);
    return KeyedPath(MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(printer).GetPrinterPort()));
}

DWORD CrcOfPrinter(HANDLE printer, DWORD start) {
    RequirePrinter(printer);
    const CXString name = Printer(printer).GetPrinterName();
    return Crc32::GetCrc(name.GetString(), name.GetLength() * sizeof(WCHAR), start);
}

// Null when it does not exist or cannot be read.
std::shared_ptr<const ByteBuffer> ReadStored(HKEY hive, const CXString& path, const CXString& name) {
    OperationMemory* const memory = GetOperationMemory();
    const OperationMemory::RegistryPlace place(hive, path.AsWideString(), name.AsWideString());
    if (memory) {
        const auto found = memory->cachedValues.find(place);
        if (found != memory->cachedValues.end()) return found->second;
    }
    auto value = std::make_shared<ByteBuffer>();
    const DWORD error = QueryRegistryValue(hive, path, name, *value);
    if (error != ERROR_SUCCESS) value.reset();
    if (memory && (value || error == ERROR_FILE_NOT_FOUND)) memory->cachedValues.emplace(place, value);
    return value;
}

// Before any is changed: the registry's names have no case, and what they keep is asked for again.
void ForgetStoredValues() {
    if (OperationMemory* const memory = GetOperationMemory()) memory->cachedValues.clear();
    ForgetLastKey();
}

}  // namespace

DataCache::DataCache(HANDLE printer, DWORD crcStart, bool create)
    : DataCache(printer, MorvaneUtilities::GetRegistryHiveByContext(), crcStart, create) {}

DataCache::DataCache(HANDLE printer, const CXString& key, DWORD crcStart, bool create)
    : DataCache(printer, MorvaneUtilities::GetRegistryHiveByContext(), key, crcStart, create) {}

DataCache::DataCache(HANDLE printer, HKEY hive, DWORD crcStart, bool create)
    : hive_(hive), path_(PathOfPrinter(printer)), crc_(CrcOfPrinter(printer, crcStart)), create_(create) {}

DataCache::DataCache(HANDLE printer, HKEY hive, const CXString& key, DWORD crcStart, bool create)
    : hive_(hive), path_(KeyedPath(key)), crc_(CrcOfPrinter(printer, crcStart)), create_(create) {}

std::vector<std::pair<CXString, ByteBuffer>>::iterator DataCache::FindVolatile(const CXString& name) {
    return std::find_if(volatileValues_.begin(), volatileValues_.end(),
                        [&](const auto& item) { return item.first.CompareNoCase(name) == 0; });
}

bool DataCache::SetValue(const CXString& name, DWORD type, const ByteBuffer& value, bool volatileValue) {
    const auto held = FindVolatile(name);
    if (volatileValue) {
        if (held == volatileValues_.end()) {
            volatileValues_.emplace_back(name, value);
        } else {
            held->second = value;
        }
        return true;
    }
    ForgetStoredValues();
    UniqueKey key = OpenKey(hive_, path_, KEY_WRITE);
    if (!key && create_ &&
        RegCreateKeyExW(hive_, path_, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, key.Put(), nullptr) !=
            ERROR_SUCCESS) {
        return false;
    }
    if (!key || RegSetValueExW(key.Get(), name, 0, type, value.getLpbyte(), value.getDword()) != ERROR_SUCCESS) {
        return false;
    }
    if (held != volatileValues_.end()) volatileValues_.erase(held);  // the newer value counts
    return true;
}

bool DataCache::SetCachedValue(const CXString& name, const ByteBuffer& value, bool volatileValue) {
    return SetValue(name, REG_BINARY, value, volatileValue);
}

bool DataCache::SetCachedValue(const CXString& name, LONG value, bool volatileValue) {
    ByteBuffer bytes;
    bytes.createFromLongValue(value);
    return SetValue(name, REG_DWORD, bytes, volatileValue);
}

bool DataCache::GetCachedBytesValue(const CXString& name, ByteBuffer& value) const {
    value.clear();
    const auto held = const_cast<DataCache*>(this)->FindVolatile(name);
    if (held != volatileValues_.end()) {
        value = held->second;
        return true;
    }
    const auto stored = ReadStored(hive_, path_, name);
    if (stored) value = *stored;
    return stored != nullptr;
}

LONG DataCache::GetCachedLongValue(const CXString& name, LONG defaultValue) const {
    ByteBuffer value;
    if (!GetCachedBytesValue(name, value) || value.getDword() != sizeof(LONG)) return defaultValue;
    return value.getAsLongValue();
}

bool DataCache::DoesCacheExist(const CXString& name) const {
    return const_cast<DataCache*>(this)->FindVolatile(name) != volatileValues_.end() ||
           ReadStored(hive_, path_, name) != nullptr;
}

bool DataCache::DeleteCache(const CXString& name, bool volatileValue) {
    const auto held = FindVolatile(name);
    const bool wasHeld = held != volatileValues_.end();
    if (wasHeld) volatileValues_.erase(held);
    if (volatileValue) return wasHeld;
    ForgetStoredValues();
    const UniqueKey key = OpenKey(hive_, path_, KEY_WRITE);
    return (key && RegDeleteValueW(key.Get(), name) == ERROR_SUCCESS) || wasHeld;
}

void DataCache::SetHKEY(HKEY hive) { hive_ = hive; }

void DataCache::Dump() const {
    const WCHAR* const hive = hive_ == HKEY_LOCAL_MACHINE ? W("HKEY_LOCAL_MACHINE") : W("HKEY_CURRENT_USER");
    OutputDebugStringW(CXString(W("DataCache: ")) + hive + W("\\") + path_ + W("\n"));
}
