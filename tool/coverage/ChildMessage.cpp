// A message: kind, number and length of the text, each of 32 bits, and the text.
#include "tool/coverage/ChildMessage.h"

#include <array>
#include <cstring>

namespace TrellanTool {

namespace {

using Header = std::array<std::uint32_t, 3>;

}  // namespace

std::string bytesOf(const ChildMessage& message)
{
    const Header header = {message.kind, message.number, static_cast<std::uint32_t>(message.text.size())};
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), header.data(), sizeof header);
    return bytes + message.text;
}

void ChildMessages::add(const char* bytes, std::size_t length)
{
    received.erase(0, taken);
    taken = 0;
    received.append(bytes, length);
}

std::optional<ChildMessage> ChildMessages::next()
{
    Header header;
    if (received.size() - taken < sizeof header) {
        return std::nullopt;
    }
    std::memcpy(header.data(), received.data() + taken, sizeof header);
    if (received.size() - taken - sizeof header < header[2]) {
        return std::nullopt;
    }
    ChildMessage message = {static_cast<ChildMessage::Kind>(header[0]), header[1],
                            received.substr(taken + sizeof header, header[2])};
    taken += sizeof header + header[2];
    return message;
}

}  // namespace TrellanTool
