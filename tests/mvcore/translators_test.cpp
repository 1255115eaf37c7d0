// Settings between the model and attribute lists, and as job ticket text.
#include "testmodel.h"

#include <gtest/gtest.h>

namespace {

using List = AttributeBytesRawList;

AttributeBytesOptionValue Option(DWORD value) { return {AttributeBytesValueId(value), value != 5001}; }

List ListOf(DWORD feature, const AttributeBytesValue& value) {
    List list;
    list.Append(AttributeBytesFeatureId(feature), value);
    return list;
}

AttributeBytesListValue Nested(DWORD feature, const AttributeBytesValue& value) { return {1, ListOf(feature, value)}; }

// 571 is a number of the user's preferences.
class TranslatorsTest : public testing::Test {
protected:
    AttributeBytesListTranslator GetTranslator(TestModel& model) {
        AttributeBytesListTranslator translator;
        model.GetServices().GetAttributeBytesListTranslator(translator, 214, 401, 301);
        return translator;
    }
    List Export() {
        List list;
        GetTranslator(model_).ExportSettings(list, 1);
        return list;
    }
    std::string GetTicket() {
        ByteBuffer buffer;
        buffer.appendAscii(W("before\n"));
        model_.GetManager().GetMvjtTranslator(216)->ExportToBuffer(buffer, false);
        return std::string(reinterpret_cast<const char*>(buffer.getLpbyte()), buffer.getDword());
    }

    TestStore store_;
    TestSource source_{[](IntegrationServices& services) {
        services.DeclareFeaturesPresent(FeatureId(2), {FeatureId(571), FeatureId(95), FeatureId(144)});
        services.DeclareFeaturesOfUser({FeatureId(571)});
        services.AddOptionValues(FeatureId(144), {ValueId(6254), ValueId(6275)}, 1);
    }};
    TestModel model_{{&source_}};
};

TEST_F(TranslatorsTest, WhatIsImportedIsExported) {
    List paper = ListOf(172, AttributeBytesIntegerValue(200000));
    paper.Append(AttributeBytesFeatureId(210), Nested(175, Option(6801)));
    paper.Append(AttributeBytesFeatureId(168), Option(6436));
    List list = ListOf(43, AttributeBytesIntegerValue(3));
    list.Append(AttributeBytesFeatureId(46), Option(5421));
    list.Append(AttributeBytesFeatureId(286), AttributeBytesBooleanValue(false));
    list.Append(AttributeBytesFeatureId(477), AttributeBytesListValue(1, paper));
    list.Append(AttributeBytesFeatureId(94), AttributeBytesIntegerValue(2400 << 16 | 1200));
    list.Append(AttributeBytesFeatureId(78), AttributeBytesStringValue(W("Title")));
    TestObserver observer;
    for (const auto& path : {std::vector<DWORD>{46}, {43}, {175}})
        observer.Register(model_.GetServices(), DataModelIds::kCurrentSettings, Id(path));
    EXPECT_TRUE(GetTranslator(model_).ImportSettings(list, 1));
    EXPECT_EQ(observer.told.size(), 1u) << "one bundle";
    EXPECT_EQ(model_.GetOption(FeatureId(175)), 6801u);
    AttributeBytesIndexedList want, got;
    want.ImportFromRawList(list);
    got.ImportFromRawList(Export());
    EXPECT_EQ(got.GetDumpText(true).ToUtf8(), want.GetDumpText(true).ToUtf8());

    EXPECT_TRUE(GetTranslator(model_).ImportSettings(ListOf(46, Option(5422)), 0));
    EXPECT_EQ(Export(), ListOf(46, Option(5422))) << "mode 0 starts from the defaults";
}

TEST_F(TranslatorsTest, WhatDoesNotFitIsPassedOver) {
    const std::pair<const char*, List> cases[] = {
        {"unknown feature", ListOf(9999, AttributeBytesIntegerValue(1))},
        {"value not offered", ListOf(46, Option(5429))},
        {"another kind", ListOf(43, AttributeBytesBooleanValue(true))},
        {"another kind of resolution", ListOf(94, AttributeBytesBooleanValue(true))},
        {"another kind of text", ListOf(78, AttributeBytesIntegerValue(1))},
        {"another kind of option", ListOf(46, AttributeBytesIntegerValue(5421))},
        {"number for a list", ListOf(477, AttributeBytesIntegerValue(2))},
        {"inside a list", ListOf(477, Nested(210, Nested(175, Option(6899))))},
        {"unknown name", ListOf(175, AttributeBytesOptionValue(AttributeBytesNewValueId(W("No such stock")), true))},
        {"resolution not offered", ListOf(94, AttributeBytesIntegerValue(-1))},
        {"row beyond the trays", ListOf(192, AttributeBytesIntegerValue(1))},
    };
    for (auto [what, list] : cases) {
        list.Append(AttributeBytesFeatureId(45), Option(5411));
        EXPECT_FALSE(GetTranslator(model_).ImportSettings(list, 0)) << what;
        EXPECT_EQ(Export(), ListOf(45, Option(5411))) << what;
    }
    List twice = ListOf(46, Option(5421));
    twice.Append(AttributeBytesFeatureId(46), Option(5422));
    GetTranslator(model_).ImportSettings(twice, 0);
    EXPECT_EQ(Export(), ListOf(46, Option(5421))) << "the first one counts";
}

TEST_F(TranslatorsTest, RowsUserValuesAndUserSettings) {
    List list;
    for (const DWORD size : {6430u, 6436u}) list.Append(AttributeBytesFeatureId(192), Nested(168, Option(size)));
    list.Append(AttributeBytesFeatureId(477),
                Nested(210, Nested(175, AttributeBytesOptionValue(AttributeBytesNewValueId(W("House Stock")), true))));
    list.Append(AttributeBytesFeatureId(571), AttributeBytesIntegerValue(9));
    EXPECT_TRUE(GetTranslator(model_).ImportSettings(list, 1));
    EXPECT_EQ(model_.GetInteger(571), 9);
    TestModel other({&source_});
    List exported = Export();
    EXPECT_NE(std::find(exported.GetItems().begin(), exported.GetItems().end(), list.GetItems()[2]),
              exported.GetItems().end())
        << "a value of the product's own goes by its name";
    EXPECT_TRUE(GetTranslator(other).ImportSettings(exported, 1));
    EXPECT_EQ(other.GetInteger(571), -1) << "the user's own settings do not travel with documents";
    for (TestModel* model : {&model_, &other}) {
        EXPECT_EQ(model->GetOption(FeatureId(175)), 9636u);
        EXPECT_EQ(model->GetTray(1).GetOptionFeature(FeatureId(168)).GetValue().GetValueEnum(), 6436u);
    }
}

TEST_F(TranslatorsTest, JobTicketTextHasALineForEachSetting) {
    EXPECT_EQ(GetTicket(), "before\n%MVNbegin: 001.0300\n");
    model_.GetServices().GetStringFeature(FeatureId(78)).SetValue(CXString(W("Two\nlines\x85")));
    model_.GetServices().GetIntegerFeature(FeatureId(43)).SetValue(12);
    model_.GetServices().GetDimensionFeature(FeatureId(95)).SetValue(Dimension(-12.6, Dimension::Millimetres));
    model_.SetOption(FeatureId(144), 6254);
    model_.SetOption(FeatureId(46), 5001);
    EXPECT_EQ(GetTicket(),
              "before\n%MVNbegin: 001.0300\n%MVNtitle: Two lines \n%MVNcopyCount: 12\n"
              "%MVNedgeStitching: SinglePortrait\n%MVNxImageShift: -13\n");
}

}  // namespace
