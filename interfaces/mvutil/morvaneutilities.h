// MorvaneUtilities: formatting, Base64, paths and the registry names shared by the driver family.
#pragma once

#include <mvutil/formatting.h>

class MVUTIL_API MorvaneUtilities {
public:
    // A new text, formatted as by CXString::Format. Throws std::invalid_argument on arguments that do not fit.
    template <class... Arguments>
    static CXString SafeFormatString(const WCHAR* format, const Arguments&... arguments) {
        CXString text;
        text.Format(format, arguments...);
        return text;
    }
    template <class... Arguments>
    static CXString SafeFormatString(const char* format, const Arguments&... arguments) {
        return SafeFormatString(CXString(format).GetString(), arguments...);
    }

    // Base64 in the standard alphabet with padding. Flag 2: no line breaks, the only form offered; others are refused.
    static constexpr DWORD kBase64NoLineBreaks = 2;
    // In characters, without NUL; 0 when the bytes are too many or the flags are others.
    static int Base64EncodeGetRequiredLength(int bytes, DWORD flags);
    // Encodes into the buffer of *length characters; *length becomes the number written. False, with nothing written,
    // when the buffer is too short, a pointer is null or a count is negative.
    static bool Base64Encode(const BYTE* data, int bytes, WCHAR* text, int* length, DWORD flags);
    static int Base64DecodeGetRequiredLength(int characters);  // in bytes, an upper bound
    // Decodes into the buffer of *length bytes; *length becomes the number written. XML white space is skipped;
    // anything else outside the alphabet, bad padding, set bits in the unused part of the last digit, a length that is
    // no whole group or a buffer too short fails: false, *length 0, the buffer's contents undefined.
    static bool Base64Decode(const WCHAR* text, int characters, BYTE* data, int* length);

    // The text with a space for each control character (below 0x20, 0x7F to 0x9F): it is one line, whatever it holds.
    static CXString ReplaceControlCharacters(const CXString& text);

    static CXString getModulePath(HMODULE module);  // full path of a module's file; empty when unknown
    // Up to and with the last backslash or slash; empty without one.
    static CXString getPathFromFileName(const CXString& file);

    // The registry key name for a port: what a key name may not hold is replaced.
    static CXString ConvertPortNameToRegistryKey(const CXString& port);
    // Where this process keeps a printer's caches: the local machine in the spooler or filter pipeline, and wherever
    // that hive may be written; else the current user.
    static HKEY GetRegistryHiveByContext();
};
