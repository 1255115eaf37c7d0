// ProviderChoice: the provider that a command line names, and what stands before it.
#pragma once

#include <subsystem/providerlibrary.h>

#include <string>

#include "commandline.h"

// As given on the command line; empty texts were not.
struct ProviderChoice {
    std::string file;     // the plug-in DLL
    std::string product;  // whose documents the core driver writes
    bool gpdLike = false;
};

// Adds --provider alone, or --gpd-like and --product with it. The choice outlives the command line.
void AddProviderOption(const Command& command, ProviderChoice& choice);
void AddProviderOptions(const Command& command, ProviderChoice& choice);

// Throws InputError when the library cannot be loaded or the product is not there.
ProviderSource MakeProviderSource(const ProviderChoice& choice);
// Throws InputError when --gpd-like stands without --product.
void RequireProductOfChoice(const ProviderChoice& choice);
