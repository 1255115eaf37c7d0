// A store of its own for each test of the spooler, and short forms of its calls.
#pragma once

#include <spooler/printerinstall.h>
#include <spooler/spoolertext.h>
#include <store.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <gtest/gtest.h>

#include <vector>

inline WCHAR* Writable(const WideString& text) { return const_cast<WCHAR*>(text.c_str()); }

// Takes any information structure as the spooler's functions do.
template <class Information>
LPBYTE BytesOf(Information& information) {
    return reinterpret_cast<LPBYTE>(&information);
}

class SpoolerTest : public testing::Test {
protected:
    SpoolerTest() { OpenStore(":memory:"); }
    ~SpoolerTest() override {
        for (const HANDLE printer : opened_) ClosePrinter(printer);
        CloseStore();
    }

    // The tests run in the folder of the programs, where the products lie.
    static std::filesystem::path ProductFile(const std::string& name) {
        return std::filesystem::path("products") / name / (name + ".toml");
    }
    HANDLE Install(const WCHAR* name, const std::string& product = "press8434", const WCHAR* port = W("")) {
        InstallPrinter(name, ProductFile(product), port);
        return Open(name);
    }
    HANDLE Open(const WCHAR* name) {
        HANDLE printer = nullptr;
        if (OpenPrinterW(const_cast<WCHAR*>(name), &printer, nullptr)) opened_.push_back(printer);
        return printer;
    }

private:
    std::vector<HANDLE> opened_;
};
