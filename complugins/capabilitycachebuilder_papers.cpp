// CapabilityCacheBuilder: the paper database, built from the model's page sizes.
#include <capabilitycachebuilder.h>

#include <facts/features.h>
#include <facts/units.h>
#include <facts/values.h>
#include <mvutil/cforms.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/textresources.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "capabilityblob.h"

namespace {

constexpr FeatureId kPaper(facts::feature::kPaper), kPageSize(facts::feature::kPageSize);
constexpr DWORD kCustomSizeText = 103;

LONG ToTenths(const Dimension& size) {
    return size.GetValue(Dimension::TenthsOfMillimetre).GetLongValue(facts::kToNearest);
}

DWORD PreferredUnits() {
    return OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::kUnitsInches : DataModelIds::kUnitsMillimetres;
}

// Place of a kind of page size in the database.
DWORD OrderOfType(DWORD type) {
    constexpr PageSizeTypeEnum kOrder[] = {PageSizeTypeEnum::Common,       PageSizeTypeEnum::Other,
                                           PageSizeTypeEnum::DriverCustom, PageSizeTypeEnum::PostScriptCustom,
                                           PageSizeTypeEnum::MappedForm,   PageSizeTypeEnum::UserForm,
                                           PageSizeTypeEnum::Custom};
    const auto* found = std::find(std::begin(kOrder), std::end(kOrder), static_cast<PageSizeTypeEnum>(type));
    return found == std::end(kOrder) ? type : static_cast<DWORD>(found - std::begin(kOrder));
}

// Letter, Legal, A4 and A3 before all other numbers.
DWORD OrderOfPaperId(WORD id) {
    constexpr WORD kFirst[] = {DMPAPER_LETTER, DMPAPER_LEGAL, DMPAPER_A4, DMPAPER_A3};
    const auto* found = std::find(std::begin(kFirst), std::end(kFirst), id);
    return found == std::end(kFirst) ? 4u + id : static_cast<DWORD>(found - std::begin(kFirst));
}

void SortRecords(std::vector<_tag_FormsInfoRec>& records) {
    const DWORD preferred = PreferredUnits();
    const auto place = [&](const _tag_FormsInfoRec& record) {
        return std::make_tuple(OrderOfType(record.pageSizeType), record.displayUnits != preferred,
                               OrderOfPaperId(record.msPaperId));
    };
    std::stable_sort(records.begin(), records.end(), [&](const auto& a, const auto& b) { return place(a) < place(b); });
}

_tag_FormsInfoRec MakeRecord(const PageSize& size) {
    _tag_FormsInfoRec record{};
    record.msPaperId = size.GetMsId();
    record.width = ToTenths(size.GetWidth());
    record.length = ToTenths(size.GetLength());
    record.pageSizeValue = size.GetValueId().GetValueEnum();
    record.displayUnits = size.GetUnits();
    const bool isUserForm = size.GetPageSizeType() == PageSizeTypeEnum::UserForm;
    record.pageSizeType = static_cast<DWORD>(isUserForm ? PageSizeTypeEnum::DriverCustom : size.GetPageSizeType());
    SetNameField(record.name, size.GetDisplayString().AsWideString());
    return record;
}

// The same paper under the name of the form that stands for it.
_tag_FormsInfoRec MakeFormRecord(const _tag_FormsInfoRec& paper, const PageSize& size) {
    _tag_FormsInfoRec record = paper;
    const bool isUserForm = size.GetPageSizeType() == PageSizeTypeEnum::UserForm;
    record.pageSizeType = static_cast<DWORD>(isUserForm ? PageSizeTypeEnum::UserForm : PageSizeTypeEnum::MappedForm);
    record.formIndex = record.msPaperId;
    SetNameField(record.name, size.GetMsFormName().AsWideString());
    return record;
}

// The size that a job gives by width and length; it starts from the user's usual paper.
_tag_FormsInfoRec MakeCustomRecord(MediaHandler& media) {
    _tag_FormsInfoRec record{};
    record.msPaperId = record.formIndex = DMPAPER_USER;
    const PageSize* usual = media.GetPageSize(
        ValueId(OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::kPageSizeLetter : DataModelIds::kPageSizeA4));
    if (usual) {
        record.width = ToTenths(usual->GetWidth());
        record.length = ToTenths(usual->GetLength());
    }
    record.pageSizeValue = DataModelIds::kPageSizeCustom;
    record.displayUnits = PreferredUnits();
    record.pageSizeType = static_cast<DWORD>(PageSizeTypeEnum::Custom);
    SetNameField(record.name, TextResourceLoader::LoadStringW(kCustomSizeText).AsWideString());
    return record;
}

// Numbers of the printer's forms by name, without regard to case.
std::map<WideString, WORD> IndexForms(HANDLE printer) {
    std::map<WideString, WORD> numbers;
    const CForms forms(printer, true);
    for (const _MVN_FORM_INFO& form : forms.GetForms()) {
        CXString name(form.name);
        name.MakeLower();
        numbers.emplace(name.AsWideString(), form.formIndex);
    }
    return numbers;
}

}  // namespace

std::vector<_tag_FormsInfoRec> CapabilityCacheBuilder::MakePaperRecords() {
    MediaHandler& media = services_.GetMediaHandler();
    const auto forms = IndexForms(caches_.GetPrinter());
    std::vector<ValueId> values;
    services_.ListOptionValues(kPageSize, values);
    std::vector<_tag_FormsInfoRec> records;
    records.reserve(256);
    bool hasCustomSize = false;
    for (const ValueId& value : values) {
        const PageSize* size =
            value.GetValueEnum() == facts::value::kPageSizeReserved ? nullptr : media.GetPageSize(value);
        if (!size || size->GetPageSizeType() == PageSizeTypeEnum::Hidden) continue;
        hasCustomSize |= size->GetMsId() == DMPAPER_USER;
        _tag_FormsInfoRec record = MakeRecord(*size);
        if (record.width > record.length) continue;
        CXString name = size->GetDisplayString();
        name.MakeLower();
        const auto form = forms.find(name.AsWideString());
        record.formIndex = form == forms.end() ? WORD{0} : form->second;
        records.push_back(record);
        if (!size->GetMsFormName().IsEmpty() && size->GetMsFormName() != size->GetDisplayString())
            records.push_back(MakeFormRecord(record, *size));
    }
    if (!hasCustomSize) records.push_back(MakeCustomRecord(media));
    SortRecords(records);
    return records;
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildPaper(const CapabilityGroup& group) {
    if (!IsPresent(kPaper)) return std::nullopt;
    CapabilityBlob<PaperCapsHeader> blob;
    for (const _tag_FormsInfoRec& record : MakePaperRecords()) blob.Append(record);
    PaperCapsHeader header{};
    header.formsDatabaseCrc = caches_.ComputeFormsDatabaseCRC();
    header.customFormsCrc = caches_.GetCustomFormsCRC();
    header.count = blob.GetCount();
    return blob.Finish(group, header);
}
