// What the fuzz targets share: printers in a store that ends with the process, and the answers that are none of faults.
#pragma once

#include <subsystem/hosterror.h>
#include <subsystem/printsession.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

// The product's name as one of those beside the program. Its printer is installed in the process's store by the first
// call, and stays open.
struct FuzzPrinter {
    std::shared_ptr<const ProductDescription> product;
    CXString name;
    PrintSession session;
};
const FuzzPrinter& GetFuzzPrinter(const std::string& product);

// Runs the operation; that it is refused in words is as good an answer as any.
void AllowRefusal(const std::function<void()>& operation);
// Ends the process, for the fuzzer to keep the input, when a statement about the system does not hold.
void Demand(bool holds, const char* statement);
