// What a printer and a driver are made of: each member, the registry value that keeps it, and the field of the
// information structure that hands it to programs.
#pragma once

#include "printerstore.h"
#include "spoolererror.h"

template <class Stored, class Information>
struct StoredText {
    const WCHAR* valueName;
    WideString Stored::*member;
    LPWSTR Information::*field;
};
template <class Stored, class Information>
struct StoredNumber {
    const WCHAR* valueName;
    DWORD Stored::*member;
    DWORD Information::*field;
};

inline constexpr const WCHAR* kPrinterNameValue = W("Name");
inline constexpr const WCHAR* kPrinterPortValue = W("Port");
inline constexpr const WCHAR* kPrinterDriverValue = W("Printer Driver");
inline constexpr const WCHAR* kPrinterAttributesValue = W("Attributes");
inline constexpr StoredText<StoredPrinter, PRINTER_INFO_2W> kPrinterTexts[] = {
    {kPrinterNameValue, &StoredPrinter::name, &PRINTER_INFO_2W::pPrinterName},
    {W("Share Name"), &StoredPrinter::shareName, &PRINTER_INFO_2W::pShareName},
    {kPrinterPortValue, &StoredPrinter::port, &PRINTER_INFO_2W::pPortName},
    {kPrinterDriverValue, &StoredPrinter::driver, &PRINTER_INFO_2W::pDriverName},
    {W("Description"), &StoredPrinter::comment, &PRINTER_INFO_2W::pComment},
    {W("Location"), &StoredPrinter::location, &PRINTER_INFO_2W::pLocation},
    {W("Separator File"), &StoredPrinter::separatorFile, &PRINTER_INFO_2W::pSepFile},
    {W("Print Processor"), &StoredPrinter::printProcessor, &PRINTER_INFO_2W::pPrintProcessor},
    {W("Datatype"), &StoredPrinter::datatype, &PRINTER_INFO_2W::pDatatype},
    {W("Parameters"), &StoredPrinter::parameters, &PRINTER_INFO_2W::pParameters},
};
inline constexpr StoredNumber<StoredPrinter, PRINTER_INFO_2W> kPrinterNumbers[] = {
    {kPrinterAttributesValue, &StoredPrinter::attributes, &PRINTER_INFO_2W::Attributes},
    {W("Priority"), &StoredPrinter::priority, &PRINTER_INFO_2W::Priority},
    {W("Default Priority"), &StoredPrinter::defaultPriority, &PRINTER_INFO_2W::DefaultPriority},
    {W("StartTime"), &StoredPrinter::startTime, &PRINTER_INFO_2W::StartTime},
    {W("UntilTime"), &StoredPrinter::untilTime, &PRINTER_INFO_2W::UntilTime},
    {W("AveragePPM"), &StoredPrinter::averagePagesPerMinute, &PRINTER_INFO_2W::AveragePPM},
};

// A driver's name is its key's.
inline constexpr StoredText<StoredDriver, DRIVER_INFO_3W> kDriverTexts[] = {
    {W("Driver"), &StoredDriver::driverPath, &DRIVER_INFO_3W::pDriverPath},
    {W("Data File"), &StoredDriver::dataFile, &DRIVER_INFO_3W::pDataFile},
    {W("Configuration File"), &StoredDriver::configFile, &DRIVER_INFO_3W::pConfigFile},
    {W("Help File"), &StoredDriver::helpFile, &DRIVER_INFO_3W::pHelpFile},
    {W("Monitor"), &StoredDriver::monitor, &DRIVER_INFO_3W::pMonitorName},
    {W("Datatype"), &StoredDriver::datatype, &DRIVER_INFO_3W::pDefaultDataType},
};
