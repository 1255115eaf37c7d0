// The print server's forms.
#include "spoolerfixture.h"

namespace {

struct Form {
    std::string name;
    DWORD flags;
    LONG width;

    friend bool operator==(const Form&, const Form&) = default;
};

std::vector<Form> ListForms(HANDLE printer) {
    DWORD needed = 0, count = 0;
    EXPECT_FALSE(EnumFormsW(printer, 1, nullptr, 0, &needed, &count));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    std::vector<BYTE> buffer(needed);
    EXPECT_TRUE(EnumFormsW(printer, 1, buffer.data(), needed, &needed, &count));
    std::vector<Form> forms;
    for (DWORD index = 0; index < count; ++index) {
        FORM_INFO_1W info;
        std::memcpy(&info, buffer.data() + index * sizeof info, sizeof info);
        forms.push_back({NarrowToUtf8(info.pName), info.Flags, info.Size.cx});
    }
    return forms;
}

DWORD AddForm(HANDLE printer, const WideString& name, LONG width, LONG right, DWORD flags = FORM_USER) {
    FORM_INFO_1W form{flags, Writable(name), {width, 200000}, {0, 0, right, 200000}};
    return AddFormW(printer, 1, BytesOf(form)) ? DWORD{ERROR_SUCCESS} : GetLastError();
}

}  // namespace

TEST_F(SpoolerTest, ListsAddedFormsInTheirOrderForEveryPrinter) {
    const HANDLE first = Install(W("First"));
    const HANDLE second = Install(W("Second"), kOffice);
    EXPECT_EQ(AddForm(first, W("Zebra"), 100000, 100000), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(AddForm(first, W("Alpha"), 110000, 50000, FORM_PRINTER), DWORD{ERROR_SUCCESS});
    auto forms = ListForms(second);
    ASSERT_EQ(forms.size(), 120u);
    EXPECT_EQ(forms[8], (Form{"A4", FORM_BUILTIN, 210000}));
    EXPECT_EQ(forms[117].name, "PRC Envelope #10 Rotated");
    EXPECT_EQ(forms[118], (Form{"Zebra", FORM_USER, 100000}));
    EXPECT_EQ(forms[119], (Form{"Alpha", FORM_PRINTER, 110000}));
    WideString name = W("ZEBRA");
    EXPECT_TRUE(DeleteFormW(second, name.data()));
    EXPECT_EQ(AddForm(second, W("Zebra"), 100000, 100000), DWORD{ERROR_SUCCESS});
    forms = ListForms(first);
    EXPECT_EQ(forms[118].name, "Alpha");
    EXPECT_EQ(forms[119].name, "Zebra");
}

TEST_F(SpoolerTest, RefusesFormsThatCannotBe) {
    const HANDLE printer = Install(W("Printer"));
    ASSERT_EQ(AddForm(printer, W("Mine"), 100000, 100000), DWORD{ERROR_SUCCESS});
    struct Row {
        WideString name;
        LONG width, right;
        DWORD flags, error;
    };
    const Row rows[] = {{W(""), 100, 100, FORM_USER, ERROR_INVALID_FORM_NAME},
                        {WideString(32, 'x'), 100, 100, FORM_USER, ERROR_INVALID_FORM_NAME},
                        {W("a4"), 100, 100, FORM_USER, ERROR_FILE_EXISTS},
                        {W("mine"), 100, 100, FORM_USER, ERROR_FILE_EXISTS},
                        {W("New"), 0, 100, FORM_USER, ERROR_INVALID_FORM_SIZE},
                        {W("New"), 100, 101, FORM_USER, ERROR_INVALID_FORM_SIZE},
                        {W("New"), 100, 0, FORM_USER, ERROR_INVALID_FORM_SIZE},
                        {W("New"), 100, 100, FORM_BUILTIN, ERROR_INVALID_PARAMETER},
                        {WideString(31, 'x'), 100, 100, FORM_USER, ERROR_SUCCESS}};
    for (const Row& row : rows) {
        SCOPED_TRACE(NarrowToUtf8(row.name));
        EXPECT_EQ(AddForm(printer, row.name, row.width, row.right, row.flags), row.error);
    }
    WideString builtIn = W("A4"), absent = W("Absent");
    EXPECT_FALSE(DeleteFormW(printer, builtIn.data()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_FALSE(DeleteFormW(printer, absent.data()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FORM_NAME});
    EXPECT_EQ(ListForms(printer).size(), 120u);
    const RECTL areas[] = {{-1, 0, 9, 9}, {0, -1, 9, 9}, {9, 0, 9, 9}, {0, 9, 9, 9}, {0, 0, 11, 9}, {0, 0, 9, 11}};
    WideString name = W("Area");
    for (const RECTL& area : areas) {
        FORM_INFO_1W form{FORM_USER, name.data(), {10, 10}, area};
        EXPECT_FALSE(AddFormW(printer, 1, BytesOf(form)));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FORM_SIZE});
    }
    FORM_INFO_1W flat{FORM_USER, name.data(), {10, 0}, {0, 0, 10, 10}};
    EXPECT_FALSE(AddFormW(printer, 1, BytesOf(flat)));

    // Values that are no forms are passed over.
    UniqueKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, W("SYSTEM\\CurrentControlSet\\Control\\Print\\Forms"), 0,
                            KEY_ALL_ACCESS, key.Put()),
              ERROR_SUCCESS);
    BYTE good[33] = {};
    DWORD size = 32;
    ASSERT_EQ(RegQueryValueExW(key.Get(), W("Mine"), nullptr, nullptr, good, &size), ERROR_SUCCESS);
    const std::pair<std::size_t, BYTE> damages[] = {{28, 0x07}, {3, 0x80}, {0, 0xFF}};
    for (const auto& [at, bits] : damages) {
        BYTE bad[32];
        std::copy_n(good, 32, bad);
        bad[at] ^= bits;
        RegSetValueExW(key.Get(), W("Bad"), 0, REG_BINARY, bad, 32);
        EXPECT_EQ(ListForms(printer).size(), 120u) << at;
    }
    for (const DWORD bytes : {31u, 33u}) {
        RegSetValueExW(key.Get(), W("Bad"), 0, REG_BINARY, good, bytes);
        EXPECT_EQ(ListForms(printer).size(), 120u) << bytes;
    }
}
