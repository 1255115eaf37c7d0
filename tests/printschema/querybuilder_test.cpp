// The query builder's texts and refusals, and the throwing scheme that all document classes share.
#include <ptpcprovider/printticketquerybuilder.h>
#include <throwscheme.h>

#include <support/documents.h>

#include <functional>

namespace {

using Builder = PrintTicketQueryBuilder;

TEST(QueryBuilder, ComposesItsSteps) {
    const WCHAR* const psk = W("psk:");
    const struct {
        const WCHAR* start;
        std::function<void(Builder&)> steps;
        const char* query;
    } cases[] = {
        {W(""), [&](Builder& b) { b.AddFeature(nullptr, W("100%s")); }, "//p:Feature[@name = \"100%s\"]"},
        {W(""), [&](Builder& b) { b.AddProperty(psk, W("F")), b.AddScoredProperty(psk, W("S")); },
         "//p:Property[@name = \"psk:F\"]//p:ScoredProperty[@name = \"psk:S\"]"},
        {W(""), [&](Builder& b) { b.AddFeature(psk, W("F")), b.AddOption(psk); },
         "//p:Feature[@name = \"psk:F\"]/p:Option | "
         "//p:Feature[@name = \"psk:F\"]/p:ScoredProperty[@name = \"psk:OptionName\"]/p:Value"},
        {W("."), [&](Builder& b) { b.AddChildPropertyValue(psk, W("P")); }, "./p:Property[@name = \"psk:P\"]/p:Value"},
    };
    for (const auto& test : cases) {
        Builder builder(W("p:"), test.start);
        test.steps(builder);
        Bstr query(W("old"));
        EXPECT_OUTCOME("S_OK", builder.GetQuery(&query));
        EXPECT_EQ(Utf8(query), test.query);
    }
    Builder empty(W(""));
    Builder usual(W("psf:"));
    EXPECT_OUTCOME("throws E_POINTER", usual.GetQuery(nullptr));
    EXPECT_OUTCOME("throws E_INVALIDARG", (usual.AddFeature(psk, W("")), S_OK));
    EXPECT_OUTCOME("throws E_FAIL", (empty.AddFeature(psk, W("")), S_OK));
}

TEST(ThrowScheme, AsksTheDebugHookThenThrowsWithPlaceAndContexts) {
    ExceptionTrace trace;
    const auto before = MorvaneException::SetDebugHook([&](const ExceptionTrace& asked) {
        trace = asked;
        return false;
    });
    const ExecutionContextLifetime context(BasicExecutionContext(7, W("printing"), W("here")));
    try {
        PrintTicketQueryBuilder(W("")).AddValue();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const MorvaneComException& exception) {
        EXPECT_TRUE(exception.GetMessageText().IsEmpty());
        EXPECT_EQ(exception.GetSourceFile().ToUtf8(), "printticketquerybuilder");
        EXPECT_EQ(exception.GetMethodName().ToUtf8(), "PrintTicketQueryBuilder::AddValue");
        EXPECT_EQ(exception.GetLine(), trace.line);
        EXPECT_EQ(exception.GetContexts().GetContexts().size(), 1u);
        EXPECT_EQ(exception.GetMethodName(), trace.methodName);
        EXPECT_EQ(exception.GetSourceFile(), trace.sourceFile);
    }
    EXPECT_EQ(trace.className.ToUtf8(), "MorvaneComException");
    EXPECT_EQ(trace.trace.ToUtf8(), "*Throwing* MorvaneComException: ");
    EXPECT_EQ(trace.categories, 0u);
    MorvaneException::SetDebugHook(before);
}

}  // namespace
