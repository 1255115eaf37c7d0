// OpenProduct: a product as a printer of its own, in a store in memory that all open products share.
#pragma once

#include <filesystem>
#include <optional>

#include "converter.h"

// Any number at once, made and unmade by any threads. The store is there from the first one to the last.
class OpenProduct {
public:
    // Throws what LoadProduct and InstallPrinter throw.
    explicit OpenProduct(const std::filesystem::path& productFile);
    ~OpenProduct();
    OpenProduct(const OpenProduct&) = delete;
    OpenProduct& operator=(const OpenProduct&) = delete;

    Converters& GetConverters() noexcept { return *converters_; }

private:
    CXString printer_;
    std::optional<Converters> converters_;  // go before the printer does
};
