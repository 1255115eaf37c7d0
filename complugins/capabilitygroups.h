// The device capability groups: their registry values, flag bits and the DeviceCapabilitiesW indexes that they serve.
#pragma once

#include <mvutil/cachelocation.h>
#include <printsubsystem/capabilityrecords.h>

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

// The driver family's own index beside the resolutions' DC_ENUMRESOLUTIONS; under it they are kept in DEVMODEs.
inline constexpr DWORD kResolutionRecordsIndex = 65527;

// Header: what the group's blob starts with.
template <class Header, std::size_t Count>
constexpr CapabilityGroup MakeCapabilityGroup(CapabilityGroupId id, const WCHAR* valueName, DWORD flag,
                                              const DWORD (&indexes)[Count]) {
    CapabilityGroup group{id, valueName, flag, sizeof(Header), offsetof(Header, check), {}};
    for (std::size_t place = 0; place < Count; ++place) group.indexes[place] = indexes[place];
    return group;
}

// In the order of CapabilityGroupId. Indexes from 65526 on are the driver family's own.
inline constexpr CapabilityGroup kCapabilityGroups[kCapabilityGroupCount] = {
    MakeCapabilityGroup<PaperCapsHeader>(CapabilityGroupId::Paper, kPaperCapsValue, 0x2000,
                                         {DC_FIELDS, DC_PAPERS, DC_PAPERSIZE, 65529}),
    MakeCapabilityGroup<ListCapsHeader>(CapabilityGroupId::Bins, kBinCapsValue, 0x4000, {DC_BINS, 65526}),
    MakeCapabilityGroup<ListCapsHeader>(CapabilityGroupId::Media, kMediaCapsValue, 0x8000,
                                        {DC_MEDIATYPENAMES, DC_MEDIATYPES}),
    MakeCapabilityGroup<ListCapsHeader>(CapabilityGroupId::MediaReady, kMediaReadyValue, 0x20000,
                                        {DC_MEDIAREADY, 65528}),
    MakeCapabilityGroup<ListCapsHeader>(CapabilityGroupId::DependentFiles, kDependentFilesValue, 0x1000,
                                        {DC_FILEDEPENDENCIES}),
    MakeCapabilityGroup<DeviceLimitsCaps>(CapabilityGroupId::DeviceLimits, kDeviceLimitsValue, 0x7ff,
                                          {DC_MINEXTENT, DC_MAXEXTENT, DC_PRINTRATE, DC_PRINTRATEUNIT, DC_PRINTERMEM,
                                           DC_PRINTRATEPPM, DC_COLORDEVICE, 65533}),
    MakeCapabilityGroup<StapleCaps>(CapabilityGroupId::Staple, kStapleValue, 0x10000, {DC_STAPLE}),
    MakeCapabilityGroup<ResolutionCapsHeader>(CapabilityGroupId::Resolutions, kResolutionsValue, 0x800,
                                              {DC_ENUMRESOLUTIONS, kResolutionRecordsIndex}),
};

inline constexpr const CapabilityGroup& GetCapabilityGroup(CapabilityGroupId id) noexcept {
    return kCapabilityGroups[static_cast<std::size_t>(id)];
}

// The group that serves the index, or null when none does.
inline constexpr const CapabilityGroup* FindCapabilityGroup(DWORD index) noexcept {
    for (const CapabilityGroup& group : kCapabilityGroups)
        for (const DWORD served : group.indexes)
            if (served != 0 && served == index) return &group;
    return nullptr;
}
