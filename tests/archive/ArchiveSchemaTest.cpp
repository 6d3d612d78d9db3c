// The schema of the description accepts what the reader accepts, and nothing else.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <random>

#include "ArchiveGenerator.h"
#include "ArchiveReader.h"
#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr unsigned descriptionsPerSeed = 120;
constexpr unsigned versions = 400;
#else
constexpr unsigned descriptionsPerSeed = 1000;
constexpr unsigned versions = 4000;
#endif

// No JSON value is dumped as -0: this is what stands for it meanwhile.
constexpr const char* minusZero = "-0 without quotes";

Json schemaDocument()
{
    return Json::parse(readText(TRELLAN_SOURCE_DIR "/docs/archive.schema.json"));
}

// What is written is judged by both.
class Judges {
public:
    bool schemaAccepts(const std::string& text) const { return schema.violations(Json::parse(text)).empty(); }

    bool readerAccepts(const std::string& text)
    {
        fs::remove(folder.path() / "archive.json");  // a file that is emptied is written to the disk at once
        folder.write("archive.json", text);
        return reader.archive().readDescriptionFile(reader.errors);
    }

    std::string reason()
    {
        const std::string said = reader.text();
        reader.messages.clear();
        return said;
    }

private:
    const JsonSchema schema{schemaDocument()};
    const TempDir folder;
    ArchiveReader reader{folder.path().string(), "archive.json"};
};

// The places of all values in a document.
void collectPlaces(const Json& value, const Json::json_pointer& place, std::vector<Json::json_pointer>& places)
{
    places.push_back(place);
    if (value.is_object()) {
        for (const auto& [key, member] : value.items()) {
            collectPlaces(member, place / key, places);
        }
    } else if (value.is_array()) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            collectPlaces(value[i], place / i, places);
        }
    }
}

// Descriptions that are sound, or nearly so.
class RandomDescriptions {
public:
    explicit RandomDescriptions(unsigned seed) : sound(seed), random(seed) {}

    std::string next()
    {
        if (madeOfIt++ % 8 == 0) {
            original = sound.next().description;
            while (original["files"].size() > 2) {
                original["files"].erase(0);
            }
        }
        Json description = original;
        for (unsigned count = below(4); count > 0; --count) {
            change(description);
        }
        std::string text = description.dump();
        const std::string quoted = Json(minusZero).dump();
        for (std::size_t at = text.find(quoted); at != std::string::npos; at = text.find(quoted)) {
            text.replace(at, quoted.size(), "-0");
        }
        return text;
    }

    std::string version()
    {
        static const std::vector<std::string> pieces = {"0",  "1", "00",  ".",   "a",     "b",     "r",
                                                        "s",  "p", "255", "256", "65535", "3",     "02",
                                                        "\n", "x", "017", " ",   "-1",    "65536", "."};
        std::string text = below(3) == 0 ? "" : std::to_string(below(260)) + "." + std::to_string(below(2));
        for (unsigned count = below(7); count > 0; --count) {
            text += pieces[below(static_cast<unsigned>(pieces.size()))];
        }
        return text;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

    void change(Json& description)
    {
        std::vector<Json::json_pointer> places;
        collectPlaces(description, Json::json_pointer(), places);
        const Json::json_pointer place = places[below(static_cast<unsigned>(places.size()))];
        Json& value = description[place];
        if (value.is_object() && below(8) != 0) {
            value[name()] = below(2) == 0 ? likely() : any();
        } else if (value.is_array() && below(2) == 0) {
            value.push_back(below(2) == 0 ? likely() : any());
        } else if (below(4) == 0 && !place.empty() && description[place.parent_pointer()].is_object()) {
            description[place.parent_pointer()].erase(place.back());
        } else {
            value = below(2) == 0 ? likely() : any();
        }
    }

    std::string name()
    {
        static const std::vector<std::string> names = {"name",
                                                       "sequence",
                                                       "boardType",
                                                       "boards",
                                                       "boardVariant",
                                                       "boardId",
                                                       "id",
                                                       "version",
                                                       "hwCompatibilityId",
                                                       "swCompatibilityId",
                                                       "targetPath",
                                                       "checksumCrc32",
                                                       "mode",
                                                       "files",
                                                       "featureLevel",
                                                       "info",
                                                       "other",
                                                       "archiveVariant",
                                                       "targetPath",
                                                       "id"};
        return names[below(static_cast<unsigned>(names.size()))];
    }

    Json likely()
    {
        static const std::vector<Json> values = {
            0,
            3,
            7,
            4294967296,
            "A",
            "",
            "1.0",
            "standard",
            "upgrade",
            nullptr,
            Json::array(),
            Json::parse(R"(["A", "B"])"),
            Json::parse("[1, 2]"),
            Json::parse(R"([null, "v"])"),
            Json::parse(R"([{"boardType": "A", "id": 1}])"),
            Json::parse(R"([{"boardType": ["A"], "targetPath": "x"}, {"boardType": "B"}])"),
            Json::parse(R"({"boardType": "A"})"),
            Json::parse(R"({"name": "n", "sequence": 1, "boardType": "A", "id": 2})"),
            Json::parse(R"({"featureLevel": 3, "name": 1})")};
        return below(6) == 0 ? Json(version()) : values[below(static_cast<unsigned>(values.size()))];
    }

    Json any()
    {
        static const std::vector<Json> values = {-1,
                                                 2.5,
                                                 7.0,
                                                 1e30,
                                                 9223372036854775807,
                                                 18446744073709551615u,
                                                 true,
                                                 false,
                                                 "9",
                                                 "Standard",
                                                 Json::object(),
                                                 minusZero,
                                                 Json::parse(R"([["A"]])"),
                                                 Json::parse(R"(["A", 1])"),
                                                 Json::parse("[1, -1]"),
                                                 Json::parse(R"([1, "2"])"),
                                                 Json::parse("[{}]"),
                                                 Json::parse("[null]"),
                                                 Json::parse("[1.5]"),
                                                 "2.0",
                                                 "0.0"};
        return values[below(static_cast<unsigned>(values.size()))];
    }

    ArchiveGenerator sound;
    Json original;  // what is changed; several times, since making one takes longer than all else
    unsigned madeOfIt = 0;
    std::mt19937 random;
};

// Whole numbers that are written with a sign, a point or an exponent, or that 64 bits do not hold, are numbers like any
// other to a schema.
bool hasNumberThatSchemasDoNotTell(const Json& value)
{
    if (value.is_structured()) {
        for (const Json& part : value) {
            if (hasNumberThatSchemasDoNotTell(part)) {
                return true;
            }
        }
        return false;
    }
    return value.is_number_float() && std::floor(value.get<double>()) == value.get<double>();
}

bool isBeyondSchemas(const std::string& text)
{
    return text.find(":-0") != std::string::npos || text.find(",-0") != std::string::npos ||
           text.find("[-0") != std::string::npos || hasNumberThatSchemasDoNotTell(Json::parse(text));
}

class ArchiveSchema : public testing::TestWithParam<unsigned> {
protected:
    void compare(const std::string& text)
    {
        const bool read = judges.readerAccepts(text);
        const std::string reason = judges.reason();
        EXPECT_EQ(judges.schemaAccepts(text), read) << text << '\n' << reason;
        ++(read ? accepted : refused);
    }

