#include "DescriptionJudge.h"

#include <algorithm>
#include <fstream>
#include <regex>

using Json = nlohmann::json;

namespace {

struct Refused {};

void demand(bool holds)
{
    if (!holds) {
        throw Refused();
    }
}

unsigned depth(const Json& value)
{
    unsigned below = 0;
    if (value.is_structured()) {
        for (const Json& part : value) {
            below = std::max(below, depth(part));
        }
        return below + 1;
    }
    return 0;
}

const Json* memberOf(const Json& object, const char* name)
{
    const auto member = object.find(name);
    return member == object.end() ? nullptr : &*member;
}

// A text ends at its first NUL.
std::string textIn(const Json* value)
{
    demand(value != nullptr && value->is_string());
    return value->get_ref<const std::string&>().c_str();
}

bool isBelow(const std::string& digits, unsigned limit)
{
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
    return digits.size() - first <= 5 && (first == digits.size() || std::stoul(digits.substr(first)) < limit);
}

// What 32 bits do not hold becomes the largest number that they do.
std::uint32_t narrow(const Json& value)
{
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value.get<std::uint64_t>(), 0xFFFFFFFF));
}

std::uint64_t numberIn(const std::ssub_match& digits)
{
    return digits.matched ? std::stoul(digits) : 0;
}

std::uint64_t stageIn(const std::smatch& part)
{
    return part[4] == "a" ? 1 : part[4] == "b" ? 2 : numberIn(part[6]);
}

// Each of the version's numbers in its place of 64 bits; nothing where it is none.
std::optional<std::uint64_t> versionIn(const Json* value)
{
    static const std::regex form(R"((\d+)(?:\.(\d+))?(?:\.(\d+))?(?:([abr])(\d+)|s(\d+)\.(\d+))?(?:p(\d+))?)");
    const std::string text = textIn(value);
    std::smatch part;
    if (!std::regex_match(text, part, form)) {
        return std::nullopt;
    }
    const bool fits = isBelow(part[1], 256) && isBelow(part[2], 256) && isBelow(part[3], 256) &&
                      isBelow(part[5], 65536) && isBelow(part[6], 256) && isBelow(part[7], 65536) &&
                      isBelow(part[8], 65536);
    const bool isOtherStage = part[6].matched;
    const bool isStage = !isOtherStage || (isBelow(part[6], 256) && std::stoul(part[6]) >= 3);
    const bool isSomething =
        part[4] == "a" || part[4] == "b" || isOtherStage || text.find_first_of("123456789") != std::string::npos;
    const bool hasTwoNumbers = part[2].matched || text.find_first_not_of("0123456789") == std::string::npos;
    if (!fits || !isStage || !isSomething || !hasTwoNumbers) {
        return std::nullopt;
    }
    return numberIn(part[1]) << 56 | numberIn(part[2]) << 48 | numberIn(part[3]) << 40 | stageIn(part) << 32 |
           (numberIn(part[5]) + numberIn(part[7])) << 16 | numberIn(part[8]);
}

// A property that may be left out: each value of it, or it itself where it is no list, is of the type.
template <class IsType>
void demandValues(const Json& object, const char* name, bool mayBeList, IsType isType)
{
    const Json* const value = memberOf(object, name);
    if (value != nullptr && value->is_array() && mayBeList) {
        demand(std::all_of(value->begin(), value->end(), isType));
    } else {
        demand(value == nullptr || isType(*value));
    }
}

void demandKeys(const Json& object)
{
    const auto isText = [](const Json& value) { return value.is_string(); };
    const auto isNumber = [](const Json& value) { return value.is_number_unsigned(); };
    demandValues(object, "boardType", true, isText);
    demandValues(object, "boardVariant", true, [](const Json& value) { return value.is_string() || value.is_null(); });
    demandValues(object, "boardId", true, isNumber);
    demandValues(object, "hwCompatibilityId", true, isNumber);
    demandValues(object, "swCompatibilityId", true, isNumber);
    demandValues(object, "id", false, isNumber);
    demandValues(object, "targetPath", false, isText);
}

// Of the boards, and whether all of them have an id or a path.
struct Boards {
    bool haveId = false;
    bool havePath = false;
    bool areComplete = true;
};

Boards judgeBoards(const Json& boards)
{
    Boards judged;
    demand(boards.is_array() && !boards.empty());
    for (const Json& board : boards) {
        demand(board.is_object() && board.contains("boardType"));
        demand(!board.contains("version") && !board.contains("checksumCrc32") && !board.contains("mode"));
        demandKeys(board);
        judged.haveId |= board.contains("id");
        judged.havePath |= board.contains("targetPath");
        judged.areComplete &= board.contains("id") || board.contains("targetPath");
    }
    return judged;
}

bool judgeTarget(const Json& entry)
{
    const Json* const boards = memberOf(entry, "boards");
    demand((boards == nullptr) == entry.contains("boardType"));
    const Boards judged = boards == nullptr ? Boards{false, false, false} : judgeBoards(*boards);
    const bool hasId = judged.haveId || entry.contains("id");
    const bool hasPath = judged.havePath || entry.contains("targetPath");
    demand(!(hasId && hasPath));
    demand(entry.contains("id") || entry.contains("targetPath") || judged.areComplete);
    return hasPath;
}

std::uint32_t checksumInHeader(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::string bytes(64, '\0');
    demand(static_cast<bool>(stream.read(bytes.data(), 64)));
    demand(bytes.compare(40, 8, "\x12\x55\xAA\x34\xAA\x18\x47\x55") == 0);
    std::uint32_t checksum = 0;
    for (std::size_t i = 60; i < 64; ++i) {
        checksum = checksum << 8 | static_cast<unsigned char>(bytes[i]);
    }
    return checksum;
}

