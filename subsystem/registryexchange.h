// The store's registry as a whole: read for an export, changed by an import.
#pragma once

#include <functional>

#include "regfile.h"

// Every key of both hives with its values; without the keys, and what is below them, that a test of paths refuses.
// Throws OperationError when the registry does not answer.
using RegPathTest = std::function<bool(const WideString& path)>;
RegFile ExportRegistry(const RegPathTest& isWanted = {});
// Carries the file's keys out in their order. Throws OperationError at the first that fails; earlier ones stay.
void ImportRegistry(const RegFile& file);
