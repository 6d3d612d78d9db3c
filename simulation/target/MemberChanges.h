// Changing members of objects in JSON text while every other byte stays as it is: numbers of any width, members that
// stand twice, and the way it is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace TrellanSimulation {

// The new values of an object's members, by name.
using NewValue = std::variant<std::uint64_t, std::string>;
using MemberChanges = std::map<std::string, NewValue>;

// `text`, which must be valid JSON, with the changes of the objects that begin at the offsets in `changes`. Of members
// with the same name the last one is changed; one that is not there is added behind the last one, in its style. The
// objects must not be empty, nor within each other.
std::string withChanges(std::string_view text, const std::map<std::size_t, MemberChanges>& changes);

}  // namespace TrellanSimulation
