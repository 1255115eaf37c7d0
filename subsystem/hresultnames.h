// Names of the HRESULTs that the print subsystem, the component and COM answer.
#pragma once

#include <windows.h>

#include <string>

// "E_FAIL (0x80004005)"; a Windows error that has no name of its own is shown by its number, anything else in hex
// alone.
std::string DescribeHresult(HRESULT result);
