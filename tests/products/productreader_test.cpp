// Product files: what is read from them, what is refused and where, and how long a parsed product is kept.
#include <products/reader/productdescription.h>

#include <support/temporaryfolder.h>

#include <gtest/gtest.h>

namespace {

// The first line is 1.
constexpr const char* kProduct = R"(model = "Morvane Test"
controller_family = 8430
driver_version = 1
workflow_library = "mvwfwuC0.dll"
papers = [
    { size = "ISOA4" },
    { size = "ISOSRA3", number = 9300, form = "Large" },
    { name = "Banner", number = 9301, value = 6700, width = 300000, length = 900000 },
    { size = "CustomMediaSize" },
]
trays = [{ number = 15, value = 5001, name = "Auto" }, { number = 1, value = 7147, name = "1", holds = { size = "Banner", media = 6800 } }]
media_types = [{ value = 6800, name = "Plain" }]
resolutions = [{ x = 600, y = 600, default = true, name = "600" }]
[capabilities]
1984 = 0x400
[settings]
720 = true
422 = -5
546 = { option = 8701 }
[features]
45 = { values = [5410, 5411], default = 5411 }
477 = {}
210 = {}
43 = { minimum = 1, maximum = 99, default = 1 }
[devmode]
dmPaperSize = 9
[strings]
418 = "Kopien \u00E4"
)";

