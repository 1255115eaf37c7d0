// The store's registry as a whole: read for an export, changed by an import.
#pragma once

#include "regfile.h"

// Every key of both hives with its values. Throws OperationError when the registry does not answer.
RegFile ExportRegistry();
// Carries the file's keys out in their order. Throws OperationError at the first that fails; earlier ones stay.
void ImportRegistry(const RegFile& file);
