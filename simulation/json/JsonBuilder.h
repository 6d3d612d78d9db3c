// Building documents of compact nodes from what is read.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "simulation/json/JsonArena.h"
#include "simulation/json/JsonReader.h"
#include "simulation/json/JsonStack.h"

namespace TrellanSimulation {

// In which order objects have their members. Of those with the same key the last one counts: `written` puts it in the
// place of the first one.
enum class MemberOrder { byKey, written };

class JsonBuilder final : public JsonEvents {
public:
    explicit JsonBuilder(MemberOrder order) : order(order) {}
    ~JsonBuilder();
    JsonBuilder(const JsonBuilder&) = delete;
    JsonBuilder& operator=(const JsonBuilder&) = delete;

    // The whole document's value, after its last event; the caller has a reference to it (releaseValue).
    JsonBits take();

    void begin() override;
    void null() override { values.push(bitsOf(JsonTag::null)); }
    void boolean(bool value) override { values.push(bitsOf(JsonTag::boolean, value ? 1 : 0)); }
    void integer(std::int64_t value) override { values.push(makeInteger(value, memory())); }
    void unsignedInteger(std::uint64_t value) override { values.push(makeUnsignedInteger(value, memory())); }
    void real(double value) override { values.push(makeReal(value, memory())); }
    void text(std::string_view value) override;

    void openObject() override { open.push_back(values.size()); }
    void key(std::string_view name) override;
    void closeObject() override;
    void openArray() override { open.push_back(values.size()); }
    void closeArray() override { close(JsonTag::array); }

private:
    // Texts that came lately, none of them short, by their hash: most keys and many values come again and again, and
    // share a node.
    using LateTexts = std::array<JsonBits, 256>;

    JsonArena* memory();
    void close(JsonTag tag);
    JsonBits shared(std::string_view text, LateTexts& late);

    const MemberOrder order;
    JsonArena* arena = nullptr;     // that the builder refers to
    JsonStack values;               // of the objects and arrays that are not closed, one behind the other
    std::vector<std::size_t> open;  // where in `values` each of them begins
    LateTexts keys{};
    LateTexts texts{};
};

}  // namespace TrellanSimulation
