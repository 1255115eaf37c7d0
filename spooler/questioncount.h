// How often the stand-in for the spooler was asked, and read a capability cache for it: where the spooler is another
// process, each question is a call into it.
#pragma once

#include <windows.h>

#include <cstddef>

enum class SpoolerQuestion { Printer, Driver, PrinterData, Forms, Capabilities, CacheRead };
inline constexpr std::size_t kSpoolerQuestionCount = 6;

// By all threads of the process since it began.
extern "C" __declspec(dllexport) std::size_t GetSpoolerQuestionCount(SpoolerQuestion question) noexcept;

void CountQuestion(SpoolerQuestion question) noexcept;  // inside the stand-in
