// CapabilityCacheBuilder: one pass over a data model that builds capability caches from it.
#pragma once

#include <capabilitycachereader.h>

#include <mvcore/featureservices.h>
#include <mvutil/datasource.h>

#include <optional>
#include <vector>

// Reads the features that the model has and uses the text resources of the printer's product. The caches, whose printer
// it is, and the model must outlive it.
class CapabilityCacheBuilder {
public:
    // features: null as long as the model has not given them; the paper that the trays hold is then not built.
    CapabilityCacheBuilder(CapabilityCacheReader& caches, IntegrationServices& services, FeatureServices* features);

    // The group's blob, its check word in place; null when it cannot be built.
    std::optional<ByteBuffer> Build(const CapabilityGroup& group);

private:
    bool IsPresent(FeatureId feature) const;
    std::optional<ByteBuffer> BuildPaper(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildBins(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildMedia(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildMediaReady(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildDependentFiles(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildDeviceLimits(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildStaple(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildResolutions(const CapabilityGroup& group);
    std::vector<_tag_FormsInfoRec> MakePaperRecords();
    std::vector<CXString> GetLoadedPaperNames(const ListOfFeaturesRef& tray);

    CapabilityCacheReader& caches_;
    IntegrationServices& services_;
    FeatureServices* features_;
    std::vector<FeatureId> present_;  // ascending
};
