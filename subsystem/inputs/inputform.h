// In which form a file arrives: recognised by its bytes, never by its name.
#pragma once

#include <string>
#include <string_view>

enum class InputForm {
    Xml,
    RegistryFile,
    Package,  // a ZIP file, such as XPS
    Hex,      // text of hex digits
    Base64,   // text of Base64 digits
    Binary,
    Other,  // something that is known and of no use here
};

struct InputKind {
    InputForm form;
    std::string description;  // "a PDF file", for messages
};
InputKind RecogniseInput(std::string_view bytes);

// UTF-16 with a byte order mark as UTF-8, UTF-8 without its mark; other bytes as they are.
std::string DecodeText(std::string_view bytes);
