// MediaHandler: the model's page sizes and the numbers of its trays.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvutil/dimension.h>

#include <vector>

// One page size of a model.
class PageSize {
public:
    PageSize(ValueId value, PageSizeTypeEnum type, LONG widthInMicrometres, LONG lengthInMicrometres, DWORD units,
             WORD msId, const CXString& displayString)
        : value_(value),
          type_(type),
          width_(widthInMicrometres),
          length_(lengthInMicrometres),
          units_(units),
          msId_(msId),
          displayString_(displayString) {}
    // The same page size, its value named by those names.
    PageSize(const PageSize& size, const MvValueNames* names) : PageSize(size) {
        value_ = ValueId(value_.GetValueEnum(), names);
    }

    ValueId GetValueId() const noexcept { return value_; }
    PageSizeTypeEnum GetPageSizeType() const noexcept { return type_; }
    Dimension GetWidth() const { return Dimension(width_, Dimension::Micrometres); }
    Dimension GetLength() const { return Dimension(length_, Dimension::Micrometres); }
    DWORD GetUnits() const noexcept { return units_; }  // DataModelIds::kUnitsMillimetres or kUnitsInches
    const CXString& GetDisplayString() const noexcept { return displayString_; }
    // Paper number of the DEVMODE; 0 when it has none.
    WORD GetMsId() const noexcept { return msId_; }
    void SetMsId(WORD id) noexcept { msId_ = id; }
    // Name of the form of the printer's forms database that stands for the size; empty when there is none.
    const CXString& GetMsFormName() const noexcept { return msFormName_; }
    void SetMsFormName(const CXString& name) { msFormName_ = name; }

private:
    ValueId value_;
    PageSizeTypeEnum type_;
    LONG width_;
    LONG length_;
    DWORD units_;
    WORD msId_;
    CXString displayString_;
    CXString msFormName_;
};

// The product's sizes, then the user's custom ones (DriverCustom), then forms, each with an MS id of its own range
// (facts/papernumbers.h). They belong to the handler and keep their place as long as it lives. Sizes are the same when
// they are equal in whole tenths of a millimetre, as the paper database knows them. The custom size is no page
// size.
class MediaHandler {
public:
    // All of them, or those of that size, in the order in which the model learnt them; replaces the contents.
    virtual void GetPageSizes(std::vector<PageSize*>& sizes) = 0;
    virtual void GetPageSizes(const Dimension& width, const Dimension& length, std::vector<PageSize*>& sizes) = 0;
    virtual bool AnyExist(const Dimension& width, const Dimension& length) const = 0;
    virtual PageSize* GetPageSize(const ValueId& value) = 0;  // null when there is none
    // A page size with a new value for a form of the printer's database: of type UserForm, or DriverCustom for a form
    // that the user did not make. The form's number is its MS id and the form's name its form name. kUnitsOfSystem are
    // those of the system's paper sizes.
    virtual PageSize& AddNewMsForm(const Dimension& width, const Dimension& length, const ValueId& units,
                                   bool isUserForm, WORD number, const CXString& name) = 0;
    // Bin number of the DEVMODE; 0 when the tray has none.
    virtual WORD GetMsTrayId(const ValueId& tray) const = 0;
    virtual void SetMsTrayId(const ValueId& tray, WORD id) = 0;

protected:
    ~MediaHandler() = default;
};
