// The one manager of the process, the lists that it hands out, and the log and warnings that it sends.
#include "libZoErrorHandling/ZoCErrorManager.h"

#include <cstdarg>

#include "simulation/base/Resources.h"
#include "simulation/base/StandardError.h"
#include "simulation/base/Trace.h"
#include "simulation/libZoErrorHandling/MessageTables.h"
#include "simulation/libZoErrorHandling/MessageText.h"

using TrellanSimulation::TraceRecord;

namespace {

void traceMessage(const char* call, unsigned code, unsigned line, const char* function, const std::string& text)
{
    TrellanSimulation::traceCall([&] {
        return TraceRecord{{"call", call},
                           {"code", code},
                           {"line", line},
                           {"function", function == nullptr ? "" : function},
                           {"text", text}};
    });
}

}  // namespace

namespace {

// Of the one manager, and made with it, so that whoever has a manager has its list.
ZoCErrorList* masterList = nullptr;

}  // namespace

ZoCErrorManager* ZoCErrorManager::s_pErrorManager = nullptr;

ZoCErrorManager::ZoCErrorManager() = default;

ZoCErrorManager::~ZoCErrorManager() = default;

// Neither the manager nor its master list is ever destroyed: other libraries still call them while they are unloaded.
ZoCErrorManager* ZoCErrorManager::getSingleton()
{
    if (s_pErrorManager == nullptr) {
        if (masterList == nullptr) {
            masterList = new ZoCErrorList;
        }
        s_pErrorManager = new ZoCErrorManager;
    }
    return s_pErrorManager;
}

void ZoCErrorManager::_registerMessages(const ZoResText& table)
{
    MessageTables::addTable(table);
    TrellanSimulation::traceCall(
        [&] {
            return TraceRecord{{"call", "registerMessages"}, {"code", table.baseCode}};
        },
        TrellanSimulation::traceWhenTargetIsNamed);
}

void ZoCErrorManager::_unregisterMessages(const ZoResText& table)
{
    MessageTables::removeTable(table);
    TrellanSimulation::traceCall([&] { return TraceRecord{{"call", "unregisterMessages"}, {"code", table.baseCode}}; });
}

ZoCErrorListPool& ZoCErrorManager::getMasterErrorList() noexcept
{
    return *masterList;
}

ZoCErrorList* ZoCErrorManager::createErrorList(unsigned, unsigned, unsigned, unsigned, unsigned)
{
    auto* list = new ZoCErrorList;
    ++TrellanSimulation::resources().errorLists;
    return list;
}

void ZoCErrorManager::deleteErrorList(ZoCErrorList* list) noexcept
{
    if (list == nullptr) {
        return;
    }
    delete list;
    --TrellanSimulation::resources().errorLists;
}

double ZoCErrorManager::getTimeStampFactor() const noexcept
{
    return 0.001;
}

void ZoCErrorManager::sendLog(unsigned code, unsigned line, const char* function, const char* format, ...)
{
    if (!TrellanSimulation::isTraced()) {
        return;
    }
    va_list values;
    va_start(values, format);
    const MessageText::Arguments arguments = MessageText::formatArguments(format, values);
    va_end(values);
    traceMessage("sendLog", code, line, function, MessageText::compose(code, arguments));
}

void ZoCErrorManager::sendWarning(unsigned code, unsigned line, const char* function, const char* format, ...)
{
    va_list values;
    va_start(values, format);
    const MessageText::Arguments arguments = MessageText::formatArguments(format, values);
    va_end(values);
    const std::string text = MessageText::compose(code, arguments);
    TrellanSimulation::tellOnStandardError("WARNING 0x" + MessageText::hexadecimal(code) + ": " + text);
    traceMessage("sendWarning", code, line, function, text);
}
