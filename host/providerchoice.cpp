// The provider that a command line names.
#include "providerchoice.h"

#include <pathtext.h>

#include <subsystem/hosterror.h>
#include <subsystem/productfiles.h>

void AddProviderOption(const Command& command, ProviderChoice& choice) {
    command.AddOption("--provider", choice.file, "The provider's plug-in DLL (default: this driver family's)")
        .NotEmpty();
}

void AddProviderOptions(const Command& command, ProviderChoice& choice) {
    AddProviderOption(command, choice);
    command.AddFlag("--gpd-like", choice.gpdLike,
                    "The provider knows nothing of the products here: the core driver's documents come from --product");
    command
        .AddOption("--product", choice.product, "With --gpd-like: the product whose documents the core driver writes")
        .Takes(kProductValue)
        .NotEmpty();
}

void RequireProductOfChoice(const ProviderChoice& choice) {
    if (choice.gpdLike && choice.product.empty())
        throw InputError("--gpd-like takes the core driver's documents from a product; name it with --product");
}

ProviderSource MakeProviderSource(const ProviderChoice& choice) {
    RequireProductOfChoice(choice);
    ProviderSource source = choice.file.empty()
                                ? GetOwnProvider()
                                : ProviderSource{std::make_shared<ProviderLibrary>(PathFromUtf8(choice.file))};
    if (choice.gpdLike) source.coreProduct = LoadProduct(FindProductFile(choice.product));
    return source;
}
