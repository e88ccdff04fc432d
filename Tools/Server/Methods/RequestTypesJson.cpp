#include "Tools/Server/Methods/RequestTypesJson.h"

#include "QuenFoundation/QuenSourceControlPlugIn.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <algorithm>
#include <utility>

namespace quen::tools::server {

namespace {

/// Adds the names of inputs, each once.
void addInputs(OrderedJson& json, const RequestInputs& inputs) {
    for (const RequestInput input : inputs) {
        const OrderedJson name = nameOfRequestInput(input);
        if (std::find(json.begin(), json.end(), name) == json.end()) {
            json.push_back(name);
        }
    }
}

OrderedJson typeJson(const RequestFacts& facts) {
    OrderedJson required = OrderedJson::array();
    addInputs(required, facts.checked);
    addInputs(required, facts.alsoRequired);
    OrderedJson optional = OrderedJson::array();
    addInputs(optional, facts.optional);
    OrderedJson resultKeys = OrderedJson::array();
    for (const RequestResultKey& key : facts.resultKeys) {
        resultKeys.push_back(toJson(*key.key));
    }
    return {{"code", facts.type},
            {"name", facts.name},
            {"operation", facts.operation},
            {"required", std::move(required)},
            {"optional", std::move(optional)},
            {"resultKeys", std::move(resultKeys)}};
}

} // namespace

OrderedJson descriptionJson() {
    OrderedJson types = OrderedJson::array();
    for (std::int32_t type = 0; type < RequestTypeEnd; ++type) {
        const RequestFacts* const facts = requestFactsOf(type);
        if (facts != nullptr && facts->isServed()) {
            types.push_back(typeJson(*facts));
        }
    }
    return {{"contractVersion", QuenSourceControlContractVersion},
            {"requestTypes", std::move(types)}};
}

OrderedJson requestTypeNames() {
    OrderedJson names = OrderedJson::array();
    const OrderedJson description = descriptionJson();
    for (const OrderedJson& type : description["requestTypes"]) {
        names.push_back(type["name"]);
    }
    return names;
}

} // namespace quen::tools::server
