// The documents of --json.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/TextFile.h"

// The document that stands in `text`; the test fails unless it conforms to the schema of the documents. Throws
// nlohmann::json::exception where there is no JSON.
inline nlohmann::ordered_json conformingDocument(const std::string& text)
{
    const JsonSchema schema(nlohmann::json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
    for (const std::string& violation : schema.violations(nlohmann::json::parse(text))) {
        ADD_FAILURE() << violation << "\n" << text;
    }
    return nlohmann::ordered_json::parse(text);
}
