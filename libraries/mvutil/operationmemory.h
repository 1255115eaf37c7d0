// OperationMemory: what the system answered within the operation that the calling thread is in.
#pragma once

#include <mvutil/bytebuffer.h>
#include <mvutil/cforms.h>

#include <sizedread.h>
#include <uniquehandle.h>

#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

struct ProductDescription;

struct OperationMemory {
    // A record's texts point into it, so that it is shared and never copied.
    using Record = std::shared_ptr<const SizedBytes>;
    using RegistryPlace = std::tuple<HKEY, WideString, WideString>;  // hive, path of the key, name of the value

    std::map<HANDLE, Record> printers, drivers;
    std::map<HANDLE, std::vector<_MVN_FORM_INFO>> forms;
    std::map<WideString, std::shared_ptr<const ProductDescription>> products;  // by the path of the file
    std::map<RegistryPlace, std::shared_ptr<const ByteBuffer>> cachedValues;   // null for one that does not exist
    std::optional<HKEY> hive;
    // The key that a value was read from last.
    UniqueKey lastKey;
    HKEY lastHive = nullptr;
    WideString lastPath;
};

// Null outside of every OperationScope.
OperationMemory* GetOperationMemory();

// What one of the maps remembers under the key, else what "ask" answers, remembered unless it is null.
template <class Key, class Answer, class Ask>
Answer RememberedOr(std::map<Key, Answer> OperationMemory::*answers, const Key& key, Ask ask) {
    OperationMemory* const memory = GetOperationMemory();
    if (!memory) return ask();
    const auto found = (memory->*answers).find(key);
    if (found != (memory->*answers).end()) return found->second;
    Answer answer = ask();
    if (answer) (memory->*answers).emplace(key, answer);
    return answer;
}
