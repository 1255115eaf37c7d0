// The exception hierarchy of the driver family: its factories, the hook before a throw, and reports of caught failures.
#pragma once

#include <mvutil/executioncontext.h>

#include <exception>
#include <functional>

// What a throw is about; the debug hook may filter by it. 0 stands for no category.
class MVUTIL_API ExceptionCategories {
public:
    explicit ExceptionCategories(DWORD bits) noexcept : bits_(bits) {}
    DWORD GetBits() const noexcept { return bits_; }

private:
    DWORD bits_;
};

// A report of a caught failure, as DisplayExceptionMessage was given it.
struct ExceptionReport {
    CXString className;  // of the exception; "std::bad_alloc", "std::exception" or empty for others
    CXString message;    // its text; may be empty
    CXString sourceFile;
    LONG line = 0;
    CXString methodName;
    ExecutionContextStack contexts;
    HRESULT hresult = 0;  // of a MorvaneComException, else 0
    CXString thrownFrom;  // method name that the exception carries, else empty
};

// A throw about to happen, as AllowForExceptionDebug was given it.
struct ExceptionTrace {
    CXString className;
    CXString trace;  // "*Throwing* CLASS: MESSAGE"
    CXString sourceFile;
    LONG line = 0;
    CXString methodName;
    DWORD categories = 0;
};

class MVUTIL_API MorvaneException : public std::exception {
public:
    MorvaneException(const CXString& message, const CXString& sourceFile, LONG line, const CXString& methodName,
                     const ExecutionContextStack& contexts);
    MorvaneException(const MorvaneException&) = default;
    MorvaneException& operator=(const MorvaneException&) = default;
    ~MorvaneException() override;

    const char* what() const noexcept override;  // UTF-8: the message, or the class name when that is empty
    virtual const char* GetClassName() const noexcept;
    const CXString& GetMessageText() const noexcept { return message_; }
    const CXString& GetSourceFile() const noexcept { return sourceFile_; }
    LONG GetLine() const noexcept { return line_; }
    const CXString& GetMethodName() const noexcept { return methodName_; }
    const ExecutionContextStack& GetContexts() const noexcept { return contexts_; }

    // Runs before every throw; true asks the thrower to break into the debugger first.
    static bool AllowForExceptionDebug(const WCHAR* className, const WCHAR* trace, const WCHAR* sourceFile, LONG line,
                                       const WCHAR* methodName, const ExecutionContextStack& contexts,
                                       const ExceptionCategories& categories);
    // Reports a caught failure once and returns; never throws. A null exception stands for a throw of no known class.
    // Shows no window and waits for nobody: print processes have no desktop. Without a hook, or when there is no memory
    // left to make the hook's report of, one line goes to the debugger.
    static void DisplayExceptionMessage(bool showWindow, bool waitForUser, const std::exception* exception,
                                        const WCHAR* sourceFile, LONG line, const WCHAR* methodName,
                                        const ExecutionContextStack& contexts, HWND window, const CXString& title,
                                        const CXString& text);

    // Process-wide hooks for hosts and tests. The one installed before is returned; an empty one restores the default
    // (no break; reports go to the debugger). They run on the thread that throws or reports; what they throw is
    // dropped.
    using DebugHook = std::function<bool(const ExceptionTrace&)>;
    using ReportHook = std::function<void(const ExceptionReport&)>;
    static DebugHook SetDebugHook(DebugHook hook);
    static ReportHook SetReportHook(ReportHook hook);
    static bool HasDebugHook() noexcept;

private:
    CXString message_;
    CXString sourceFile_;
    LONG line_;
    CXString methodName_;
    ExecutionContextStack contexts_;
    std::string what_;
};

// A failure that carries an HRESULT.
class MVUTIL_API MorvaneComException : public MorvaneException {
public:
    MorvaneComException(const CXString& message, const CXString& sourceFile, LONG line, const CXString& methodName,
                        const ExecutionContextStack& contexts, HRESULT hresult);
    MorvaneComException(const MorvaneComException&) = default;
    MorvaneComException& operator=(const MorvaneComException&) = default;
    ~MorvaneComException() override;
    static constexpr const WCHAR* kClassName = W("MorvaneComException");
    const char* GetClassName() const noexcept override;
    HRESULT GetHresult() const noexcept { return hresult_; }

private:
    HRESULT hresult_;
};

MVUTIL_API MorvaneComException GetMorvaneComException(const CXString& message, const CXString& sourceFile, LONG line,
                                                      const CXString& methodName, const ExecutionContextStack& contexts,
                                                      HRESULT hresult);

// Declares an exception class without state of its own and the factory Get<class>.
#define MVUTIL_EXCEPTION(name)                                                                \
    class MVUTIL_API name : public MorvaneException {                                         \
    public:                                                                                   \
        using MorvaneException::MorvaneException;                                             \
        ~name() override;                                                                     \
        static constexpr const WCHAR* kClassName = W(#name);                                  \
        const char* GetClassName() const noexcept override;                                   \
    };                                                                                        \
    MVUTIL_API name Get##name(const CXString& message, const CXString& sourceFile, LONG line, \
                              const CXString& methodName, const ExecutionContextStack& contexts)

MVUTIL_EXCEPTION(ExceptionInvalidArgumentNullPointer);
MVUTIL_EXCEPTION(ExceptionInvalidPrinterHandle);
MVUTIL_EXCEPTION(ExceptionWorkflowObjectNotInitialized);
MVUTIL_EXCEPTION(ExceptionDelayLoadDllLoadFailure);
MVUTIL_EXCEPTION(ExceptionPrinterFailure);      // a spooler call on a printer failed
MVUTIL_EXCEPTION(ExceptionPrintDriverFailure);  // a spooler call on a driver failed, or its data file is unusable
MVUTIL_EXCEPTION(ExceptionUnsupportedFeatureRequest);  // the data model does not have the feature
MVUTIL_EXCEPTION(ExceptionDataCacheFailure);           // the registry place of a printer's cache cannot be opened
MVUTIL_EXCEPTION(ExceptionDataEncrypterFailure);       // a text cannot be protected, or is not what was
