// ZoNJson: JSON documents.
//
// Strict RFC 8259: no comments, no trailing commas, invalid UTF-8, lone surrogates and numbers beyond a double refused.
// A leading UTF-8 byte-order mark is skipped, the last of duplicate keys counts, members are ordered by key (bytewise),
// integers beyond 64 bits become floating point, and -0 is a signed number. More than 512 nested levels are refused.
//
// A copy of a value shares its nodes, and changing one of them copies only what it must: keeping a part of a large
// document costs nothing. The exception is an object or array of which the non-const operator[] has handed out a member
// or element: that level belongs to this value alone and is copied when the value is, its children by the same rule. So
// a change through a reference, however old, shows in the value that handed it out (or the one it was moved to) and in
// no copy. A reference is good until its value is assigned to, grows as an array, or is destroyed.
//
// Values are not thread safe, copies that share nodes neither: all calls come from one thread.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace ZoNJson {

class const_iterator;

// What dump does with a string that is not valid UTF-8.
enum error_handler : unsigned {
    strict = 0,   // throws type_error
    replace = 1,  // writes U+FFFD in place of the invalid bytes
    ignore = 2    // leaves the invalid bytes out
};

// A value was used as something that it is not.
class type_error : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

class json {
public:
    // Null.
    json() noexcept;
    json(std::nullptr_t) noexcept;

    json(bool value) noexcept;
    json(int value) noexcept;  // a signed number
    json(long value);
    json(long long value);
    json(unsigned int value) noexcept;  // an unsigned number
    json(unsigned long value);
    json(unsigned long long value);
    json(const char* value);  // must not be null
    json(const std::string& value);

    // An empty object, an empty array.
    static json object();
    static json array();

    // A value that was moved from is null. A value may be assigned to a part of itself, which then holds a copy of it
    // as it was; it must not be moved there.
    json(const json& other);
    json(json&& other) noexcept;
    json& operator=(const json& other);
    json& operator=(json&& other) noexcept;
    ~json();

    // Parses the rest of `stream` as one document. A stream that is not one valid document, or cannot be read to its
    // end, gives a value that is_invalid(). The stream stays open.
    static json parse(std::FILE* stream);

    bool is_invalid() const noexcept;
    bool is_null() const noexcept;
    bool is_boolean() const noexcept;
    bool is_string() const noexcept;
    bool is_array() const noexcept;
    bool is_object() const noexcept;
    bool is_number() const noexcept;           // of any kind
    bool is_number_unsigned() const noexcept;  // written without sign, fraction and exponent, at most 64 bits

    // Number of elements of an array or members of an object; 0 for any other value.
    std::size_t size() const noexcept;

    // True for an object that has the member `key`; false for any other value.
    bool contains(const std::string& key) const;

    // The member `key` of an object. The const form gives a null value when there is none; the other form adds it, and
    // turns a null value into an object. Throws type_error when the value is of another kind.
    const json& operator[](const char* key) const;
    json& operator[](const char* key);
    const json& operator[](const std::string& key) const;
    json& operator[](const std::string& key);

    // The element `index` of an array. The const form throws std::out_of_range when there is none; the other form
    // extends the array with null values, and turns a null value into an array; it throws std::out_of_range for an
    // index that no array can have. Throws type_error when the value is of another kind.
    const json& operator[](std::size_t index) const;
    json& operator[](std::size_t index);

    // The same for the other integer types, so that [0] is an index and not a null key. A negative index is beyond
    // every array's size.
    template <std::integral Index>
    const json& operator[](Index index) const
    {
        return (*this)[static_cast<std::size_t>(index)];
    }
    template <std::integral Index>
    json& operator[](Index index)
    {
        return (*this)[static_cast<std::size_t>(index)];
    }

    // The value as a C++ value. Throws type_error when the value is not a string, or not an unsigned number. A number
    // that is too large for the type becomes its largest one.
    explicit operator std::string() const;
    explicit operator unsigned long long() const;
    explicit operator unsigned long() const;
    explicit operator unsigned int() const;

    // The elements of an array, in order; an empty range for any other value.
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;

    // The value as text. `indent` blanks (or `indentChar`) for each level and one member or element on a line; with a
    // negative indent all on one line. With `ensureAscii` characters beyond ASCII are written as \u escapes.
    std::string dump(int indent = -1, char indentChar = ' ', bool ensureAscii = false,
                     error_handler onInvalidUtf8 = strict) const;

private:
    friend struct Access;  // for the files that implement this

    std::uint64_t bits = 0;  // what it is, and the value itself or where it is; 0 is null
};

class const_iterator {
public:
    const json& operator*() const noexcept { return *at; }
    const json* operator->() const noexcept { return at; }
    const_iterator& operator++() noexcept
    {
        ++at;
        return *this;
    }
    bool operator==(const const_iterator& other) const noexcept { return at == other.at; }
    bool operator!=(const const_iterator& other) const noexcept { return at != other.at; }

private:
    friend class json;
    explicit const_iterator(const json* at) noexcept : at(at) {}

    const json* at;
};

}  // namespace ZoNJson