// The board object's own, or else the entry's, or else `otherwise`.
Json keyOf(const Json& board, const Json& entry, const char* name, Json otherwise)
{
    const Json* const own = memberOf(board, name);
    const Json* const common = memberOf(entry, name);
    return own != nullptr ? *own : common != nullptr ? *common : std::move(otherwise);
}

JudgedKeys judgeKeys(const Json& board, const Json& entry, bool isForDrive, std::vector<std::string>& decided)
{
    JudgedKeys keys;
    keys.boardType = board.at("boardType");
    for (const Json& type : keys.boardType.is_array() ? keys.boardType : Json::array({keys.boardType})) {
        if (std::find(decided.begin(), decided.end(), type.get<std::string>()) == decided.end()) {
            keys.decidesFor.push_back(type.get<std::string>());
            decided.push_back(type.get<std::string>());
        }
    }
    const Json none(Json::value_t::discarded);
    keys.boardVariant = keyOf(board, entry, "boardVariant", nullptr);
    keys.boardId = keyOf(board, entry, "boardId", 0u);
    keys.hwCompatibilityId = keyOf(board, entry, "hwCompatibilityId", 0u);
    keys.swCompatibilityId = keyOf(board, entry, "swCompatibilityId", 0u);
    keys.id = isForDrive ? none : keyOf(board, entry, "id", none);
    keys.targetPath = isForDrive ? keyOf(board, entry, "targetPath", "") : none;
    return keys;
}

std::vector<JudgedKeys> judgeAllKeys(const Json& entry, bool isForDrive)
{
    std::vector<std::string> decided;
    std::vector<JudgedKeys> keys;
    const Json* const boards = memberOf(entry, "boards");
    for (const Json& board : boards == nullptr ? Json::array({entry}) : *boards) {
        keys.push_back(judgeKeys(board, entry, isForDrive, decided));
    }
    return keys;
}

JudgedFile judgeEntry(const Json& entry, std::uint64_t archiveVersion)
{
    demandKeys(entry);
    JudgedFile file;
    file.name = textIn(memberOf(entry, "name"));
    const Json* const sequence = memberOf(entry, "sequence");
    demand(sequence != nullptr && sequence->is_number_unsigned());
    file.sequence = narrow(*sequence);
    const Json* const stated = memberOf(entry, "version");
    if (stated == nullptr) {
        file.version = archiveVersion;
    } else if (!stated->is_null()) {
        const auto version = versionIn(stated);
        demand(version.has_value());
        file.version = *version;
    }
    const std::string mode = entry.contains("mode") ? textIn(memberOf(entry, "mode")) : "standard";
    demand(mode == "standard" || mode == "upgrade");
    file.isUpgrade = mode == "upgrade";
    file.isForDrive = judgeTarget(entry);
    file.keys = judgeAllKeys(entry, file.isForDrive);
    const Json* const checksum = memberOf(entry, "checksumCrc32");
    demand(checksum == nullptr || checksum->is_number_unsigned());
    constexpr std::uint32_t none = 0xFFFFFFFE;
    file.checksum = checksum == nullptr ? none : narrow(*checksum);
    return file;
}

JudgedArchive judgeDocument(const Json& document, const std::string& folder)
{
    constexpr unsigned deepest = 512;
    demand(document.is_object() && depth(document) <= deepest);
    JudgedArchive archive;
    const Json* const info = memberOf(document, "info");
    demand(info != nullptr && info->is_object());
    const auto format = versionIn(memberOf(*info, "formatVersion"));
    const auto version = versionIn(memberOf(*info, "archiveVersion"));
    demand(format && *format >> 56 == 1 && version);
    archive.format = *format;
    archive.version = *version;
    archive.product = textIn(memberOf(*info, "productName"));
    archive.name = textIn(memberOf(*info, "archiveName"));
    archive.variant = info->contains("archiveVariant") ? textIn(memberOf(*info, "archiveVariant")) : "";
    const Json* const entries = memberOf(document, "files");
    demand(entries != nullptr && entries->is_array());
    std::uint32_t position = 0;
    for (const Json& entry : *entries) {
        demand(entry.is_object());
        const Json* const level = memberOf(entry, "featureLevel");
        demand(level == nullptr || level->is_number_unsigned());
        if (level != nullptr && *level > 2) {
            ++archive.passedOver;
        } else {
            archive.files.push_back(judgeEntry(entry, archive.version));
            archive.files.back().entry = position;
        }
        ++position;
    }
    for (JudgedFile& file : archive.files) {
        if (file.checksum == 0xFFFFFFFE) {
            file.checksum = checksumInHeader(folder + "/" + file.name);
        }
    }
    return archive;
}

}  // namespace

bool JudgedKeys::operator==(const JudgedKeys& other) const
{
    const auto isSame = [](const Json& left, const Json& right) {
        return left.is_discarded() == right.is_discarded() && (left.is_discarded() || left == right);
    };
    return decidesFor == other.decidesFor && isSame(boardType, other.boardType) &&
           isSame(boardVariant, other.boardVariant) && isSame(boardId, other.boardId) &&
           isSame(hwCompatibilityId, other.hwCompatibilityId) && isSame(swCompatibilityId, other.swCompatibilityId) &&
           isSame(id, other.id) && isSame(targetPath, other.targetPath);
}

std::optional<JudgedArchive> judge(const std::string& text, const std::string& folder)
{
    const Json document = Json::parse(text, nullptr, false);
    try {
        const bool hasNul = text.find('\0') != std::string::npos;  // to this parser the end of the text
        return document.is_discarded() || hasNul ? std::nullopt : std::optional(judgeDocument(document, folder));
    } catch (const Refused&) {
        return std::nullopt;
    }
}
