// The one form in which what a file asks is compared with what an element is, and by which elements are looked up.
#pragma once

#include <string>

#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

// A value as text: two values have the same key exactly when they count as equal. No key is the beginning of another,
// so keys in a row are as unambiguous as a single one.
std::string textKey(const std::string& text);
std::string numberKey(unsigned long long number);

// Null, a text or an unsigned number; empty for any other value, which equals nothing.
std::string valueKey(const ZoNJson::json& value);

// Asks `test` for the values that a property states: itself, or each of an array's (an array in an array is one value).
// Stops at the first that it is true for, and returns whether there was one.
template <class Test>
bool anyValue(const ZoNJson::json& property, Test test)
{
    if (!property.is_array()) {
        return test(property);
    }
    for (const ZoNJson::json& value : property) {
        if (test(value)) {
            return true;
        }
    }
    return false;
}

// True when the property states the value that has this key.
bool states(const ZoNJson::json& property, const std::string& key);

}  // namespace ZoNUpdateAssignment
