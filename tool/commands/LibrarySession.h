// An updater for what the command line asks for, and where its text goes.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "ZoITrellanInspector.h"
#include "tool/commands/SaidText.h"

namespace TrellanTool {

struct Arguments;
class TargetFilters;

class LibrarySession {
public:
    // Sets TRELLAN_TARGET and TRELLAN_TRACE as `arguments` say, and makes an updater for their options that prints to
    // `text`; during an update what is printed leaves the stream's buffer after each line end and carriage return.
    // While a second session exists, all text goes to that one's stream. Throws std::system_error, std::bad_alloc.
    LibrarySession(const Arguments& arguments, std::ostream& text);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    // Has an updater read what the command needs, and leaves out the elements that are excluded; an index that none
    // has is named on `err`. Unless nothing is to be checked, filters also select by what is displayed, and what of
    // them selects nothing is named on `err`; the target may be scanned several times for that. Returns SUCCESS,
    // NOT_READ, NOT_SUPPORTED, where what has no file is named on `err`, or, of an update, NOTHING_SELECTED.
    int apply(std::ostream& err);

    // What was said about why apply() has returned something else; empty after SUCCESS.
    const std::string& refusal() const { return said; }

    // The updater, and what looks into it; apply() may make others.
    ZoITrellanUpdater& updater() { return *owned; }
    ZoITrellanInspector& inspector() { return *looking; }

    // The options of the updater: those of the command line, its filters as apply() has understood them.
    const ZoNTrellanUpdater::ZoTOptions& options() const { return understood; }

    // From now on the library's text goes to `text`. To be called on the session that was made last.
    void redirect(std::ostream& text);

    // `call` is called before each text of the library from now on, until the session ends.
    void beforeEachText(std::function<void()> call);

private:
    // Where the library's text goes: its callback takes no argument that could tell.
    struct Destination {
        std::ostream* stream;  // null: nowhere
        bool flushEachLine;
        SaidText* copy;                  // or null
        std::function<void()> announce;  // or none
    };
    static Destination destination;
    static void print(const std::string& text);

    void makeUpdater();
    unsigned applyRecorded(bool keepsAll);
    unsigned applyFiltered(std::ostream& err);
    bool understandFilters(std::ostream& err);
    bool noteWholeTarget(TargetFilters& filters);
    void excludeElements(std::ostream& err);
    void explainFolder(std::ostream& err);
    void complainOfBlockingElements(std::ostream& err);
    void complain(std::ostream& err, const std::string& text);

    const Arguments& arguments;
    const Destination before;
    ZoNTrellanUpdater::ZoTOptions understood;
    std::unique_ptr<ZoITrellanUpdater> owned;
    std::unique_ptr<ZoITrellanInspector> looking;
    SaidText applied;          // by the library in apply()
    std::string platformSaid;  // on standard error meanwhile
    std::string said;
};

}  // namespace TrellanTool
