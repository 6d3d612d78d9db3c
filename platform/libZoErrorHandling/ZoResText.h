// ZoResText: a library's table of message texts, registered with ZoCErrorManager.
//
// The text at index i belongs to the code baseCode + i. "%1", "%2", ... in a text stand for a message's arguments. The
// table and the texts belong to the registering library and must outlive the registration.
#pragma once

struct ZoResText {
    const char* const* texts;  // the texts
    const char* name;          // name under which the texts are listed; may be empty
    unsigned lastIndex;        // index of the last text
    unsigned baseCode;         // code of the first text
};
