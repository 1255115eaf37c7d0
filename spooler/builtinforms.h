// The forms that every print server has: one for each DMPAPER number from 1 to 118, in that order.
#pragma once

#include "spoolertext.h"

#include <vector>

struct BuiltInForm {
    WideString name;
    LONG width;   // thousandths of a millimetre
    LONG length;  // thousandths of a millimetre
};

// Made once. The index of a form is its DMPAPER number less one: programs take a form's number for its paper number.
const std::vector<BuiltInForm>& GetBuiltInForms();
