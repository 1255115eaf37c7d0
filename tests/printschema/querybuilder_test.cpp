// The query builder's texts and refusals, and the throwing scheme that all document classes share.
#include <ptpcprovider/printticketquerybuilder.h>
#include <throwscheme.h>

#include "printschema/documents.h"

#include <functional>

namespace {

using Builder = PrintTicketQueryBuilder;

std::string QueryOf(const Builder& builder) {
    Bstr query;
    builder.GetQuery(&query);
    return Utf8(query);
}

TEST(QueryBuilder, ComposesItsSteps) {
    struct Case {
        const WCHAR* start;
        std::function<void(Builder&)> steps;
        const char* query;
    };
    const WCHAR* const psk = W("psk:");
    const WCHAR* const whole = W("");
    const Case cases[] = {
        {whole, [&](Builder& b) { b.AddFeature(psk, W("F")); }, "//p:Feature[@name = \"psk:F\"]"},
        {whole, [&](Builder& b) { b.AddFeature(nullptr, W("100%s")); }, "//p:Feature[@name = \"100%s\"]"},
        {whole, [&](Builder& b) { b.AddProperty(psk, W("P")); }, "//p:Property[@name = \"psk:P\"]"},
        {whole, [&](Builder& b) { b.AddParameterDef(W(""), W("D")); }, "//p:ParameterDef[@name = \"D\"]"},
        {whole, [&](Builder& b) { b.AddParameterInit(psk, W("I")), b.AddValue(); },
         "//p:ParameterInit[@name = \"psk:I\"]/p:Value"},
        {whole, [&](Builder& b) { b.AddFeature(psk, W("F")), b.AddScoredProperty(psk, W("S")); },
         "//p:Feature[@name = \"psk:F\"]//p:ScoredProperty[@name = \"psk:S\"]"},
        {whole, [&](Builder& b) { b.AddFeature(psk, W("F")), b.AddOption(psk); },
         "//p:Feature[@name = \"psk:F\"]/p:Option | "
         "//p:Feature[@name = \"psk:F\"]/p:ScoredProperty[@name = \"psk:OptionName\"]/p:Value"},
        {W("."), [&](Builder& b) { b.AddChildPropertyValue(psk, W("P")); }, "./p:Property[@name = \"psk:P\"]/p:Value"},
        {W("."), [&](Builder& b) { b.AddChildOptionName(psk, W("O")); }, "./p:Option[@name = \"psk:O\"]"},
    };
    for (const Case& test : cases) {
        Builder builder(W("p:"), test.start);
        test.steps(builder);
        EXPECT_EQ(QueryOf(builder), test.query);
        EXPECT_EQ(QueryOf(builder), test.query) << "the second time";
    }
}

TEST(QueryBuilder, RefusesWhatMakesNoQuery) {
    Builder empty(W(""));
    Builder usual(W("psf:"));
    Bstr query(W("old"));
    EXPECT_OUTCOME("S_OK", empty.GetQuery(&query));
    EXPECT_TRUE(query.IsEmpty());
    EXPECT_OUTCOME("throws E_POINTER", usual.GetQuery(nullptr));
    EXPECT_OUTCOME("throws E_INVALIDARG", (usual.AddFeature(W("psk:"), W("")), S_OK));
    EXPECT_OUTCOME("throws E_FAIL", (empty.AddFeature(W("psk:"), W("F")), S_OK));
    EXPECT_OUTCOME("throws E_FAIL", (empty.AddValue(), S_OK));
    EXPECT_OUTCOME("throws E_FAIL", (empty.AddOption(W("psk:")), S_OK));
    EXPECT_EQ(QueryOf(usual), "") << "a refused step leaves the query as it was";
}

TEST(ThrowScheme, AsksTheDebugHookThenThrowsWithPlaceAndContexts) {
    ExceptionTrace trace;
    const auto before = MorvaneException::SetDebugHook([&](const ExceptionTrace& asked) {
        trace = asked;
        return false;
    });
    const ExecutionContextLifetime context(BasicExecutionContext(7, W("printing"), W("here")));
    const LONG line = __LINE__ + 2;
    try {
        ThrowComException(W("Class::Method"), E_PENDING, W("unit"));
    } catch (const MorvaneComException& exception) {
        EXPECT_EQ(Name(exception.GetHresult()), "0x8000000A");
        EXPECT_TRUE(exception.GetMessageText().IsEmpty());
        EXPECT_EQ(exception.GetSourceFile().ToUtf8() + " " + exception.GetMethodName().ToUtf8(), "unit Class::Method");
        EXPECT_EQ(exception.GetLine(), line);
        EXPECT_EQ(exception.GetContexts().GetContexts().size(), 1u);
    }
    EXPECT_EQ(trace.className.ToUtf8(), "MorvaneComException");
    EXPECT_EQ(trace.trace.ToUtf8(), "*Throwing* MorvaneComException: ");
    EXPECT_EQ(trace.sourceFile.ToUtf8() + " " + trace.methodName.ToUtf8(), "unit Class::Method");
    EXPECT_EQ(trace.line, line);
    EXPECT_EQ(trace.categories, 0u);

    EXPECT_THROW(ThrowException<ExceptionInvalidPrinterHandle>(W("A::B"), W("unit")), ExceptionInvalidPrinterHandle);
    EXPECT_EQ(trace.trace.ToUtf8(), "*Throwing* ExceptionInvalidPrinterHandle: ");
    MorvaneException::SetDebugHook(before);
}

}  // namespace
