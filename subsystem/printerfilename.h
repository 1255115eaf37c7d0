// The name of a printer's file among those of all printers.
#pragma once

#include <widetext.h>

#include <string>

// UTF-8, portable among systems, and another one for each printer, also where files do not differ by case. What a file
// name may not hold, on one system or another, is written as "%" and two hexadecimal digits; a name that is too long is
// cut, and ends in "~" and eight digits made from the whole of it.
std::string MakePrinterFileName(WideStringView printer, std::string_view extension);
