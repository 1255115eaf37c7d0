// The table of the Print Schema's page sizes.
#include "pagesizes.h"

#include <algorithm>
#include <array>

namespace {

constexpr auto kAmerica = PageSizeFamily::NorthAmerica;
constexpr auto kIso = PageSizeFamily::Iso;
constexpr auto kJis = PageSizeFamily::Jis;
constexpr auto kJapan = PageSizeFamily::Japan;
constexpr auto kPrc = PageSizeFamily::Prc;
constexpr auto kOther = PageSizeFamily::Other;
constexpr DWORD kLetter = facts::value::kPageSizeLetter, kA4 = facts::value::kPageSizeA4;

// Names and sizes are those of the Print Schema's public keyword list. Value ids are stored in DEVMODEs and caches:
// a row keeps its id for ever, and a new row takes the next free one.
// clang-format off
constexpr auto kTable = std::to_array<PageSizeRow>({
    {"NorthAmerica4x6",                     101600,  152400,   0, 6400, kAmerica, "4x6 in"},
    {"NorthAmerica4x8",                     101600,  203200,   0, 6401, kAmerica, "4x8 in"},
    {"NorthAmerica5x7",                     127000,  177800,   0, 6402, kAmerica, "5x7 in"},
    {"NorthAmerica8x10",                    203200,  254000,   0, 6403, kAmerica, "8x10 in"},
    {"NorthAmerica9x11",                    228600,  279400,  44, 6404, kAmerica, "9x11 in"},
    {"NorthAmerica10x11",                   254000,  279400,  45, 6405, kAmerica, "10x11 in"},
    {"NorthAmerica10x12",                   254000,  304800,   0, 6406, kAmerica, "10x12 in"},
    {"NorthAmerica10x14",                   254000,  355600,  16, 6407, kAmerica, "10x14 in"},
    {"NorthAmerica11x17",                   279400,  431800,  17, 6408, kAmerica, "11x17 in"},
    {"NorthAmerica14x17",                   355600,  431800,   0, 6409, kAmerica, "14x17 in"},
    {"NorthAmericaArchitectureASheet",      228600,  304800,   0, 6410, kAmerica, "Architecture A Sheet"},
    {"NorthAmericaArchitectureBSheet",      304800,  457200,   0, 6411, kAmerica, "Architecture B Sheet"},
    {"NorthAmericaArchitectureCSheet",      457200,  609600,   0, 6412, kAmerica, "Architecture C Sheet"},
    {"NorthAmericaArchitectureDSheet",      609600,  914400,   0, 6413, kAmerica, "Architecture D Sheet"},
    {"NorthAmericaArchitectureESheet",      914400, 1219200,   0, 6414, kAmerica, "Architecture E Sheet"},
    {"NorthAmericaCSheet",                  431800,  558800,  24, 6415, kAmerica, "C Size Sheet"},
    {"NorthAmericaDSheet",                  558800,  863600,  25, 6416, kAmerica, "D Size Sheet"},
    {"NorthAmericaESheet",                  863600, 1117600,  26, 6417, kAmerica, "E Size Sheet"},
    {"NorthAmericaExecutive",               184150,  266700,   7, 6418, kAmerica, "Executive"},
    {"NorthAmericaGermanLegalFanfold",      215900,  330200,  41, 6419, kAmerica, "German Legal Fanfold"},
    {"NorthAmericaGermanStandardFanfold",   215900,  304800,  40, 6420, kAmerica, "German Standard Fanfold"},
    {"NorthAmericaLegal",                   215900,  355600,   5, 6421, kAmerica, "Legal"},
    {"NorthAmericaLegalExtra",              241300,  381000,  51, 6422, kAmerica, "Legal Extra"},
    {"NorthAmericaLetter",                  215900,  279400,   1, kLetter, kAmerica, "Letter"},
    {"NorthAmericaLetterExtra",             241300,  304800,  50, 6423, kAmerica, "Letter Extra"},
    {"NorthAmericaLetterPlus",              215900,  322326,  59, 6424, kAmerica, "Letter Plus"},
    {"NorthAmericaLetterRotated",           279400,  215900,  75, 6425, kAmerica, "Letter Rotated"},
    {"NorthAmericaMonarchEnvelope",          98425,  177800,  37, 6426, kAmerica, "Envelope Monarch"},
    {"NorthAmericaNote",                    215900,  279400,  18, 6427, kAmerica, "Note"},
    {"NorthAmericaNumber9Envelope",          98425,  225425,  19, 6428, kAmerica, "Envelope #9"},
    {"NorthAmericaNumber10Envelope",        104775,  241300,  20, 6429, kAmerica, "Envelope #10"},
    {"NorthAmericaNumber10EnvelopeRotated", 241300,  104775,   0, 6431, kAmerica, "Envelope #10 Rotated"},
    {"NorthAmericaNumber11Envelope",        114300,  263525,  21, 6432, kAmerica, "Envelope #11"},
    {"NorthAmericaNumber12Envelope",        120650,  279400,  22, 6433, kAmerica, "Envelope #12"},
    {"NorthAmericaNumber14Envelope",        127000,  292100,  23, 6434, kAmerica, "Envelope #14"},
    {"NorthAmericaPersonalEnvelope",         92075,  165100,  38, 6435, kAmerica, "Envelope Personal (6 3/4)"},
    {"NorthAmericaQuarto",                  215000,  275000,  15, 6437, kAmerica, "Quarto"},
    {"NorthAmericaStatement",               139700,  215900,   6, 6438, kAmerica, "Statement"},
    {"NorthAmericaSuperA",                  227000,  356000,  57, 6439, kAmerica, "Super A"},
    {"NorthAmericaSuperB",                  305000,  487000,  58, 6440, kAmerica, "Super B"},
    {"NorthAmericaTabloid",                 279400,  431800,   3, 6441, kAmerica, "Tabloid"},
    {"NorthAmericaTabloidExtra",            296926,  457200,  52, 6442, kAmerica, "Tabloid Extra"},
    {"ISOA0",                               841000, 1189000,   0, 6443, kIso,     "A0"},
    {"ISOA1",                               594000,  841000,   0, 6444, kIso,     "A1"},
    {"ISOA2",                               420000,  594000,  66, 6445, kIso,     "A2"},
    {"ISOA3",                               297000,  420000,   8, 6446, kIso,     "A3"},
    {"ISOA3Extra",                          322000,  445000,  63, 6447, kIso,     "A3 Extra"},
    {"ISOA3Rotated",                        420000,  297000,  76, 6448, kIso,     "A3 Rotated"},
    {"ISOA4",                               210000,  297000,   9, kA4, kIso,     "A4"},
    {"ISOA4Extra",                          235500,  322300,  53, 6449, kIso,     "A4 Extra"},
    {"ISOA4Rotated",                        297000,  210000,  77, 6450, kIso,     "A4 Rotated"},
    {"ISOA5",                               148000,  210000,  11, 6451, kIso,     "A5"},
    {"ISOA5Extra",                          174000,  235000,  64, 6452, kIso,     "A5 Extra"},
    {"ISOA5Rotated",                        210000,  148000,  78, 6453, kIso,     "A5 Rotated"},
    {"ISOA6",                               105000,  148000,  70, 6454, kIso,     "A6"},
    {"ISOA6Rotated",                        148000,  105000,  83, 6455, kIso,     "A6 Rotated"},
    {"ISOA7",                                74000,  105000,   0, 6456, kIso,     "A7"},
    {"ISOA8",                                52000,   74000,   0, 6457, kIso,     "A8"},
    {"ISOA9",                                37000,   52000,   0, 6458, kIso,     "A9"},
    {"ISOA10",                               26000,   37000,   0, 6459, kIso,     "A10"},
    {"ISOB0",                              1000000, 1414000,   0, 6460, kIso,     "B0 (ISO)"},
    {"ISOB1",                               707000, 1000000,   0, 6461, kIso,     "B1 (ISO)"},
    {"ISOB2",                               500000,  707000,   0, 6462, kIso,     "B2 (ISO)"},
    {"ISOB3",                               353000,  500000,   0, 6463, kIso,     "B3 (ISO)"},
    {"ISOB4",                               250000,  353000,  42, 6464, kIso,     "B4 (ISO)"},
    {"ISOB4Envelope",                       250000,  353000,  33, 6465, kIso,     "Envelope B4"},
    {"ISOB5Envelope",                       176000,  250000,  34, 6466, kIso,     "Envelope B5"},
    {"ISOB5Extra",                          201000,  276000,  65, 6467, kIso,     "B5 (ISO) Extra"},
    {"ISOB7",                                88000,  125000,   0, 6468, kIso,     "B7 (ISO)"},
    {"ISOB8",                                62000,   88000,   0, 6469, kIso,     "B8 (ISO)"},
    {"ISOB9",                                44000,   62000,   0, 6470, kIso,     "B9 (ISO)"},
    {"ISOB10",                               31000,   44000,   0, 6471, kIso,     "B10 (ISO)"},
    {"ISOC0",                               917000, 1297000,   0, 6472, kIso,     "C0"},
    {"ISOC1",                               648000,  917000,   0, 6473, kIso,     "C1"},
    {"ISOC2",                               458000,  648000,   0, 6474, kIso,     "C2"},
    {"ISOC3",                               324000,  458000,   0, 6475, kIso,     "C3"},
    {"ISOC3Envelope",                       324000,  458000,  29, 6476, kIso,     "Envelope C3"},
    {"ISOC4",                               229000,  324000,   0, 6477, kIso,     "C4"},
    {"ISOC4Envelope",                       229000,  324000,  30, 6478, kIso,     "Envelope C4"},
    {"ISOC5",                               162000,  229000,   0, 6479, kIso,     "C5"},
    {"ISOC5Envelope",                       162000,  229000,  28, 6480, kIso,     "Envelope C5"},
    {"ISOC6",                               114000,  162000,   0, 6481, kIso,     "C6"},
    {"ISOC6C5Envelope",                     114000,  229000,  32, 6482, kIso,     "Envelope C65"},
    {"ISOC6Envelope",                       114000,  162000,  31, 6483, kIso,     "Envelope C6"},
    {"ISOC7",                                81000,  114000,   0, 6484, kIso,     "C7"},
    {"ISOC8",                                57000,   81000,   0, 6485, kIso,     "C8"},
    {"ISOC9",                                40000,   57000,   0, 6486, kIso,     "C9"},
    {"ISOC10",                               28000,   40000,   0, 6487, kIso,     "C10"},
    {"ISODLEnvelope",                       110000,  220000,  27, 6488, kIso,     "Envelope DL"},
    {"ISODLEnvelopeRotated",                220000,  110000,   0, 6489, kIso,     "Envelope DL Rotated"},
    {"ISOSRA3",                             320000,  450000,   0, 6490, kIso,     "SRA3"},
    {"JISB0",                              1030000, 1456000,   0, 6491, kJis,     "B0 (JIS)"},
    {"JISB1",                               728000, 1030000,   0, 6492, kJis,     "B1 (JIS)"},
    {"JISB2",                               515000,  728000,   0, 6493, kJis,     "B2 (JIS)"},
    {"JISB3",                               364000,  515000,   0, 6494, kJis,     "B3 (JIS)"},
    {"JISB4",                               257000,  364000,  12, 6495, kJis,     "B4 (JIS)"},
    {"JISB4Rotated",                        364000,  257000,  79, 6496, kJis,     "B4 (JIS) Rotated"},
    {"JISB5",                               182000,  257000,  13, 6497, kJis,     "B5 (JIS)"},
    {"JISB5Rotated",                        257000,  182000,  80, 6498, kJis,     "B5 (JIS) Rotated"},
    {"JISB6",                               128000,  182000,  88, 6499, kJis,     "B6 (JIS)"},
    {"JISB6Rotated",                        182000,  128000,  89, 6500, kJis,     "B6 (JIS) Rotated"},
    {"JISB7",                                91000,  128000,   0, 6501, kJis,     "B7 (JIS)"},
    {"JISB8",                                64000,   91000,   0, 6502, kJis,     "B8 (JIS)"},
    {"JISB9",                                45000,   64000,   0, 6503, kJis,     "B9 (JIS)"},
    {"JISB10",                               32000,   45000,   0, 6504, kJis,     "B10 (JIS)"},
    {"Japan2LPhoto",                        127000,  178000,   0, 6505, kJapan,   "2L Photo"},
    {"JapanChou3Envelope",                  120000,  235000,  73, 6506, kJapan,   "Japanese Envelope Chou #3"},
    {"JapanChou3EnvelopeRotated",           235000,  120000,  86, 6507, kJapan,   "Japanese Envelope Chou #3 Rotated"},
    {"JapanChou4Envelope",                   90000,  205000,  74, 6508, kJapan,   "Japanese Envelope Chou #4"},
    {"JapanChou4EnvelopeRotated",           205000,   90000,  87, 6509, kJapan,   "Japanese Envelope Chou #4 Rotated"},
    {"JapanDoubleHagakiPostcard",           200000,  148000,  69, 6510, kJapan,   "Double Japanese Postcard"},
    {"JapanDoubleHagakiPostcardRotated",    148000,  200000,  82, 6511, kJapan,   "Double Japanese Postcard Rotated"},
    {"JapanHagakiPostcard",                 100000,  148000,  43, 6512, kJapan,   "Japanese Postcard"},
    {"JapanHagakiPostcardRotated",          148000,  100000,  81, 6513, kJapan,   "Japanese Postcard Rotated"},
    {"JapanKaku2Envelope",                  240000,  332000,  71, 6514, kJapan,   "Japanese Envelope Kaku #2"},
    {"JapanKaku2EnvelopeRotated",           332000,  240000,  84, 6515, kJapan,   "Japanese Envelope Kaku #2 Rotated"},
    {"JapanKaku3Envelope",                  216000,  277000,  72, 6516, kJapan,   "Japanese Envelope Kaku #3"},
    {"JapanKaku3EnvelopeRotated",           277000,  216000,  85, 6517, kJapan,   "Japanese Envelope Kaku #3 Rotated"},
    {"JapanLPhoto",                          89000,  127000,   0, 6518, kJapan,   "L Photo"},
    {"JapanQuadrupleHagakiPostcard",        200000,  296000,   0, 6519, kJapan,   "Quadruple Japanese Postcard"},
    {"JapanYou1Envelope",                   120000,  176000,   0, 6520, kJapan,   "Japanese Envelope You #1"},
    {"JapanYou2Envelope",                   114000,  162000,   0, 6521, kJapan,   "Japanese Envelope You #2"},
    {"JapanYou3Envelope",                    98000,  148000,   0, 6522, kJapan,   "Japanese Envelope You #3"},
    {"JapanYou4Envelope",                   105000,  235000,  91, 6523, kJapan,   "Japanese Envelope You #4"},
    {"JapanYou4EnvelopeRotated",            235000,  105000,  92, 6524, kJapan,   "Japanese Envelope You #4 Rotated"},
    {"JapanYou6Envelope",                    98000,  190000,   0, 6525, kJapan,   "Japanese Envelope You #6"},
    {"JapanYou6EnvelopeRotated",            190000,   98000,   0, 6526, kJapan,   "Japanese Envelope You #6 Rotated"},
    {"PRC1Envelope",                        102000,  165000,  96, 6527, kPrc,     "PRC Envelope #1"},
    {"PRC1EnvelopeRotated",                 165000,  102000, 109, 6528, kPrc,     "PRC Envelope #1 Rotated"},
    {"PRC2Envelope",                        102000,  176000,  97, 6529, kPrc,     "PRC Envelope #2"},
    {"PRC2EnvelopeRotated",                 176000,  102000, 110, 6530, kPrc,     "PRC Envelope #2 Rotated"},
    {"PRC3Envelope",                        125000,  176000,  98, 6531, kPrc,     "PRC Envelope #3"},
    {"PRC3EnvelopeRotated",                 176000,  125000, 111, 6532, kPrc,     "PRC Envelope #3 Rotated"},
    {"PRC4Envelope",                        110000,  208000,  99, 6533, kPrc,     "PRC Envelope #4"},
    {"PRC4EnvelopeRotated",                 208000,  110000, 112, 6534, kPrc,     "PRC Envelope #4 Rotated"},
    {"PRC5Envelope",                        110000,  220000, 100, 6535, kPrc,     "PRC Envelope #5"},
    {"PRC5EnvelopeRotated",                 220000,  110000, 113, 6536, kPrc,     "PRC Envelope #5 Rotated"},
    {"PRC6Envelope",                        120000,  230000, 101, 6537, kPrc,     "PRC Envelope #6"},
    {"PRC6EnvelopeRotated",                 230000,  120000, 114, 6538, kPrc,     "PRC Envelope #6 Rotated"},
    {"PRC7Envelope",                        160000,  230000, 102, 6539, kPrc,     "PRC Envelope #7"},
    {"PRC7EnvelopeRotated",                 230000,  160000, 115, 6540, kPrc,     "PRC Envelope #7 Rotated"},
    {"PRC8Envelope",                        120000,  309000, 103, 6541, kPrc,     "PRC Envelope #8"},
    {"PRC8EnvelopeRotated",                 309000,  120000, 116, 6542, kPrc,     "PRC Envelope #8 Rotated"},
    {"PRC9Envelope",                        229000,  324000, 104, 6543, kPrc,     "PRC Envelope #9"},
    {"PRC9EnvelopeRotated",                 324000,  229000, 117, 6544, kPrc,     "PRC Envelope #9 Rotated"},
    {"PRC10Envelope",                       324000,  458000, 105, 6545, kPrc,     "PRC Envelope #10"},
    {"PRC10EnvelopeRotated",                458000,  324000, 118, 6546, kPrc,     "PRC Envelope #10 Rotated"},
    {"PRC16K",                              146000,  215000,  93, 6547, kPrc,     "PRC 16K"},
    {"PRC16KRotated",                       215000,  146000, 106, 6548, kPrc,     "PRC 16K Rotated"},
    {"PRC32K",                               97000,  151000,  94, 6549, kPrc,     "PRC 32K"},
    {"PRC32KBig",                            97000,  151000,  95, 6550, kPrc,     "PRC 32K (Big)"},
    {"PRC32KRotated",                       151000,   97000, 107, 6551, kPrc,     "PRC 32K Rotated"},
    {"BusinessCard",                         55000,   91000,   0, 6552, kOther,   "Business Card"},
    {"CreditCard",                           54000,   86000,   0, 6553, kOther,   "Credit Card"},
    {"CustomMediaSize",                          0,       0,   0,    0, kOther,   "Custom Size"},
    {"OtherMetricA3Plus",                   329000,  483000,   0, 6554, kOther,   "A3 Plus"},
    {"OtherMetricA4Plus",                   210000,  330000,  60, 6555, kOther,   "A4 Plus"},
    {"OtherMetricFolio",                    215900,  330200,  14, 6556, kOther,   "Folio"},
    {"OtherMetricInviteEnvelope",           220000,  220000,  47, 6557, kOther,   "Envelope Invite"},
    {"OtherMetricItalianEnvelope",          110000,  230000,  36, 6558, kOther,   "Envelope Italian"},
    {"PSCustomMediaSize",                        0,       0,   0,    0, kOther,   "PostScript Custom Size"},
    {"Roll04Inch",                          101600,       0,   0, 6559, kOther,   "Roll 4 in"},
    {"Roll06Inch",                          152400,       0,   0, 6560, kOther,   "Roll 6 in"},
    {"Roll08Inch",                          203200,       0,   0, 6561, kOther,   "Roll 8 in"},
    {"Roll12Inch",                          304800,       0,   0, 6562, kOther,   "Roll 12 in"},
    {"Roll15Inch",                          381000,       0,   0, 6563, kOther,   "Roll 15 in"},
    {"Roll18Inch",                          457200,       0,   0, 6564, kOther,   "Roll 18 in"},
    {"Roll22Inch",                          558800,       0,   0, 6565, kOther,   "Roll 22 in"},
    {"Roll24Inch",                          609600,       0,   0, 6566, kOther,   "Roll 24 in"},
    {"Roll30Inch",                          762000,       0,   0, 6567, kOther,   "Roll 30 in"},
    {"Roll36Inch",                          914400,       0,   0, 6568, kOther,   "Roll 36 in"},
    {"Roll54Inch",                         1371600,       0,   0, 6569, kOther,   "Roll 54 in"},
});
// clang-format on

template <class Predicate>
const PageSizeRow* FindRow(Predicate matches) noexcept {
    const auto row = std::find_if(kTable.begin(), kTable.end(), matches);
    return row == kTable.end() ? nullptr : &*row;
}

}  // namespace

std::span<const PageSizeRow> GetPageSizeTable() noexcept { return kTable; }

const PageSizeRow* FindPageSizeByName(std::string_view name) noexcept {
    return FindRow([&](const PageSizeRow& row) { return row.name == name; });
}

const PageSizeRow* FindPageSizeByPaperNumber(WORD paperNumber) noexcept {
    if (paperNumber == 0) return nullptr;
    return FindRow([&](const PageSizeRow& row) { return row.paperNumber == paperNumber; });
}

const PageSizeRow* FindPageSizeByValue(DWORD value) noexcept {
    if (value == 0) return nullptr;
    return FindRow([&](const PageSizeRow& row) { return row.value == value; });
}
