// The translator that writes a model's settings as job ticket text.
#pragma once

#include <mvcore/featureservices.h>

#include "modelparts.h"

// The caller destroys it, before the model.
MvjtTranslator* MakeMvjtTranslator(const ModelParts& parts);
