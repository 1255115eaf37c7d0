// InfoPacker: information structures with their texts in one caller's buffer, as the spooler's functions hand them out.
#pragma once

#include "spoolererror.h"
#include "spoolertext.h"

#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

template <class Information>
class InfoPacker {
    static_assert(std::is_trivially_copyable_v<Information> && sizeof(Information) % 8 == 0);

public:
    // The texts and bytes added afterwards belong to this item.
    void AddItem(const Information& item) { items_.push_back(item); }
    void AddText(LPWSTR Information::*field, const WideString& text) {
        texts_.push_back({items_.size() - 1, field, text});
    }
    void AddDevmode(LPDEVMODEW Information::*field, const std::vector<BYTE>& bytes) {
        if (!bytes.empty()) devmodes_.push_back({items_.size() - 1, field, bytes});
    }

    // Fills the buffer, whole or not at all; *needed becomes the bytes that it takes.
    void Pack(LPBYTE buffer, DWORD bytes, LPDWORD needed) {
        Require(needed != nullptr, ERROR_INVALID_PARAMETER);
        const std::size_t total = CountBytes();
        Require(total <= std::numeric_limits<DWORD>::max(), ERROR_NOT_ENOUGH_MEMORY);
        *needed = static_cast<DWORD>(total);
        Require(bytes >= total && (buffer || total == 0), ERROR_INSUFFICIENT_BUFFER);
        BYTE* place = buffer + items_.size() * sizeof(Information);
        for (const Block& block : devmodes_) {
            items_[block.item].*block.field = reinterpret_cast<LPDEVMODEW>(place);
            std::memcpy(place, block.bytes.data(), block.bytes.size());
            place += RoundUp(block.bytes.size());
        }
        for (const Text& text : texts_) {
            items_[text.item].*text.field = reinterpret_cast<LPWSTR>(place);
            std::memcpy(place, text.text.c_str(), BytesOf(text.text));
            place += BytesOf(text.text);
        }
        if (!items_.empty()) std::memcpy(buffer, items_.data(), items_.size() * sizeof(Information));
    }
    DWORD GetCount() const noexcept { return static_cast<DWORD>(items_.size()); }

private:
    struct Text {
        std::size_t item;
        LPWSTR Information::*field;
        WideString text;
    };
    struct Block {
        std::size_t item;
        LPDEVMODEW Information::*field;
        std::vector<BYTE> bytes;
    };

    static std::size_t BytesOf(const WideString& text) noexcept { return (text.size() + 1) * sizeof(WCHAR); }
    static std::size_t RoundUp(std::size_t bytes) noexcept { return (bytes + 7) / 8 * 8; }
    std::size_t CountBytes() const noexcept {
        std::size_t total = items_.size() * sizeof(Information);
        for (const Block& block : devmodes_) total += RoundUp(block.bytes.size());
        for (const Text& text : texts_) total += BytesOf(text.text);
        return total;
    }

    std::vector<Information> items_;
    std::vector<Text> texts_;
    std::vector<Block> devmodes_;
};
