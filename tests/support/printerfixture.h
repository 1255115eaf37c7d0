// The shared fixture of tests that need a printer: a store in memory, and products of this build installed as printers.
#pragma once

#include <support/temporaryfolder.h>
#include <uniquehandle.h>

#include <mvutil/cxstring.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

// The products by the name of their folder.
inline constexpr const char* kPress = "press8434";    // capability bit 0x400
inline constexpr const char* kOffice = "office8430";  // neither bit
inline constexpr const char* kScript = "script8432";  // capability bit 0x200

// The folder of this program, and a product's description file in the build.
std::filesystem::path ProgramFolder();
std::filesystem::path ProductFile(const std::string& product);

// A copy of a product, its description's texts replaced; gone with the object.
class ChangedProduct {
public:
    using Changes = std::vector<std::pair<std::string, std::string>>;  // what is replaced, by what

    ChangedProduct(const std::string& product, const Changes& changes);

    const std::filesystem::path& GetFile() const noexcept { return file_; }

private:
    TemporaryFolder folder_;
    std::filesystem::path file_;
};

// A store that nothing else sees, as long as this object lives. One at a time.
class TestStore {
public:
    TestStore();
    ~TestStore();
    TestStore(const TestStore&) = delete;
    TestStore& operator=(const TestStore&) = delete;
};

// A product installed as a printer in the open store, with a port of its own, and opened.
class TestPrinter {
public:
    explicit TestPrinter(const std::string& product, const WCHAR* name = W("Test Printer"));
    TestPrinter(const WCHAR* name, const std::filesystem::path& productFile);
    ~TestPrinter();
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;

    HANDLE GetHandle() const noexcept { return handle_; }
    const CXString& GetName() const noexcept { return name_; }
    CXString GetCacheKey() const;  // key name of the printer's caches

private:
    CXString name_;
    HANDLE handle_ = nullptr;
};