std::string Replaced(const std::string& from, const std::string& to) {
    std::string text = kProduct;
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

std::string ErrorOf(const std::filesystem::path& file) {
    try {
        LoadProduct(file);
    } catch (const ProductError& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace

TEST(ProductReader, ReadsEveryKindOfEntry) {
    const TemporaryFolder folder;
    const auto product = LoadProduct(folder.Write("good.toml", kProduct));
    EXPECT_EQ(product->settings.at(546).kind, ProductSetting::Kind::Option);
    EXPECT_EQ(product->settings.at(546).number, 8701);
    EXPECT_EQ(product->FindFeature(210)->path, (std::vector<DWORD>{477, 210}));
    EXPECT_EQ(product->limits.minimumWidth, 2100) << "without a range of custom sizes, the papers' own";
    EXPECT_EQ(product->limits.maximumLength, 9000);

    EXPECT_EQ(product->trays[1].heldSize, 6700u);
    EXPECT_EQ(product->trays[1].heldMediaType, 6800u);

    struct Row {
        WORD number;
        DWORD value, type;
        LONG width;
        const char* form;
    };
    const Row rows[] = {{9, 6436, 25001, 210000, ""},
                        {9300, 6490, 25002, 320000, "Large"},
                        {9301, 6700, 25003, 300000, ""},
                        {256, 6731, 25008, 0, ""}};
    ASSERT_EQ(product->papers.size(), std::size(rows));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.number);
        const ProductPaper* paper = product->FindPaper(row.number);
        ASSERT_NE(paper, nullptr);
        EXPECT_EQ(paper->value, row.value);
        EXPECT_EQ(static_cast<DWORD>(paper->type), row.type);
        EXPECT_EQ(paper->width, row.width);
        EXPECT_EQ(paper->formName, row.form);
    }
}

TEST(ProductReader, TellsFileLineAndWhatWasExpectedOfABrokenFile) {
    struct Row {
        const char *from, *to;
        int line;
        const char* told;
    };
    const Row rows[] = {
        {"model = \"Morvane Test\"", "model = 5", 1, "model: expected a text without control characters, got 5"},
        {"model = \"Morvane Test\"", "model = ", 1, "expected TOML"},
        {"driver_version = 1\n", "", 1, "driver_version: expected a whole number from 1 to 65535, got nothing"},
        {"mvwfwuC0.dll", "mvother.dll", 4, "workflow_library: expected mvwftuC0.dll, mvwfwuC0.dll or mvwfuvC0.dll"},
        {"ISOA4", "ISOA44", 6, "papers[0].size: expected a page size of the Print Schema"},
        {"ISOA4", "NorthAmericaTabloid", 6, "papers[0].size: expected a paper number other than 3"},
        {"number = 9300", "number = 9301", 8, "papers[2].number: expected a paper number that no other paper"},
        {"number = 9300", "number = 9", 7, "papers[1].number: expected a whole number from 9000 to 9999, got 9"},
        {"number = 9301", "number = 256", 8, "papers[2].number: expected a whole number from 9000 to 9999, got 256"},
        {"number = 9301", "number = 10000", 8,
         "papers[2].number: expected a whole number from 9000 to 9999, got 10000"},
        {"\"ISOSRA3\", number = 9300", "\"ISOA4\", number = 9300", 7, "papers[1].size: expected each page size once"},
        {"value = 6700", "value = 6436", 8, "papers[2].value: expected a value that no Print Schema size has"},
        {"width = 300000", "width = 99000000", 8, "papers[2].width: expected a whole number from 100 to 3276700"},
        {"length = 900000", "length = 900000, colour = 1", 8, "papers[2].colour: expected no such key"},
        {"value = 5001, name", "value = 6800, name", 11, "trays[0].value: expected a tray"},
        {"value = 6800", "value = 6811", 12, "media_types[0].value: expected a media type"},
        {"default = true", "default = false", 13, "resolutions: expected one resolution with default = true"},
        {"[5410, 5411]", "[5410, 5420]", 21, "features.45.values: expected values from 5410 to 5419"},
        {"45 = {", "9999 = {", 21, "features.9999: expected a feature that exists"},
        {"477 = {}", "", 23, "features.210: expected the list feature 477 (Paper) beside it"},
        {"default = 1 }", "default = 100 }", 24, "features.43.default: expected a whole number from 1 to 99, got 100"},
        {"dmPaperSize = 9", "dmPaperSize = 8", 26, "devmode.dmPaperSize: expected one that the product lists, got 8"},
        {"\\u00E4", "\\u0000", 28, "strings.418: expected a text without control characters"},
        {"\\u00E4", "\xC3", 28, "expected TOML"},
        {"default = 1 }", "default = 1\xC3\xA9 }", 24, "expected TOML"},  // a letter that could be a blank
        {"= 6700, width", "= 6700, form = \"F\", width", 8, "papers[2].form: expected no such key"},
        {"\"Auto\"", "\"Auto\", holds = { size = \"ISOA4\" }", 11, "trays[0].holds.size: expected nothing"},
        {"\"Banner\", media", "\"CustomMediaSize\", media", 11, "trays[1].holds.width: expected a whole number"},
        {"media = 6800", "media = 6801", 11, "trays[1].holds.media: expected a media type that the product lists"},
        {"43 =", "172 = { minimum = 9, maximum = 99, default = 9 }\n43 =", 24, "expected a whole number from 100"},
        {"[strings]", "[strings.a.b.c.d.e.f.g.h.i.j.k.l.m.n.o.p]", 27, "expected keys of at most 16 parts"},
        {"papers = [", "dependent_files = [\"a/b.dll\"]\npapers = [", 5,
         "dependent_files: expected file names without"},
        {"papers = [", "applications_without_custom_size = [\"aZ.exe\"]\npapers = [", 5, "programs in lower case"},
        {"papers = [", "applications_without_custom_size = [\"A.exe\"]\npapers = [", 5, "programs in lower case"},
        {"papers = [", "dependent_files = [\"a\", \"a\"]\npapers = [", 5, "each text once"},
        {"papers = [", "dependent_files = 5\npapers = [", 5, "an array of texts"},
        {"papers = [", "colour = 1\npapers = [", 5, "colour: expected no such key"},
        {"value = 6800, name", "colour = 1, value = 6800, name", 12, "media_types[0].colour: expected no such key"},
        {"number = 15", "colour = 1, number = 15", 11, "trays[0].colour: expected no such key"},
        {"x = 600", "colour = 1, x = 600", 13, "resolutions[0].colour: expected no such key"},
        {"media = 6800 }", "media = 6800, colour = 1 }", 11, "holds.colour: expected no such key"},
        {"option = 8701", "option = 8701, colour = 1", 19, "settings.546.colour: expected no such key"},
        {"default = 5411", "default = 5411, colour = 1", 21, "features.45.colour: expected no such key"},
        {"dmPaperSize = 9", "dmColour = 9", 26, "devmode.dmColour: expected no such key"},
        {"name = \"600\" }", "name = \"600\" }, { x = 1, y = 1, default = true, name = \"1\" }", 13,
         "one default resolution"},
        {"name = \"600\"", "name = \"600\", units = 1", 13, "units: expected no such key"},
        {"900000 }", "900000, units = \"cm\" }", 8, "papers[2].units: expected \"mm\" or \"in\""},
        {"papers = [", "papers = []\nother = [", 5, "papers: expected at least one paper"},
        {"= { option = 8701 }", "= 1.5", 19,
         "a whole number, a text or { option = NUMBER }, got a number with a fraction"},
        {"default = true", "default = 1", 13, "default: expected true or false, got 1"},
        {"43 = {", "571 = {}\n43 = {", 24, "one of the user's preferences"},
        {"43 = {", "175 = {}\n43 = {", 24, "papers, trays, media_types or resolutions"},
        {"1984 = ", "x = ", 15, "capabilities.x: expected a key that is a whole number"},
        {"[strings]", "[paths]\n15 = \"none.ini\"\n[strings]", 28,
         "paths.15: expected a file beside this one, where 'none.ini' is missing"},
        {"[strings]", "[paths]\n15 = \"../up.ini\"\n[strings]", 28,
         "paths.15: expected a file beside this one, by a name"},
        {"papers = [", "string_files = [\"..\"]\npapers = [", 5, "string_files: expected a file beside this one, by a"},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.from << " -> " << row.to);
        const auto file = folder.Write("broken.toml", Replaced(row.from, row.to));
        const std::string error = ErrorOf(file);
        EXPECT_EQ(error.find(file.string() + ":" + std::to_string(row.line) + ": "), 0u) << error;
        EXPECT_NE(error.find(row.told), std::string::npos) << error;
    }
    EXPECT_NE(
        ErrorOf(folder.Write("large.toml", kProduct + ("#" + std::string(4 << 20, 'x')))).find("at most 4194304 bytes"),
        std::string::npos);
    EXPECT_NE(ErrorOf(folder.GetPath()).find(":1: expected a readable product file"), std::string::npos);
    EXPECT_NE(ErrorOf("no/such/file.toml").find("file.toml:1: expected a readable product file"), std::string::npos);
}

