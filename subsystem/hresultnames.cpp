// Names of the HRESULTs that the print subsystem, the component and COM answer.
#include "hresultnames.h"

#include <printsubsystem/printticketprovider.h>

#include "hosterror.h"
#include "hosttext.h"

namespace {

struct HresultName {
    HRESULT result;
    const char* name;
};

constexpr HresultName kNames[] = {
    {S_OK, "S_OK"},
    {S_FALSE, "S_FALSE"},
    {S_NO_CONFLICT, "S_NO_CONFLICT"},
    {S_CONFLICT_RESOLVED, "S_CONFLICT_RESOLVED"},
    {E_VERSION_NOT_SUPPORTED, "E_VERSION_NOT_SUPPORTED"},
    {E_PRINTTICKET_FORMAT, "E_PRINTTICKET_FORMAT"},
    {E_NOTIMPL, "E_NOTIMPL"},
    {E_NOINTERFACE, "E_NOINTERFACE"},
    {E_POINTER, "E_POINTER"},
    {E_ABORT, "E_ABORT"},
    {E_FAIL, "E_FAIL"},
    {E_PENDING, "E_PENDING"},
    {E_UNEXPECTED, "E_UNEXPECTED"},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
    {E_INVALIDARG, "E_INVALIDARG"},
};

constexpr DWORD kWin32FacilityMask = 0xFFFF0000u;
constexpr DWORD kWin32Facility = 0x80070000u;

}  // namespace

std::string DescribeHresult(HRESULT result) {
    const auto bits = static_cast<DWORD>(result);
    std::string number = FormatHex(bits, 8);
    for (const HresultName& entry : kNames)
        if (entry.result == result) return std::string(entry.name) + " (" + number + ")";
    if ((bits & kWin32FacilityMask) == kWin32Facility)
        return "Windows error " + std::to_string(bits & ~kWin32FacilityMask) + " (" + number + ")";
    return number;
}

OperationError::OperationError(const std::string& operation, HRESULT result, const std::string& hint)
    : HostError(kExitFailed, operation + " answered " + DescribeHresult(result) + hint), result_(result) {}
