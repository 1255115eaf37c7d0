// The media handler: whatever is asked for is found by an index, for printers with thousands of sizes.
#include "modelmediahandler.h"

#include <facts/units.h>
#include <mvutil/operatingsystem.h>

#include <utility>

namespace {

std::uint32_t WholeTenths(const Dimension& dimension) {
    return static_cast<std::uint32_t>(
        dimension.GetValue(Dimension::TenthsOfMillimetre).GetLongValue(facts::kToNearest));
}

LONG WholeMicrometres(const Dimension& dimension) {
    return dimension.GetValue(Dimension::Micrometres).GetLongValue(facts::kToNearest);
}

}  // namespace

ModelMediaHandler::SizeKey ModelMediaHandler::GetSizeKey(const Dimension& width, const Dimension& length) {
    return SizeKey{WholeTenths(width)} << 32 | WholeTenths(length);
}

void ModelMediaHandler::Keep(const PageSize& kept) {
    PageSize& size = sizes_.emplace_back(kept);
    byValue_.emplace(size.GetValueId().GetValueEnum(), &size);
    bySize_[GetSizeKey(size.GetWidth(), size.GetLength())].push_back(&size);
}

void ModelMediaHandler::TakePatternsSizes() {
    if (!pattern_ || std::exchange(sizesAreTaken_, true)) return;
    for (const PageSize& size : pattern_->sizes_) Keep(PageSize(size, &names_));
}

void ModelMediaHandler::GetPageSizes(std::vector<PageSize*>& sizes) {
    TakePatternsSizes();
    sizes.clear();
    for (PageSize& size : sizes_) sizes.push_back(&size);
}

void ModelMediaHandler::GetPageSizes(const Dimension& width, const Dimension& length, std::vector<PageSize*>& sizes) {
    TakePatternsSizes();
    const auto found = bySize_.find(GetSizeKey(width, length));
    if (found == bySize_.end())
        sizes.clear();
    else
        sizes = found->second;
}

bool ModelMediaHandler::AnyExist(const Dimension& width, const Dimension& length) const {
    return bySize_.contains(GetSizeKey(width, length)) || (pattern_ && pattern_->AnyExist(width, length));
}

PageSize* ModelMediaHandler::GetPageSize(const ValueId& value) {
    TakePatternsSizes();
    const auto found = byValue_.find(value.GetValueEnum());
    return found == byValue_.end() ? nullptr : found->second;
}

DWORD ModelMediaHandler::GetFreeValue(DWORD wanted) {
    TakePatternsSizes();
    while (byValue_.contains(wanted)) ++wanted;
    return wanted;
}

PageSize& ModelMediaHandler::AddPageSize(DWORD value, PageSizeTypeEnum type, LONG width, LONG length, DWORD units,
                                         WORD msId, const CXString& name) {
    TakePatternsSizes();
    names_.Add(value, name);
    Keep(PageSize(ValueId(value, &names_), type, width, length, units, msId, name));
    return sizes_.back();
}

PageSize& ModelMediaHandler::AddNewMsForm(const Dimension& width, const Dimension& length, const ValueId& units,
                                          bool isUserForm, WORD number, const CXString& name) {
    DWORD displayUnits = units.GetValueEnum();
    if (displayUnits != DataModelIds::kUnitsMillimetres && displayUnits != DataModelIds::kUnitsInches)
        displayUnits =
            OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::kUnitsInches : DataModelIds::kUnitsMillimetres;
    PageSize& size = AddPageSize(GetFreeValue(kFirstFormValue + number),
                                 isUserForm ? PageSizeTypeEnum::UserForm : PageSizeTypeEnum::DriverCustom,
                                 WholeMicrometres(width), WholeMicrometres(length), displayUnits, number, name);
    size.SetMsFormName(name);
    return size;
}

PageSize& ModelMediaHandler::AddUserSize(LONG width, LONG length, DWORD units, WORD number, const CXString& name) {
    return AddPageSize(GetFreeValue(kFirstUserSizeValue + number), PageSizeTypeEnum::DriverCustom, width, length, units,
                       number, name);
}

WORD ModelMediaHandler::GetMsTrayId(const ValueId& tray) const {
    const auto found = trays_.find(tray.GetValueEnum());
    if (found != trays_.end()) return found->second;
    return pattern_ ? pattern_->GetMsTrayId(tray) : WORD();
}

void ModelMediaHandler::SetMsTrayId(const ValueId& tray, WORD id) { trays_[tray.GetValueEnum()] = id; }