// What may stand in each place: the text of the good file, what replaces it around a number or a text, which of these
// are taken and which are not.
TEST(ProductReader, TakesNumbersAndTextsWithinTheirBounds) {
    constexpr std::int64_t kMost = INT32_MAX;
    struct Place {
        std::string from, before, after;
        std::vector<std::int64_t> taken, refused;
    };
    std::vector<Place> numbers = {
        {"family = 8430", "family = ", "", {8430, 8434}, {8429, 8435}},
        {"version = 1\n", "version = ", "\n", {1, 65535}, {0, 65536}},
        {"number = 9301", "number = ", "", {9000, 9999}, {8999}},
        {"width = 300000", "width = ", "", {100, 3276700}, {99, 3276701}},
        {"length = 900000", "length = ", "", {100, 3276700}, {99, 3276701}},
        {"900000 }", "900000, type = ", " }", {25003, 25005, 25006, 25007}, {25002, 25004, 25008}},
        {"value = 6700", "value = ", "", {6701, 6730}, {6399, 6731, 6436}},
        {"number = 1, value", "number = ", ", value", {1, 32767}, {0, 15, 32768}},
        {"trays = [",
         "trays = [{ number = 9, name = \"T\", value = ",
         " }, ",
         {7100, 7199},
         {5000, 5001, 7099, 7147, 7200}},
        {"types = [",
         "types = [{ name = \"T\", value = ",
         " }, ",
         {5001, 6801, 6810, 6820, 6869, 9636, 65535},
         {5000, 6799, 6800, 6811, 6819, 6870, 9635, 65536}},
        {"papers = [", "unlisted_media_types = [6880, ", "]\npapers = [", {6870, 6899}, {6869, 6880, 6900}},
        {"papers = [", "pages_per_sheet = [4, ", "]\npapers = [", {1, 64}, {0, 4, 65}},
        {"x = 600", "x = ", "", {1, 32767}, {0, 32768}},
        {"y = 600", "y = ", "", {1, 32767}, {0, 32768}},
        {"resolutions = [", "resolutions = [{ x = 600, name = \"R\", y = ", " }, ", {601}, {600}},
        {"= 0x400", "= ", "", {0, INT64_MAX}, {-1}},
        {"1984 = ", "", " = ", {1, 65535}, {0, 65536}},
        {"422 = -5", "422 = ", "", {INT32_MIN, kMost}, {INT32_MIN - 1LL, kMost + 1}},
        {"8701", "", "", {1, kMost}, {0, kMost + 1}},
        {"5411], default = 5411", "5411], default = ", "", {5410, 5411}, {5409, 5412, 5001}},
        {"[5410, 5411]", "[5411, ", "]", {5001, 5410, 5419}, {5409, 5411, 5420}},
        {"minimum = 1,", "minimum = ", ",", {INT32_MIN, 1}, {2, INT32_MIN - 1LL}},
        {"maximum = 99", "maximum = ", "", {1, kMost}, {0, kMost + 1}},
        {"default = 1 }", "default = ", " }", {1, 99}, {0, 100}},
        {"43 = {", "78 = { longest = ", " }\n43 = {", {0, 0x100000}, {-1, 0x100001}},
        {"43 = {", "172 = { minimum = 100, default = 100, maximum = ", " }\n43 = {", {100, 3276700}, {99, 3276701}},
        {"418 =", "", " =", {1, 99999}, {0, 100000}},
    };
    const struct {
        const char* field;
        std::int64_t lowest, highest;
    } fields[] = {{"dmOrientation", 1, 2},   {"dmScale", 1, 1000},      {"dmCopies", 1, 32767},    {"dmColor", 1, 2},
                  {"dmDuplex", 1, 3},        {"dmTTOption", 1, 4},      {"dmCollate", 0, 1},       {"dmNup", 1, kMost},
                  {"dmICMMethod", 1, kMost}, {"dmICMIntent", 1, kMost}, {"dmDitherType", 1, kMost}};
    for (const auto& [field, lowest, highest] : fields)
        numbers.push_back({"[devmode]\n",
                           std::string("[devmode]\n") + field + " = ",
                           "\n",
                           {lowest, highest},
                           {lowest - 1, highest + 1}});
    const std::pair<const char*, std::vector<std::int64_t>> listed[] = {{"dmPrintQuality", {-32768, -1, 0, 600}},
                                                                        {"dmYResolution", {600}},
                                                                        {"dmDefaultSource", {1, 15}},
                                                                        {"dmMediaType", {1}}};
    for (const auto& [field, taken] : listed)
        numbers.push_back({"[devmode]\n", std::string("[devmode]\n") + field + " = ", "\n", taken, {-32769, 601, 2}});
    const TemporaryFolder folder;
    const auto error = [&](const std::string& from, const std::string& to) {
        return ErrorOf(folder.Write("bounds.toml", Replaced(from, to)));
    };
    for (const auto& [from, before, after, taken, refused] : numbers) {
        const auto errorWith = [&, from = from, before = before, after = after](std::int64_t number) {
            return error(from, std::string(before).append(std::to_string(number)).append(after));
        };
        for (const std::int64_t number : taken) EXPECT_EQ(errorWith(number), "no error") << before << number;
        for (const std::int64_t number : refused) EXPECT_NE(errorWith(number), "no error") << before << number;
    }

    const struct {
        const char *from, *before, *after;
        std::size_t longest;
    } texts[] = {{"\"Morvane Test\"", "\"", "\"", 63},
                 {"\"Large\"", "\"", "\"", 31},
                 {"\"Auto\"", "\"", "\"", 23},
                 {"\"Plain\"", "\"", "\"", 63},
                 {"\"600\"", "\"", "\"", 31},
                 {"{ size = \"ISOA4\"", "{ size = \"ISOA4\", name = \"", "\"", 63},
                 {"papers = [", "dependent_files = [\"", "\"]\npapers = [", 63}};
    for (const auto& [from, before, after, longest] : texts)
        for (const auto& [length, isTaken] : {std::pair{longest, true}, {longest + 1, false}})
            EXPECT_EQ(error(from, before + std::string(length, 'x') + after) == "no error", isTaken)
                << before << length;
}

