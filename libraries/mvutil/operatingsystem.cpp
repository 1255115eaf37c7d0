// OperatingSystem, Application and DriverLoadedContext: the user's conventions and the calling program.
#include <mvutil/operatingsystem.h>

#include <mvutil/morvaneutilities.h>

#include "currentproduct.h"

#include <algorithm>
#include <mutex>

namespace {

constexpr DWORD kMetric = 0;       // LOCALE_IMEASURE
constexpr DWORD kPaperLetter = 1;  // LOCALE_IPAPERSIZE
constexpr DWORD kPaperLegal = 5;

DWORD GetLocaleNumber(DWORD type, DWORD defaultValue) {
    DWORD number = 0;
    const int characters =
        GetLocaleInfoW(LOCALE_USER_DEFAULT, type | LOCALE_RETURN_NUMBER, reinterpret_cast<LPWSTR>(&number),
                       static_cast<int>(sizeof number / sizeof(WCHAR)));
    return characters > 0 ? number : defaultValue;
}

struct PlayedProgram {
    std::mutex mutex;
    CXString name;  // guarded by the mutex; empty for none
};

PlayedProgram& GetPlayedProgram() {
    static PlayedProgram program;
    return program;
}

const CXString& ProgramName() {
    static const CXString name = [] {
        const CXString path = MorvaneUtilities::getModulePath(nullptr);
        CXString file = path.Mid(static_cast<int>(MorvaneUtilities::getPathFromFileName(path).GetLength()));
        file.MakeLower();
        return file;
    }();
    return name;
}

}  // namespace

bool OperatingSystem::UseEnglishPaperSizes() {
    const DWORD paper = GetLocaleNumber(LOCALE_IPAPERSIZE, 0);
    return paper == kPaperLetter || paper == kPaperLegal;
}

bool OperatingSystem::IsMetricCountry() { return GetLocaleNumber(LOCALE_IMEASURE, kMetric) == kMetric; }

CXString Application::GetExecutableName() {
    PlayedProgram& played = GetPlayedProgram();
    const std::lock_guard lock(played.mutex);
    return played.name.IsEmpty() ? ProgramName() : played.name;
}

void Application::SetExecutableName(const CXString& name) {
    PlayedProgram& played = GetPlayedProgram();
    const std::lock_guard lock(played.mutex);
    played.name = name;
    played.name.MakeLower();
}

bool Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml() {
    const auto product = GetCurrentProduct();
    if (!product) return false;
    const auto& applications = product->applicationsWithoutCustomSize;
    return std::find(applications.begin(), applications.end(), GetExecutableName().ToUtf8()) != applications.end();
}

bool DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext() {
    const CXString program = Application::GetExecutableName();
    return program == W("spoolsv.exe") || program == W("printfilterpipelinesvc.exe");
}