    Judges judges;
    unsigned accepted = 0;
    unsigned refused = 0;
};

std::string soundWith(const std::string& member)
{
    return R"({"info": {"formatVersion": "1.0", "archiveVersion": "1.0", "productName": "", "archiveName": ""},
               "files": [{"name": "a", "boardType": "A", "id": 1, )" +
           member + "}]}";
}

}  // namespace

TEST_P(ArchiveSchema, AcceptsWhatTheReaderAccepts)
{
    RandomDescriptions descriptions(GetParam());
    unsigned beyond = 0;
    for (unsigned i = 0; i < descriptionsPerSeed && !HasFailure(); ++i) {
        const std::string text = descriptions.next();
        if (isBeyondSchemas(text)) {
            ++beyond;
        } else {
            compare(text);
        }
    }
    EXPECT_GT(accepted, descriptionsPerSeed / 4);
    EXPECT_GT(refused, descriptionsPerSeed / 4);
    EXPECT_LT(beyond, descriptionsPerSeed / 8);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ArchiveSchema, testing::Range(1u, 7u));

TEST_F(ArchiveSchema, AcceptsTheVersionsThatTheReaderAccepts)
{
    const JsonSchema schema(schemaDocument()["definitions"]["version"]);
    RandomDescriptions descriptions(815);
    for (unsigned i = 0; i < versions && !HasFailure(); ++i) {
        const std::string text = descriptions.version();
        const bool isVersion = ZoCVersion(text.c_str()).getAsULong64() != 0;
        EXPECT_EQ(schema.violations(text).empty(), isVersion) << text;
        ++(isVersion ? accepted : refused);
    }
    EXPECT_GT(accepted, versions / 10);
    EXPECT_GT(refused, versions / 10);
}

TEST_F(ArchiveSchema, AgreesWithTheReaderAboutTheFuzzersCorpus)
{
    for (const fs::directory_entry& entry :
         fs::directory_iterator(TRELLAN_SOURCE_DIR "/tests/fuzz/corpus/description")) {
        const std::string text = readText(entry.path());
        const bool endsEarly = text.find('\0') != std::string::npos;  // no JSON, but here the rest is not looked at
        if (Json::accept(text) && !endsEarly) {
            SCOPED_TRACE(entry.path());
            compare(text);
        }
    }
    EXPECT_GT(accepted, 3u);
    EXPECT_GT(refused, 3u);
}

TEST_F(ArchiveSchema, AcceptsTheExample)
{
    compare(readText(TRELLAN_SOURCE_DIR "/examples/archive/archive.json"));
    EXPECT_EQ(accepted, 1u);
}

TEST_F(ArchiveSchema, AgreesWithTheReaderAboutWhichFeatureLevelIsPassedOver)
{
    for (const std::string level : {"0", "1", "2", "3", "4", "4294967296", "9223372036854775808",
                                    "18446744073709551615", "null", "\"3\"", "-1"}) {
        compare(soundWith(R"("sequence": 7, "featureLevel": )" + level));
        compare(soundWith(R"("featureLevel": )" + level));  // sound nowhere but where it is passed over
    }
    EXPECT_EQ(accepted, 13u);
    EXPECT_EQ(refused, 9u);
}

TEST_F(ArchiveSchema, CannotTellHowTheTextIsWritten)
{
    EXPECT_TRUE(judges.readerAccepts(soundWith(R"("sequence": 7)")));
    const std::string nested = std::string(600, '[') + std::string(600, ']');
    for (const std::string& member : {std::string(R"("sequence": -0)"), R"("sequence": 7, "other": )" + nested}) {
        EXPECT_TRUE(judges.schemaAccepts(soundWith(member))) << member;
        EXPECT_FALSE(judges.readerAccepts(soundWith(member))) << member;
    }
    // Whether these conform depends on whom one asks, and on how many bits he holds a number in.
    for (const char* const number : {"7.0", "7e0", "18446744073709551616"}) {
        EXPECT_FALSE(judges.readerAccepts(soundWith(std::string(R"("sequence": )") + number))) << number;
    }
}