TEST(ProductReader, FindsLongKeysWhateverStandsBeforeThem) {
    std::string key = "a";
    for (int part = 0; part < 100000; ++part) key += ".a";
    const TemporaryFolder folder;
    for (const char* before : {"", "t = \"\"\"\"\"\"\n", "t = \"\\\\\"\n", "t = \"\"\"x\"\"\"\"\nu = {b = 1, ",
                               "t = \"\\\"\"\n", "t = 'x\\'\n", "# it's\n[", "t = '''\n'x''' # \"\n"})
        EXPECT_NE(ErrorOf(folder.Write("deep.toml", before + key + " = 1")).find("keys of at most"), std::string::npos)
            << before;
}

TEST(ProductReader, LoadsTheProductsBesideThePrograms) {
    std::string names;
    for (const std::filesystem::path& file : FindProductFiles("products")) {
        names += file.stem().string() + " ";
        SCOPED_TRACE(names);
        const auto product = LoadProduct(file);
        EXPECT_TRUE(std::filesystem::exists(product->paths.at(15)));
        for (const DWORD setting : {422, 423, 424, 425})
            EXPECT_EQ(product->settings.at(setting).kind, ProductSetting::Kind::Integer);
        for (const DWORD text : {418, 10210, 10211, 10214, 41065, 41066, 41067, 41068, 41069, 41075, 10146, 264, 41033,
                                 40373, 10027, 10290, 10029, 41034, 41035})
            EXPECT_FALSE(product->strings.at(text).empty()) << text;
    }
    EXPECT_EQ(names, "office8430 press8434 script8432 ");
}

