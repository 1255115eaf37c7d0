// MorvaneUtilities' Base64: encoding without line breaks, strict decoding.
#include <mvutil/morvaneutilities.h>

#include <array>
#include <climits>
#include <utility>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// What a character stands for: a digit below 64, or one of these.
constexpr BYTE kPad = 64;
constexpr BYTE kSpace = 65;
constexpr BYTE kBad = 66;

constexpr std::array<BYTE, 256> MakeMeanings() {
    std::array<BYTE, 256> meanings{};
    meanings.fill(kBad);
    for (BYTE digit = 0; digit < 64; ++digit) meanings[static_cast<BYTE>(kAlphabet[digit])] = digit;
    meanings['='] = kPad;
    for (const char space : {' ', '\t', '\r', '\n'}) meanings[static_cast<BYTE>(space)] = kSpace;
    return meanings;
}
constexpr std::array<BYTE, 256> kMeanings = MakeMeanings();

BYTE MeaningOf(WCHAR unit) noexcept { return unit < kMeanings.size() ? kMeanings[unit] : kBad; }

WCHAR DigitOf(DWORD bits) noexcept { return static_cast<WCHAR>(kAlphabet[bits & 0x3F]); }

void PutGroup(DWORD group, BYTE* data) noexcept {
    data[0] = static_cast<BYTE>(group >> 16);
    data[1] = static_cast<BYTE>(group >> 8);
    data[2] = static_cast<BYTE>(group);
}

// Decodes whole groups of four digits as long as they follow one another and room is left; moves both positions on.
void DecodeRun(const WCHAR*& text, const WCHAR* end, BYTE*& data, const BYTE* limit) noexcept {
    while (end - text >= 4 && limit - data >= 3) {
        const BYTE a = MeaningOf(text[0]), b = MeaningOf(text[1]), c = MeaningOf(text[2]), d = MeaningOf(text[3]);
        if ((a | b | c | d) >= 64) return;
        PutGroup(DWORD{a} << 18 | DWORD{b} << 12 | DWORD{c} << 6 | d, data);
        text += 4;
        data += 3;
    }
}

// The last group, of two or three digits: its unused bits must be zero and its padding complete.
bool DecodeLastGroup(DWORD group, int digits, int pads, BYTE*& data, const BYTE* limit) noexcept {
    if (digits + pads != 4) return false;
    const DWORD unused = digits == 2 ? 0xF : 0x3;
    if ((group & unused) != 0 || limit - data < digits - 1) return false;
    *data++ = static_cast<BYTE>(digits == 2 ? group >> 4 : group >> 10);
    if (digits == 3) *data++ = static_cast<BYTE>(group >> 2);
    return true;
}

bool Decode(const WCHAR* text, const WCHAR* end, BYTE*& data, const BYTE* limit) noexcept {
    DWORD group = 0;
    int digits = 0;
    int pads = 0;
    while (text != end) {
        if (digits == 0) DecodeRun(text, end, data, limit);
        if (text == end) break;
        const BYTE meaning = MeaningOf(*text++);
        if (meaning == kSpace) continue;
        if (meaning == kPad) {
            if (digits < 2 || digits + ++pads > 4) return false;
            continue;
        }
        if (meaning == kBad || pads > 0) return false;
        group = group << 6 | meaning;
        if (++digits < 4) continue;
        if (limit - data < 3) return false;
        PutGroup(group, data);
        data += 3;
        group = 0;
        digits = 0;
    }
    return digits == 0 || DecodeLastGroup(group, digits, pads, data, limit);
}

}  // namespace

int MorvaneUtilities::Base64EncodeGetRequiredLength(int bytes, DWORD flags) {
    if (bytes < 0 || bytes > INT_MAX / 4 * 3 || flags != kBase64NoLineBreaks) return 0;
    return (bytes / 3 + (bytes % 3 != 0)) * 4;
}

bool MorvaneUtilities::Base64Encode(const BYTE* data, int bytes, WCHAR* text, int* length, DWORD flags) {
    if (!data || !text || !length || bytes < 0 || *length < 0) return false;
    const int required = Base64EncodeGetRequiredLength(bytes, flags);
    if (required > *length || (required == 0) != (bytes == 0) || flags != kBase64NoLineBreaks) return false;
    for (; bytes >= 3; bytes -= 3, data += 3, text += 4) {
        const DWORD group = DWORD{data[0]} << 16 | DWORD{data[1]} << 8 | data[2];
        text[0] = DigitOf(group >> 18);
        text[1] = DigitOf(group >> 12);
        text[2] = DigitOf(group >> 6);
        text[3] = DigitOf(group);
    }
    if (bytes > 0) {
        const DWORD group = DWORD{data[0]} << 16 | (bytes == 2 ? DWORD{data[1]} << 8 : 0);
        text[0] = DigitOf(group >> 18);
        text[1] = DigitOf(group >> 12);
        text[2] = bytes == 2 ? DigitOf(group >> 6) : W('=');
        text[3] = W('=');
    }
    *length = required;
    return true;
}

int MorvaneUtilities::Base64DecodeGetRequiredLength(int characters) { return characters > 0 ? characters / 4 * 3 : 0; }

bool MorvaneUtilities::Base64Decode(const WCHAR* text, int characters, BYTE* data, int* length) {
    if (!length) return false;
    const int room = std::exchange(*length, 0);
    if (!text || characters < 0 || room < 0 || (!data && room > 0)) return false;
    BYTE* at = data;
    if (!Decode(text, text + characters, at, data + room)) return false;
    *length = static_cast<int>(at - data);
    return true;
}
