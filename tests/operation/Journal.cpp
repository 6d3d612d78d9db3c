#include "operation/Journal.h"

#include <numeric>

namespace {

struct Note {
    bool isReport;
    std::string text;
};

// The callbacks carry no context, so the notes are the process's.
std::vector<Note>& notes()
{
    static std::vector<Note> instance;
    return instance;
}

void noteReport(const std::string& kind, unsigned number)
{
    notes().push_back({true, kind + " " + std::to_string(number)});
}

void notePhase(unsigned phase)
{
    if (phase == 0xFFFFFFFF) {
        notes().push_back({true, "end of phases"});
    } else {
        noteReport("phase", phase);
    }
}

void noteFailure(unsigned index)
{
    noteReport("failure", index);
}

void noteProgress(unsigned percent)
{
    noteReport("progress", percent);
}

void noteText(const std::string& text)
{
    notes().push_back({false, text});
}

std::vector<std::string> noted(bool reports)
{
    std::vector<std::string> texts;
    for (const Note& note : notes()) {
        if (note.isReport == reports) {
            texts.push_back(note.text);
        }
    }
    return texts;
}

std::string joined(const std::vector<std::string>& texts)
{
    return std::accumulate(texts.begin(), texts.end(), std::string());
}

}  // namespace

Journal::Journal(ZoITrellanUpdater& updater) : updater(updater)
{
    clear();
    updater.setPhaseCallBack(notePhase);
    updater.setFailureCallBack(noteFailure);
    updater.setProgressCallBack(noteProgress);
    updater.setMessageCallBack(noteText);
}

Journal::~Journal()
{
    updater.setPhaseCallBack(nullptr);
    updater.setFailureCallBack(nullptr);
    updater.setProgressCallBack(nullptr);
    updater.setMessageCallBack(nullptr);
}

std::vector<std::string> Journal::reports() const
{
    return noted(true);
}

std::vector<std::string> Journal::fragments() const
{
    return noted(false);
}

std::string Journal::text() const
{
    return joined(fragments());
}

std::vector<std::string> Journal::events() const
{
    std::vector<std::string> events;
    for (const Note& note : notes()) {
        events.push_back(note.isReport ? "<" + note.text + ">" : note.text);
    }
    return events;
}

std::string Journal::told() const
{
    return joined(events());
}

void Journal::clear()
{
    notes().clear();
}