TEST(ProductReader, ParsesAgainOnlyWhenAFileHasChanged) {
    const TemporaryFolder folder;
    folder.Write("texts.toml", "418 = \"Copies\"\n264 = \"Automatic\"\n");
    const auto file = folder.Write("good.toml", Replaced("papers", "string_files = [\"texts.toml\"]\npapers"));
    const auto first = LoadProduct(file);
    EXPECT_EQ(LoadProduct(file), first);
    EXPECT_EQ(first->strings.at(264), "Automatic");
    EXPECT_EQ(first->strings.at(418), "Kopien \xC3\xA4") << "the product's own text wins";

    folder.Write("texts.toml", "264 = \"Automatically\"\n");
    EXPECT_EQ(LoadProduct(file)->strings.at(264), "Automatically");
    EXPECT_EQ(first->strings.at(264), "Automatic") << "a description in use does not change";

    folder.Write("good.toml", "model = ");
    EXPECT_NE(ErrorOf(file), "no error") << "a file that broke is not served from the cache";
}

TEST(ProductReader, KeepsABoundedNumberOfProducts) {
    const TemporaryFolder folder;
    const std::weak_ptr<const ProductDescription> first = LoadProduct(folder.Write("first.toml", kProduct));
    EXPECT_FALSE(first.expired());
    for (int index = 0; index < 40; ++index) LoadProduct(folder.Write(std::to_string(index) + ".toml", kProduct));
    EXPECT_TRUE(first.expired());
}
