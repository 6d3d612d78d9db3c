// A reader that takes the written form from left to right, and the way back.
#include "simulation/libZoCompositeFactory/VersionText.h"

#include <algorithm>
#include <limits>

namespace VersionText {

namespace {

constexpr unsigned firstOtherStage = 3;  // stages below have a letter of their own

// Reads a version's text from left to right.
class Reader {
public:
    explicit Reader(std::string_view text) : rest(text) {}

    bool atEnd() const { return rest.empty(); }

    bool accept(char expected)
    {
        if (rest.empty() || rest.front() != expected) {
            return false;
        }
        rest.remove_prefix(1);
        return true;
    }

    // Reads a decimal number that fits into `number`.
    template <typename Number>
    bool readNumber(Number& number)
    {
        unsigned value = 0;
        const std::size_t length = std::min(rest.find_first_not_of("0123456789"), rest.size());
        for (const char digit : rest.substr(0, length)) {
            value = value * 10 + static_cast<unsigned>(digit - '0');
            if (value > std::numeric_limits<Number>::max()) {
                return false;
            }
        }
        rest.remove_prefix(length);
        number = static_cast<Number>(value);
        return length > 0;
    }

private:
    std::string_view rest;
};

// Reads the stage's letter and numbers; no stage is a release.
bool readStage(Reader& reader, Numbers& numbers)
{
    if (reader.accept('s')) {
        return reader.readNumber(numbers.spb) && numbers.spb >= firstOtherStage && reader.accept('.') &&
               reader.readNumber(numbers.spn);
    }
    if (reader.accept('r')) {
        numbers.spb = 0;
    } else if (reader.accept('a')) {
        numbers.spb = 1;
    } else if (reader.accept('b')) {
        numbers.spb = 2;
    } else {
        return true;
    }
    return reader.readNumber(numbers.spn);
}

// Reads everything after Mar.
bool readAfterMar(Reader& reader, Numbers& numbers)
{
    if (reader.atEnd()) {
        return true;
    }
    if (!reader.accept('.') || !reader.readNumber(numbers.mir)) {
        return false;
    }
    if (reader.accept('.') && !reader.readNumber(numbers.mai)) {
        return false;
    }
    if (!readStage(reader, numbers)) {
        return false;
    }
    if (reader.accept('p') && !reader.readNumber(numbers.plv)) {
        return false;
    }
    return reader.atEnd();
}

std::string formatStage(const Numbers& numbers)
{
    std::string stage;
    switch (numbers.spb) {
        case 0:
            if (numbers.spn == 0) {
                return stage;
            }
            stage = "r";
            break;
        case 1:
            stage = "a";
            break;
        case 2:
            stage = "b";
            break;
        default:
            stage.append("s").append(std::to_string(numbers.spb)).append(".");
    }
    return stage.append(std::to_string(numbers.spn));
}

}  // namespace

std::optional<Numbers> parse(std::string_view text)
{
    Reader reader(text);
    Numbers numbers;
    if (!reader.readNumber(numbers.mar) || !readAfterMar(reader, numbers)) {
        return std::nullopt;
    }
    return numbers;
}

std::string textOf(const Numbers& numbers)
{
    std::string text = std::to_string(numbers.mar);
    text.append(".").append(std::to_string(numbers.mir));
    if (numbers.mai != 0) {
        text.append(".").append(std::to_string(numbers.mai));
    }
    text += formatStage(numbers);
    if (numbers.plv != 0) {
        text.append("p").append(std::to_string(numbers.plv));
    }
    return text;
}

}  // namespace VersionText
