// The driver data that a ticket carries: the private block of a DEVMODE as text, and what may be wrong with it.
#pragma once

#include <facts/privateparameters.h>
#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

struct DriverData {
    std::string fault;        // why the text, or the settings in it, do not count; empty when they do
    std::vector<BYTE> block;  // privateblock::kBytes bytes; empty when no block could be restored from the text
};
// Decodes and checks the text as the component does, and says more.
DriverData DecodeDriverData(const std::string& text);

// Why the settings in a block of privateblock::kBytes bytes do not count; empty when they do.
std::string FindBlockFault(const BYTE* block);

// The bytes that Base64 text stands for; none when it is no Base64 text.
std::vector<BYTE> DecodeBase64(std::string_view text);
