// The exception hierarchy of the driver family: classes, factories, the hook before a throw, reports of caught
// failures.
#include <mvutil/morvaneexception.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

namespace {

// A process-wide hook: installed and taken under a lock, run outside of it.
template <class Hook>
class HookSlot {
public:
    Hook Exchange(Hook hook) {
        std::shared_ptr<const Hook> next = hook ? std::make_shared<const Hook>(std::move(hook)) : nullptr;
        {
            const std::lock_guard lock(mutex_);
            hook_.swap(next);
            installed_ = hook_ != nullptr;
        }
        return next ? *next : Hook();
    }
    bool IsInstalled() const noexcept { return installed_; }
    std::shared_ptr<const Hook> Get() {
        if (!installed_) return nullptr;
        const std::lock_guard lock(mutex_);
        return hook_;
    }

private:
    std::atomic<bool> installed_{false};
    std::mutex mutex_;
    std::shared_ptr<const Hook> hook_;
};

HookSlot<MorvaneException::DebugHook> debugHook;
HookSlot<MorvaneException::ReportHook> reportHook;

// A line for the debugger, cut to its buffer. Takes no memory, which may be what has just run out.
class DebugLine {
public:
    template <class Character>
    DebugLine& operator<<(const Character* text) noexcept {
        for (; text && *text && length_ + 2 < std::size(line_); ++text) {
            line_[length_++] = static_cast<WCHAR>(static_cast<std::make_unsigned_t<Character>>(*text));
        }
        return *this;
    }
    DebugLine& operator<<(LONG number) noexcept {
        char digits[16];
        *std::to_chars(digits, std::end(digits) - 1, number).ptr = '\0';
        return *this << digits;
    }
    void Send() noexcept {
        line_[length_++] = W('\n');
        line_[length_] = WCHAR();
        OutputDebugStringW(line_);
    }

private:
    WCHAR line_[1024];
    std::size_t length_ = 0;
};

const char* ClassNameOf(const std::exception* exception) noexcept {
    if (const auto* own = dynamic_cast<const MorvaneException*>(exception)) return own->GetClassName();
    if (dynamic_cast<const std::bad_alloc*>(exception)) return "std::bad_alloc";
    return exception ? "std::exception" : "";
}

void SendToDebugger(const std::exception* exception, const WCHAR* sourceFile, LONG line,
                    const WCHAR* methodName) noexcept {
    DebugLine text;
    text << "Caught " << (exception ? ClassNameOf(exception) : "an unknown exception") << " in " << methodName << " ("
         << sourceFile << ":" << line << "): ";
    if (const auto* own = dynamic_cast<const MorvaneException*>(exception)) {
        text << own->GetMessageText().GetString() << " thrown from " << own->GetMethodName().GetString();
    } else if (exception) {
        text << exception->what();
    }
    text.Send();
}

ExceptionReport MakeReport(const std::exception* exception, const WCHAR* sourceFile, LONG line, const WCHAR* methodName,
                           const ExecutionContextStack& contexts) {
    ExceptionReport report;
    report.className = ClassNameOf(exception);
    report.sourceFile = sourceFile;
    report.line = line;
    report.methodName = methodName;
    report.contexts = contexts;
    if (const auto* own = dynamic_cast<const MorvaneException*>(exception)) {
        report.message = own->GetMessageText();
        report.thrownFrom = own->GetMethodName();
        if (const auto* com = dynamic_cast<const MorvaneComException*>(own)) report.hresult = com->GetHresult();
    } else if (exception) {
        const char* what = exception->what();
        report.message = CXString::FromUtf8(what ? what : "");
    }
    return report;
}

}  // namespace

MorvaneException::MorvaneException(const CXString& message, const CXString& sourceFile, LONG line,
                                   const CXString& methodName, const ExecutionContextStack& contexts)
    : message_(message),
      sourceFile_(sourceFile),
      line_(line),
      methodName_(methodName),
      contexts_(contexts),
      what_(message.ToUtf8()) {}

