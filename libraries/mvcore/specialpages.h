// ModelSpecialPages: settings that pages of a special kind do not allow.
#pragma once

#include <mvcore/featureservices.h>

#include "modelparts.h"

class ModelSpecialPages final : public SpecialPagesServices {
public:
    explicit ModelSpecialPages(ModelParts& parts) noexcept : parts_(parts) {}
    void MakePrintInstructionAdjustments() override;

private:
    ModelParts& parts_;
};
