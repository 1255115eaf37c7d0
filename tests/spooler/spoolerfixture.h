// A store of its own for each test of the spooler, and short forms of its calls.
#pragma once

#include <support/printerfixture.h>

#include <spooler/printerinstall.h>
#include <spooler/spoolertext.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

inline WCHAR* Writable(const WideString& text) { return const_cast<WCHAR*>(text.c_str()); }

// Takes any information structure as the spooler's functions do.
template <class Information>
LPBYTE BytesOf(Information& information) {
    return reinterpret_cast<LPBYTE>(&information);
}

class SpoolerTest : public testing::Test {
protected:
    ~SpoolerTest() override {
        for (const HANDLE printer : opened_) ClosePrinter(printer);
    }

    HANDLE Install(const WCHAR* name, const std::string& product = kPress, const WCHAR* port = W("")) {
        InstallPrinter(name, ProductFile(product), port);
        return Open(name);
    }
    HANDLE Open(const WCHAR* name) {
        HANDLE printer = nullptr;
        if (OpenPrinterW(const_cast<WCHAR*>(name), &printer, nullptr)) opened_.push_back(printer);
        return printer;
    }

private:
    TestStore store_;
    std::vector<HANDLE> opened_;
};
