// The print spooler's functions that the project uses, as the SDK's winspool.h gives them. Implemented in spooler/.
#pragma once

#include <windows.h>

using ACCESS_MASK = DWORD;
using PSECURITY_DESCRIPTOR = PVOID;

#define ERROR_FILE_EXISTS 80
#define ERROR_UNKNOWN_PORT 1796
#define ERROR_INVALID_ENVIRONMENT 1805
#define ERROR_INVALID_FORM_NAME 1902
#define ERROR_INVALID_FORM_SIZE 1903
#define ERROR_PRINTER_DELETED 1905
#define ERROR_PRINTER_DRIVER_IN_USE 3001

#define PRINTER_ATTRIBUTE_LOCAL 0x00000040
#define PRINTER_ENUM_LOCAL 0x00000002
#define PRINTER_ACCESS_ADMINISTER 0x00000004
#define PRINTER_ACCESS_USE 0x00000008
#define PRINTER_ALL_ACCESS (0x000F0000 | PRINTER_ACCESS_ADMINISTER | PRINTER_ACCESS_USE)
#define FORM_USER 0x00000000
#define FORM_BUILTIN 0x00000001
#define FORM_PRINTER 0x00000002

struct PRINTER_INFO_2W {
    LPWSTR pServerName;
    LPWSTR pPrinterName;
    LPWSTR pShareName;
    LPWSTR pPortName;
    LPWSTR pDriverName;
    LPWSTR pComment;
    LPWSTR pLocation;
    LPDEVMODEW pDevMode;
    LPWSTR pSepFile;
    LPWSTR pPrintProcessor;
    LPWSTR pDatatype;
    LPWSTR pParameters;
    PSECURITY_DESCRIPTOR pSecurityDescriptor;
    DWORD Attributes;
    DWORD Priority;
    DWORD DefaultPriority;
    DWORD StartTime;
    DWORD UntilTime;
    DWORD Status;
    DWORD cJobs;
    DWORD AveragePPM;
};

struct PRINTER_INFO_4W {
    LPWSTR pPrinterName;
    LPWSTR pServerName;
    DWORD Attributes;
};

struct PRINTER_INFO_5W {
    LPWSTR pPrinterName;
    LPWSTR pPortName;
    DWORD Attributes;
    DWORD DeviceNotSelectedTimeout;
    DWORD TransmissionRetryTimeout;
};

struct DRIVER_INFO_3W {
    DWORD cVersion;
    LPWSTR pName;
    LPWSTR pEnvironment;
    LPWSTR pDriverPath;
    LPWSTR pDataFile;
    LPWSTR pConfigFile;
    LPWSTR pHelpFile;
    LPWSTR pDependentFiles;  // texts one after the other, each with its NUL, and one more NUL
    LPWSTR pMonitorName;
    LPWSTR pDefaultDataType;
};

struct FORM_INFO_1W {
    DWORD Flags;
    LPWSTR pName;
    SIZEL Size;  // thousandths of a millimetre
    RECTL ImageableArea;
};

struct PRINTER_DEFAULTSW {
    LPWSTR pDatatype;
    LPDEVMODEW pDevMode;
    ACCESS_MASK DesiredAccess;
};
using LPPRINTER_DEFAULTSW = PRINTER_DEFAULTSW*;

// Sizes of buffers are in bytes. Those that return BOOL report why they failed through GetLastError, the three of
// printer data by their result; a buffer that is too small gets ERROR_INSUFFICIENT_BUFFER (printer data:
// ERROR_MORE_DATA) and the number of bytes needed.
#pragma GCC visibility push(default)
extern "C" {
BOOL WINAPI OpenPrinterW(LPWSTR name, LPHANDLE printer, LPPRINTER_DEFAULTSW defaults);
BOOL WINAPI ClosePrinter(HANDLE printer);
BOOL WINAPI GetPrinterW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed);
BOOL WINAPI EnumPrintersW(DWORD flags, LPWSTR name, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed,
                          LPDWORD returned);
HANDLE WINAPI AddPrinterW(LPWSTR server, DWORD level, LPBYTE information);
BOOL WINAPI DeletePrinter(HANDLE printer);
BOOL WINAPI AddPrinterDriverW(LPWSTR server, DWORD level, LPBYTE information);
BOOL WINAPI DeletePrinterDriverW(LPWSTR server, LPWSTR environment, LPWSTR driver);
BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                              LPDWORD needed);
BOOL WINAPI GetPrinterDriverDirectoryA(LPSTR server, LPSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                                       LPDWORD needed);
DWORD WINAPI GetPrinterDataW(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes, LPDWORD needed);
DWORD WINAPI SetPrinterDataW(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes);
DWORD WINAPI DeletePrinterDataW(HANDLE printer, LPWSTR name);
BOOL WINAPI EnumFormsW(HANDLE printer, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed, LPDWORD returned);
BOOL WINAPI AddFormW(HANDLE printer, DWORD level, LPBYTE form);
BOOL WINAPI DeleteFormW(HANDLE printer, LPWSTR name);
// An array goes to the output where the capability has one; the result is its count or the capability's number, -1 when
// the call fails. Null output gives the count alone.
int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR port, WORD capability, LPWSTR output, const DEVMODEW* devmode);
}
#pragma GCC visibility pop
