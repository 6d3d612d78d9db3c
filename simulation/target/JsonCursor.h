// A walk over valid JSON text that tells where in it things stand.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TrellanSimulation {

class JsonCursor {
public:
    // A member of an object, as offsets in the text.
    struct Member {
        std::string name;
        std::size_t start = 0;      // behind the object's brace or the comma before
        std::size_t nameStart = 0;  // of the quotation mark
        std::size_t nameEnd = 0;
        std::size_t valueStart = 0;
    };

    // Stands at the value that begins, behind blanks at most, at `offset`. `text` must be valid JSON, and outlive this.
    explicit JsonCursor(std::string_view text, std::size_t offset = 0);

    std::size_t offset() const { return at; }

    // Whether the value is an object, or an array.
    bool isObject() const { return text[at] == '{'; }
    bool isArray() const { return text[at] == '['; }

    // Goes to the end of the value.
    void skip();

    // The same member by member, or element by element: enter() goes behind the opening bracket, and goOn() behind the
    // end of a value to what comes next; each says whether there is any. takeName() goes on to the member's value.
    bool enter();
    bool goOn();
    Member takeName();

    // Goes to the end of the object, and calls `visit` with each Member when standing at its value, to the end of which
    // it must go.
    template <class Visit>
    void forEachMember(Visit visit)
    {
        for (bool more = enter(); more; more = goOn()) {
            visit(takeName());
        }
    }

private:
    void skipBlanks();
    void skipText();
    void skipNested();

    std::string_view text;
    std::size_t at;
    std::size_t start = 0;  // of the member or element that comes next
};

}  // namespace TrellanSimulation
