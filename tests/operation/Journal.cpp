#include "operation/Journal.h"

namespace {

// The callbacks carry no context, so the notes are the process's.
struct Notes {
    std::string told;
    std::vector<std::string> fragments;
    std::vector<std::string> reports;
};

Notes& notes()
{
    static Notes instance;
    return instance;
}

void noteReport(const std::string& report)
{
    notes().reports.push_back(report);
    notes().told += "<" + report + ">";
}

void notePhase(unsigned phase)
{
    noteReport("phase " + std::to_string(phase));
}

void noteFailure(unsigned index)
{
    noteReport("failure " + std::to_string(index));
}

void noteProgress(unsigned percent)
{
    noteReport("progress " + std::to_string(percent));
}

void noteText(const std::string& text)
{
    notes().fragments.push_back(text);
    notes().told += text;
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

std::string Journal::text() const
{
    std::string text;
    for (const std::string& fragment : notes().fragments) {
        text += fragment;
    }
    return text;
}

const std::vector<std::string>& Journal::fragments() const
{
    return notes().fragments;
}

std::vector<std::string> Journal::reports() const
{
    return notes().reports;
}

std::string Journal::told() const
{
    return notes().told;
}

void Journal::clear()
{
    notes() = Notes();
}
