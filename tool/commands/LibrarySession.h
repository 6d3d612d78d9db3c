// An updater for what the command line asks for, and where its text goes.
#pragma once

#include <iosfwd>
#include <memory>

#include "ZoITrellanUpdater.h"

namespace TrellanTool {

struct Arguments;

class LibrarySession {
public:
    // Sets TRELLAN_TARGET and TRELLAN_TRACE as `arguments` say, and makes an updater for their options that prints to
    // `text`; during an update what is printed leaves the stream's buffer after each line end and carriage return.
    // While a second session exists, all text goes to that one's stream. Throws std::system_error, std::bad_alloc.
    LibrarySession(const Arguments& arguments, std::ostream& text);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    ZoITrellanUpdater& updater() { return *owned; }

    // Has the updater read what the command needs, and leaves out the elements that are excluded; an index that none
    // has is named on `err`. Returns SUCCESS, NOT_READ or NOT_SUPPORTED.
    int apply(std::ostream& err);

private:
    // Where the library's text goes: its callback takes no argument that could tell.
    struct Destination {
        std::ostream* stream;
        bool flushEachLine;
    };
    static Destination destination;
    static void print(const std::string& text);

    const Arguments& arguments;
    const Destination before;
    std::unique_ptr<ZoITrellanUpdater> owned;
};

}  // namespace TrellanTool
