// ModelAttributeListTranslator: a model's settings from attribute lists and into them.
#pragma once

#include <mvcore/featureservices.h>

#include "modelparts.h"

class ModelAttributeListTranslator final : public MvAttributeBytesListTranslator {
public:
    explicit ModelAttributeListTranslator(ModelParts& parts) noexcept : parts_(parts) {}
    bool ImportSettings(const AttributeBytesRawList& list, int mode) override;
    void ExportSettings(AttributeBytesRawList& list, int mode) const override;

private:
    ModelParts& parts_;
};