MorvaneException::~MorvaneException() = default;

const char* MorvaneException::what() const noexcept { return what_.empty() ? GetClassName() : what_.c_str(); }

const char* MorvaneException::GetClassName() const noexcept { return "MorvaneException"; }

bool MorvaneException::AllowForExceptionDebug(const WCHAR* className, const WCHAR* trace, const WCHAR* sourceFile,
                                              LONG line, const WCHAR* methodName,
                                              const ExecutionContextStack& /*contexts*/,
                                              const ExceptionCategories& categories) {
    try {
        const auto hook = debugHook.Get();
        return hook && (*hook)({className, trace, sourceFile, line, methodName, categories.GetBits()});
    } catch (...) {
        return false;  // the throw that the hook is about matters more
    }
}

void MorvaneException::DisplayExceptionMessage(bool /*showWindow*/, bool /*waitForUser*/,
                                               const std::exception* exception, const WCHAR* sourceFile, LONG line,
                                               const WCHAR* methodName, const ExecutionContextStack& contexts,
                                               HWND /*window*/, const CXString& /*title*/, const CXString& /*text*/) {
    std::optional<ExceptionReport> report;
    try {
        const auto hook = reportHook.Get();
        if (hook) {
            report = MakeReport(exception, sourceFile, line, methodName, contexts);
            (*hook)(*report);
        }
    } catch (...) {
        // Whoever reports is itself handling a failure and must get its turn.
    }
    if (!report) SendToDebugger(exception, sourceFile, line, methodName);
}

MorvaneException::DebugHook MorvaneException::SetDebugHook(DebugHook hook) {
    return debugHook.Exchange(std::move(hook));
}

MorvaneException::ReportHook MorvaneException::SetReportHook(ReportHook hook) {
    return reportHook.Exchange(std::move(hook));
}

bool MorvaneException::HasDebugHook() noexcept { return debugHook.IsInstalled(); }

MorvaneComException::MorvaneComException(const CXString& message, const CXString& sourceFile, LONG line,
                                         const CXString& methodName, const ExecutionContextStack& contexts,
                                         HRESULT hresult)
    : MorvaneException(message, sourceFile, line, methodName, contexts), hresult_(hresult) {}

MorvaneComException::~MorvaneComException() = default;

const char* MorvaneComException::GetClassName() const noexcept { return "MorvaneComException"; }

MorvaneComException GetMorvaneComException(const CXString& message, const CXString& sourceFile, LONG line,
                                           const CXString& methodName, const ExecutionContextStack& contexts,
                                           HRESULT hresult) {
    return MorvaneComException(message, sourceFile, line, methodName, contexts, hresult);
}

// What MVUTIL_EXCEPTION declares.
#define MVUTIL_DEFINE_EXCEPTION(name)                                                                          \
    name::~name() = default;                                                                                   \
    const char* name::GetClassName() const noexcept { return #name; }                                          \
    name Get##name(const CXString& message, const CXString& sourceFile, LONG line, const CXString& methodName, \
                   const ExecutionContextStack& contexts) {                                                    \
        return name(message, sourceFile, line, methodName, contexts);                                          \
    }

MVUTIL_DEFINE_EXCEPTION(ExceptionInvalidArgumentNullPointer)
MVUTIL_DEFINE_EXCEPTION(ExceptionInvalidPrinterHandle)
MVUTIL_DEFINE_EXCEPTION(ExceptionWorkflowObjectNotInitialized)
MVUTIL_DEFINE_EXCEPTION(ExceptionDelayLoadDllLoadFailure)
MVUTIL_DEFINE_EXCEPTION(ExceptionPrinterFailure)
MVUTIL_DEFINE_EXCEPTION(ExceptionPrintDriverFailure)
MVUTIL_DEFINE_EXCEPTION(ExceptionUnsupportedFeatureRequest)
MVUTIL_DEFINE_EXCEPTION(ExceptionDataCacheFailure)
MVUTIL_DEFINE_EXCEPTION(ExceptionDataEncrypterFailure)
