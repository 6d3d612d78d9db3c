// ZoCTrellanUpdater: the updater behind the public interface.
//
// Owns the options and the four working classes, and is the only way out for text and reports. The working classes keep
// a pointer to it; they are known here by name only, so that whoever prints depends on nothing else.
#pragma once

#include <cstdarg>
#include <memory>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "base/TableText.h"
#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"

class ZoCUpdateArchive;
class ZoCUpdateInventory;
class ZoCUpdateAssignment;
class ZoCUpdateOperation;

class ZoCTrellanUpdater : public ZoITrellanUpdater {
public:
    explicit ZoCTrellanUpdater(ZoNTrellanUpdater::ZoTOptions options);
    ~ZoCTrellanUpdater() override;
    ZoCTrellanUpdater(const ZoCTrellanUpdater&) = delete;
    ZoCTrellanUpdater& operator=(const ZoCTrellanUpdater&) = delete;

    // The public interface; see there.
    void setPhaseCallBack(void (*callBack)(unsigned)) override;
    void setFailureCallBack(void (*callBack)(unsigned)) override;
    void setProgressCallBack(void (*callBack)(unsigned)) override;
    void setMessageCallBack(void (*callBack)(const std::string&)) override;
    unsigned apply() override;
    int run() override;
    void getArchiveInfo(std::string& archiveName, std::string& archiveVersion, std::string& productName,
                        std::string& formatVersion, std::string& archiveVariant) override;
    unsigned getArchiveId() override;
    void getUpdateElementList(ZoNTrellanUpdater::ZoTUpdateElement*& list, unsigned& count) override;
    void disableUpdateElement(unsigned index) override;
    void getUpdateFileList(ZoNTrellanUpdater::ZoTUpdateFile*& list, unsigned& count) override;
    bool checkRebootSupport(unsigned& state) override;
    bool reboot() override;

    // Version of this library.
    static ZoCVersion getToolVersion();

    // Address of the target: the library runs on it.
    ZoCString getIpAddress() const;

    // Call the host's callback, when it has installed one.
    void ReportPhase(unsigned phase) const;
    void ReportFailure(unsigned elementIndex) const;
    void ReportProgress(unsigned percent) const;
    void ReportMessage(const std::string& message) const;

    // Formats like printf and hands the text out as one piece: to the message callback, or to standard output, which is
    // flushed. Returns the number of characters, negative when the text cannot be formatted. The callback is given
    // neither an empty text nor one that cannot be formatted.
    int print(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    int vprint(const char* format, va_list arguments) const __attribute__((format(printf, 2, 0)));

    // The same for a text that is ready: it is handed out as it is.
    void printText(const std::string& text) const;

    // Formats like printf into `out`, which may be among the arguments; it becomes empty when there is nothing to
    // format. Returns the number of characters, negative when the text cannot be formatted; `out` is empty then too.
    int sprint(std::string& out, const char* format, ...) const __attribute__((format(printf, 3, 4)));

    // Prints the rows as columns separated by " | ", with a rule below the first row. Cells may be missing at a row's
    // end.
    void printTable(const ZoNUpdateBase::TableText& table) const;

    // Prints the errors, indented by `indent` blanks and wrapped for a console of 80 columns; with `verbose` also when
    // and where they happened.
    void printErrorList(const ZoCErrorListPool& errors, unsigned indent) const;

    // Conversions of text. The first keeps NULs, the second ends at the first one.
    static ZoCString tstring2ZoCString(const std::string& text);
    static std::string ZoCString2tstring(const ZoCString& text);

    // False when the archive does not support the target. All elements are disabled then.
    bool checkHcnCnSupport();

    // What apply() does once it has read the archive: reads the target, errors to `errors`, assigns the files, whatever
    // the command, and checks the support. Returns what apply() does; also 1 while apply() or run() is at work, and
    // without an archive that was read.
    unsigned readTargetAgain(ZoCErrorListPool& errors);

    // Why a device in this reboot-support state cannot be rebooted automatically; empty for 0, which is supported, and
    // for every state that has no message.
    static const char* rebootMessage(unsigned state);

    // The working classes.
    const ZoCUpdateArchive& getArchive() const { return *archive; }
    const ZoCUpdateInventory& getInventory() const { return *inventory; }
    const ZoCUpdateAssignment& getAssignment() const { return *assignment; }
    const ZoCUpdateOperation& getOperation() const { return *operation; }

    // True while apply() or run() is at work.
    bool isBusy() const { return isAtWork; }

    // The options that it works with.
    const ZoNTrellanUpdater::ZoTOptions& getOptions() const { return options; }

protected:
    // In the order of their construction; the working classes refer to what stands above them.
    ZoNTrellanUpdater::ZoTOptions options;
    std::unique_ptr<ZoCUpdateArchive> archive;
    std::unique_ptr<ZoCUpdateInventory> inventory;
    std::unique_ptr<ZoCUpdateAssignment> assignment;
    std::unique_ptr<ZoCUpdateOperation> operation;

private:
    void printRow(ZoNUpdateBase::TableText::Cells& cells, const std::vector<std::size_t>& widths) const;
    void printRule(std::size_t length) const;
    void printError(const ZoCErrorListPool& errors, unsigned index, unsigned indent) const;
    void printErrorDetails(const ZoCErrorListPool& errors, unsigned index) const;
    unsigned readTarget(ZoCErrorListPool& errors, bool withAssignment);
    bool performCommand(ZoCErrorListPool& errors);

    void (*phaseCallBack)(unsigned) = nullptr;
    void (*failureCallBack)(unsigned) = nullptr;
    void (*progressCallBack)(unsigned) = nullptr;
    void (*messageCallBack)(const std::string&) = nullptr;
    bool isAtWork = false;       // in apply() or run()
    bool isArchiveRead = false;  // by the last apply() that was to read it
};
