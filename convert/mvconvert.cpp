// libmvconvert: the C functions over Converters. No exception leaves one of them.
#include "mvconvert.h"

#include <kitversion.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>
#include <subsystem/operationreports.h>
#include <subsystem/productfiles.h>
#include "openproduct.h"

struct mvconvert_product : OpenProduct {
    using OpenProduct::OpenProduct;
};

namespace {

// A caller passed NULL for this argument.
struct MissingArgument {
    const char* name;
};

template <class Argument>
void Require(const Argument* argument, const char* name) {
    if (!argument) throw MissingArgument{name};
}

// The input that the caller passed under that name.
std::string_view View(const void* bytes, std::size_t size, const char* name) {
    Require(bytes, name);
    if (size > kMaximumInputBytes) throw InputError(std::string("'") + name + "' is too large to be what it should be");
    return {static_cast<const char*>(bytes), size};
}

// The same where NULL stands for nothing: nothing has no size.
bool IsGiven(const void* bytes, std::size_t size, const char* name) {
    if (size != 0) Require(bytes, name);
    return bytes != nullptr;
}

DevmodeBuffer ReadDevmode(const void* bytes, std::size_t size, const char* name) {
    return ReadDevmodeBytes(View(bytes, size, name), name, std::string());
}

PrintSession::Document ReadTicket(const void* bytes, std::size_t size) {
    return ReadTicketBytes(View(bytes, size, "ticket"), "ticket");
}

// A copy that mvconvert_free frees, with a NUL behind it.
char* CopyForCaller(std::string_view text) {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) throw std::bad_alloc();
    *std::copy(text.begin(), text.end(), copy) = '\0';
    return copy;
}

std::string JoinLines(const std::vector<std::string>& lines, std::string_view before = {}) {
    std::string text;
    for (const std::string& line : lines) {
        text += before;
        // Values come from documents, and may have lines of their own.
        std::replace_copy(line.begin(), line.end(), std::back_inserter(text), '\n', ' ');
        text += '\n';
    }
    return text;
}

void Hand(const Converted& converted, mvconvert_result& result) {
    result.data = CopyForCaller(converted.bytes);
    result.size = converted.bytes.size();
    if (!converted.losses.empty()) result.text = CopyForCaller(JoinLines(converted.losses));
}

struct Failure {
    int status;
    std::string sentence;
    HRESULT result = S_OK;
};

// Called while the exception is handled.
Failure DescribeFailure() {
    try {
        throw;
    } catch (const MissingArgument& argument) {
        return {MVCONVERT_BAD_ARGUMENT, std::string("the argument '") + argument.name + "' is NULL"};
    } catch (const NotFoundError& error) {
        return {MVCONVERT_NO_PRODUCT, error.what()};
    } catch (const InputError& error) {
        return {MVCONVERT_BAD_INPUT, error.what()};
    } catch (const ProductError& error) {
        return {MVCONVERT_BAD_INPUT, std::string("a product file is bad: ") + error.what()};
    } catch (const OperationError& error) {
        return {error.GetResult() == E_OUTOFMEMORY ? MVCONVERT_NO_MEMORY : MVCONVERT_FAILED, error.what(),
                error.GetResult()};
    } catch (const std::bad_alloc&) {
        return {MVCONVERT_NO_MEMORY, "there is not enough memory", E_OUTOFMEMORY};
    } catch (const MorvaneComException& exception) {
        return {MVCONVERT_FAILED, DescribeException(exception), exception.GetHresult()};
    } catch (const MorvaneException& exception) {
        return {MVCONVERT_FAILED, DescribeException(exception), E_FAIL};
    } catch (const std::exception& exception) {
        return {MVCONVERT_FAILED, exception.what(), E_FAIL};
    } catch (...) {
        return {MVCONVERT_FAILED, "the component threw what it never should", E_FAIL};
    }
}

int HandFailure(const ReportList& reports, mvconvert_result& result) noexcept {
    mvconvert_free(&result);
    try {
        const Failure failure = DescribeFailure();
        result.hresult = failure.result;
        result.text = CopyForCaller(JoinLines({failure.sentence}) + JoinLines(reports.Describe(), "  reported: "));
        return failure.status;
    } catch (...) {
        result.hresult = E_OUTOFMEMORY;
        return MVCONVERT_NO_MEMORY;
    }
}

// Runs what one of the functions does; the exceptions that it throws become the result.
template <class Operation>
int Answer(mvconvert_result* result, Operation operation) noexcept {
    if (!result) return MVCONVERT_BAD_ARGUMENT;
    *result = {};
    const ThreadReports reports;
    try {
        operation();
        return MVCONVERT_OK;
    } catch (...) {
        return HandFailure(reports, *result);
    }
}

Converters& GetConverters(mvconvert_product* product) {
    Require(product, "product");
    return product->GetConverters();
}

}  // namespace

extern "C" {

int mvconvert_open(const char* product, mvconvert_product** opened, mvconvert_result* result) {
    if (opened) *opened = nullptr;
    return Answer(result, [&] {
        Require(product, "product");
        Require(opened, "opened");
        *opened = new mvconvert_product(FindProductFile(product));
    });
}

int mvconvert_devmode_to_ticket(mvconvert_product* product, const void* devmode, size_t size,
                                mvconvert_result* result) {
    return Answer(result, [&] {
        Converters& converters = GetConverters(product);
        const DevmodeBuffer input = ReadDevmode(devmode, size, "devmode");
        Hand(converters.Use([&](Converter& converter) { return converter.ToTicket(input); }), *result);
    });
}

int mvconvert_ticket_to_devmode(mvconvert_product* product, const void* ticket, size_t ticket_size, const void* base,
                                size_t base_size, mvconvert_result* result) {
    return Answer(result, [&] {
        Converters& converters = GetConverters(product);
        const PrintSession::Document input = ReadTicket(ticket, ticket_size);
        std::optional<DevmodeBuffer> given;
        if (IsGiven(base, base_size, "base")) given = ReadDevmode(base, base_size, "base");
        Hand(converters.Use([&](Converter& converter) {
            return converter.ToDevmode(input.Get(), given ? *given : converter.MakeDefaultDevmode());
        }),
             *result);
    });
}

int mvconvert_capabilities(mvconvert_product* product, const void* ticket, size_t ticket_size,
                           mvconvert_result* result) {
    return Answer(result, [&] {
        Converters& converters = GetConverters(product);
        PrintSession::Document input;
        if (IsGiven(ticket, ticket_size, "ticket")) input = ReadTicket(ticket, ticket_size);
        Hand(converters.Use([&](Converter& converter) { return converter.ToCapabilities(input.Get()); }), *result);
    });
}

int mvconvert_default_devmode(mvconvert_product* product, mvconvert_result* result) {
    return Answer(result, [&] {
        Hand(GetConverters(product).Use([](Converter& converter) {
            return Converted{std::string(converter.MakeDefaultDevmode().GetBytesView()), {}};
        }),
             *result);
    });
}

void mvconvert_free(mvconvert_result* result) {
    if (!result) return;
    std::free(result->data);
    std::free(result->text);
    *result = {};
}

void mvconvert_close(mvconvert_product* product) { delete product; }

const char* mvconvert_version(void) { return MV_KIT_VERSION; }
}
