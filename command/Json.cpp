#include "command/Json.h"

#include <nlohmann/json.hpp>

namespace Command {
namespace {

std::string Base64(std::string_view bytes) {
    constexpr char const* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::string_view const group = bytes.substr(i, 3);
        unsigned int bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= group.size() ? digits[bits >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

}  // namespace

std::string JsonOfText(std::string_view text) {
    try {
        return nlohmann::json(text).dump();
    } catch (nlohmann::json::type_error const&) {  // it is not UTF-8
        return "{\"base64\":\"" + Base64(text) + "\"}";
    }
}

std::string JsonOfValue(Evaluator::Result const& value) {
    using Evaluator::ValueKind;
    if (value.Kind() == ValueKind::integer || value.Kind() == ValueKind::boolean) return value.Text();
    if (value.Kind() != ValueKind::tuple) return JsonOfText(value.Text());
    std::string fields;
    for (Evaluator::Result const& field : value.Fields())
        fields += (fields.empty() ? "" : ",") + JsonOfValue(field);
    return '[' + fields + ']';
}

std::string JsonMembersOf(Evaluator::Problem const& problem, std::string_view kind) {
    bool const hasPlace = problem.kind != Evaluator::ProblemKind::library;
    std::string members = "\"kind\":" + JsonOfText(kind);
    members += ",\"message\":" + JsonOfText(problem.message);
    members += ",\"hint\":" + (problem.hint.empty() ? "null" : JsonOfText(problem.hint));
    members += ",\"begin\":" + (hasPlace ? std::to_string(problem.range.begin) : "null");
    members += ",\"end\":" + (hasPlace ? std::to_string(problem.range.end) : "null");
    return members;
}

std::string JsonOfRegistration(Evaluator::RegistrationInfo const& registration) {
    nlohmann::ordered_json json;
    auto put = [&](char const* key, std::string const& text) {
        if (!text.empty()) json[key] = text;
    };
    put("library", registration.library);
    put("kind", registration.kind);
    put("singular", registration.singular);
    put("plural", registration.plural);
    put("index", registration.index);
    put("object", registration.object);
    put("result", registration.result);
    put("base", registration.base);
    if (registration.operatorCode >= 0) json["operator"] = registration.operatorCode;
    put("left", registration.left);
    put("right", registration.right);
    if (registration.size) json["size"] = *registration.size;
    if (registration.stateSize) json["stateSize"] = *registration.stateSize;
    if (registration.fingerprint) json["fingerprint"] = *registration.fingerprint;
    if (registration.dependsOnlyOnParameters)
        json["dependsOnlyOnParameters"] = *registration.dependsOnlyOnParameters;
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace Command
