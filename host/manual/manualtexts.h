// What the manual says beside the commands' own descriptions. The program's help shows the exit statuses as well.
#pragma once

#include <subsystem/hosterror.h>

namespace manual {

inline constexpr const char* kSummary =
    "Does from the command line what the print subsystem does around the PrintTicket provider.";

inline constexpr const char* kDescription[] = {
    "Applications describe a print job as a PrintTicket (XML), drivers hold it as a DEVMODE (binary). The provider of "
    "this "
    "driver family translates between the two and completes the PrintCapabilities. mvpthost loads it as a core driver "
    "does: "
    "it converts, says which settings are lost and why, checks products, documents and providers, and makes the folder "
    "that "
    "Windows installs a driver from.",
    "Printers live in a store. A command that changes it does so whole or not at all; one that only reads needs no "
    "right to "
    "write. The name '-' stands for standard input or output wherever a file is named; a file of that name is './-'.",
    "A DEVMODE is taken as raw bytes, as hex or Base64 text, from a .reg file with a value \"Default DevMode\", or "
    "from a "
    "ticket; a ticket alone or in an XPS or OXPS file. What is lost or ignored is reported on standard error.",
};

struct Entry {
    const char *name, *text;
};

inline constexpr Entry kVariables[] = {
    {"MVPTHOST_STORE", "The store's folder, where --store names none."},
    {"MVPT_PRODUCTS",
     "Folders with product files, NAME.toml or NAME/NAME.toml, between colons (on Windows semicolons). Their products "
     "come "
     "before all others of the same name."},
};

inline constexpr Entry kFiles[] = {
    {"~/.local/share/mvpthost", "The user's own store ($XDG_DATA_HOME; on Windows %LOCALAPPDATA%)."},
    {"~/.config/mvptpc/products",
     "The user's own products ($XDG_CONFIG_HOME; on Windows %APPDATA%). They come before those of the driver."},
};

struct ExitStatus {
    int status;
    const char* text;
};

inline constexpr ExitStatus kExitStatuses[] = {
    {kExitDone, "done"},
    {kExitFailed,
     "failed, the reason is printed; or a setting was lost under --strict; or what the command line names is not "
     "there"},
    {kExitUsage, "a wrong command line, or input that cannot be read; nothing was changed"},
};

// Command lines that work one after the other in an empty folder with an empty store.
inline constexpr Entry kExamples[] = {
    {"printer add Press --product press8434", "Install a product as a printer:"},
    {"devmode new --printer Press -o job.bin --set dmCopies=7 --set dmScale=50", "Make a job's settings, a DEVMODE:"},
    {"ticket --printer Press --devmode job.bin -o job.xml", "Turn them into a PrintTicket; what is lost is reported:"},
    {"explain --printer Press --devmode job.bin", "Ask why each setting is what it then is:"},
    {"apply --printer Press --ticket job.xml --devmode job.bin -o back.bin", "Apply a PrintTicket to a DEVMODE:"},
    {"convert --product press8434 --to ticket job.bin back.bin -o tickets", "Convert files without a printer:"},
    {"report --product press8434 --devmode job.bin -o job.html", "Make a page of what becomes of a job:"},
    {"product new Mine --from office8430 products", "Make a product of one's own:"},
    {"product check products", "See what is wrong with products:"},
};

}  // namespace manual
