// The device capability groups: their registry values, flag bits and the DeviceCapabilitiesW indexes that they serve.
#pragma once

#include <mvutil/cachelocation.h>

#include <cstddef>

enum class CapabilityGroupId { Paper, Bins, Media, MediaReady, DependentFiles, DeviceLimits, Staple, Resolutions };
inline constexpr std::size_t kCapabilityGroupCount = 8;

struct CapabilityGroup {
    CapabilityGroupId id;
    const WCHAR* valueName;
    DWORD flag;
    std::size_t minimumBytes;     // a shorter value counts as absent
    std::size_t checkWordOffset;  // where the blob keeps the CRC-32 of its content
    DWORD indexes[8];             // 0 fills the rest
};

// In the order of CapabilityGroupId.
// clang-format off: a table, its columns aligned
inline constexpr CapabilityGroup kCapabilityGroups[kCapabilityGroupCount] = {
    {CapabilityGroupId::Paper, kPaperCapsValue, 0x2000, 16, 4, {1, 2, 3, 65529}},
    {CapabilityGroupId::Bins, kBinCapsValue, 0x4000, 8, 0, {6, 65526}},
    {CapabilityGroupId::Media, kMediaCapsValue, 0x8000, 8, 0, {34, 35}},
    {CapabilityGroupId::MediaReady, kMediaReadyValue, 0x20000, 8, 0, {29, 65528}},
    {CapabilityGroupId::DependentFiles, kDependentFilesValue, 0x1000, 8, 0, {14}},
    {CapabilityGroupId::DeviceLimits, kDeviceLimitsValue, 0x7ff, 48, 0, {4, 5, 26, 27, 28, 31, 32, 65533}},
    {CapabilityGroupId::Staple, kStapleValue, 0x10000, 8, 0, {30}},
    {CapabilityGroupId::Resolutions, kResolutionsValue, 0x800, 12, 0, {13, 65527}},
};
// clang-format on

// The group that serves the index, or null when none does.
inline constexpr const CapabilityGroup* FindCapabilityGroup(DWORD index) noexcept {
    for (const CapabilityGroup& group : kCapabilityGroups)
        for (const DWORD served : group.indexes)
            if (served != 0 && served == index) return &group;
    return nullptr;
}
