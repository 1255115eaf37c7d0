// DEVMODEs as support engineers get them: raw, as text, in a .reg export, inside a ticket.
#pragma once

#include <subsystem/devmodefile.h>

#include <filesystem>
#include <optional>
#include <span>
#include <string>

// A DEVMODE from a file: raw bytes; hex or Base64 text; a .reg file with a value "Default DevMode", of the printer
// where it holds several; a PrintTicket, or an XPS package with one, with a DEVMODE in a parameter, or with this
// driver's data, which gives a DEVMODE whose public fields all stay unset. Throws InputError, which says what the file
// is, when it is none of these.
DevmodeBuffer ReadDevmodeInput(const std::filesystem::path& file, const std::string& printer = std::string());

// As ReadDevmodeInput, of bytes that are at hand; the name is what messages call them.
DevmodeBuffer ReadDevmodeBytes(std::string_view bytes, const std::string& name, const std::string& printer);

// The DEVMODE that the bytes are, when their own sizes agree with their number and their name is a text.
std::optional<DevmodeBuffer> FindDevmode(std::span<const BYTE> bytes);
