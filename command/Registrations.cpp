#include "command/Registrations.h"

#include <nlohmann/json.hpp>

namespace Command {

std::string AsJson(Evaluator::RegistrationInfo const& registration) {
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
