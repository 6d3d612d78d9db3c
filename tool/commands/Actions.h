// What carries out the commands: each takes what is asked for to an exit status (Action in tool/arguments/Command.h).
#pragma once

namespace TrellanTool {

struct Arguments;
struct Streams;

// The commands that the library has: the library's text on `streams.out`; with `json` a document there and the text on
// `streams.err`.
int runInLibrary(const Arguments& arguments, const Streams& streams);

// Has the library print the archive's description: on `streams.out`, or into the file that is asked for; the library's
// other text goes to `streams.err` then, and nothing to `streams.out`. The file is written when the description is
// whole, so that it may be the one that was read. Throws std::runtime_error where it cannot be written.
int describeArchive(const Arguments& arguments, const Streams& streams);

// Updates the target, or tells what that would do: the library's text, or a document, as above. Signals, events and the
// time without progress are minded (tool/update/).
int updateTarget(const Arguments& arguments, const Streams& streams);

// Asks the library whether the device can be rebooted automatically: SUCCESS when it can.
int tellRebootSupport(const Arguments& arguments, const Streams& streams);

// What is wrong with the archive, whatever the target: a line for each finding, or a document. FAILURE where there are
// errors or, with --strict, warnings.
int checkArchive(const Arguments& arguments, const Streams& streams);

// Why elements get the files that they get, and why others do not fit: text, or a document. FAILURE where an element or
// a file is asked for that there is not.
int explain(const Arguments& arguments, const Streams& streams);

// Writes the target's inventory as a target file, whatever the filters. FAILURE where something is left out, which is
// named on `streams.err`. Throws std::runtime_error where the file cannot be written.
int recordTarget(const Arguments& arguments, const Streams& streams);

// What the archive does for the targets that the operands name: text or a document and, where asked for, a page. What
// cannot be read is named on `streams.err`; FAILURE then.
int tellCoverage(const Arguments& arguments, const Streams& streams);

// What the file of events that the operand names tells of each update: a line for each, or a document. What had to be
// skipped is said on `streams.err`. Throws HistoryError where the file cannot be read.
int printHistory(const Arguments& arguments, const Streams& streams);

// Tells of each file that the operands name what it says of itself: a table, or a document. FAILURE where one cannot be
// read, which is named on `streams.err`.
int inspectFiles(const Arguments& arguments, const Streams& streams);

// Begins an archive for the target: a folder, where there is none, and a description in it. FAILURE where the
// description is there already, or nothing can be described. Throws std::runtime_error where it cannot be written.
int newArchive(const Arguments& arguments, const Streams& streams);

// Help of the command that the operand names, or of the tool. Throws UsageError when there is no such command.
int printHelp(const Arguments& arguments, const Streams& streams);

// Tells what the last operand, a word behind the tool's name, may become where the others stand before it: first a line
// that says what it is, "words", "list" (words behind which others may follow), "files" or "folders"; then, of the
// first two, a line for each word, behind a tab what it means. The target is read where --target is among the operands.
// What cannot be understood gets no words.
int completeWord(const Arguments& arguments, const Streams& streams);

}  // namespace TrellanTool
