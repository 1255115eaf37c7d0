// A JSON object of texts, as a line of a file holds it.
#include "jsonobject.h"

#include <nlohmann/json.hpp>

#include <algorithm>

#include "hosterror.h"

namespace {

using Json = nlohmann::json;

// Takes the events of one flat object, so that nothing is lost of a key that is there twice and nothing grows with
// depth.
class TextsReader {
public:
    using Texts = std::vector<std::pair<std::string, std::string>>;

    Texts texts;
    std::string fault;

    bool start_object(std::size_t) { return depth_++ == 0 || Fail("a value is no text"); }
    bool end_object() { return true; }
    bool key(Json::string_t& name) {
        if (std::any_of(texts.begin(), texts.end(), [&](const auto& text) { return text.first == name; }))
            return Fail("the key '" + name + "' is there twice");
        texts.emplace_back(name, std::string());
        return true;
    }
    bool string(Json::string_t& text) {
        if (depth_ == 0) return Fail(kNoObject);
        texts.back().second = text;
        return true;
    }
    bool start_array(std::size_t) { return FailValue(); }
    bool end_array() { return true; }
    bool null() { return FailValue(); }
    bool boolean(bool) { return FailValue(); }
    bool number_integer(Json::number_integer_t) { return FailValue(); }
    bool number_unsigned(Json::number_unsigned_t) { return FailValue(); }
    bool number_float(Json::number_float_t, const Json::string_t&) { return FailValue(); }
    bool binary(Json::binary_t&) { return FailValue(); }
    bool parse_error(std::size_t position, const std::string&, const Json::exception&) {
        return Fail("it is no JSON at its character " + std::to_string(position));
    }

private:
    static constexpr const char* kNoObject = "it is no JSON object";

    bool Fail(const std::string& reason) {
        fault = reason;
        return false;
    }
    bool FailValue() { return Fail(depth_ == 0 ? kNoObject : "the value of '" + texts.back().first + "' is no text"); }

    int depth_ = 0;
};

}  // namespace

std::vector<std::pair<std::string, std::string>> ReadJsonTexts(std::string_view json) {
    TextsReader reader;
    if (!Json::sax_parse(json, &reader) || !reader.fault.empty()) throw InputError(reader.fault);
    return std::move(reader.texts);
}
