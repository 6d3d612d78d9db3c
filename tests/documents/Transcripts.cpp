#include "documents/Transcripts.h"

#include <sstream>

namespace {

const std::string fence = "```";
const std::string prompt = "$ ";

// Goes through a document line by line and writes it anew.
class Reader {
public:
    Reader(const std::string& document, const ExampleFolder& folder) : lines(document), folder(folder) {}

    DocumentRun read()
    {
        while (nextLine()) {
            copyLine();
            if (!line.starts_with(fence)) {
                continue;
            }
            std::istringstream words(line.substr(fence.size()));
            std::string language, file;
            words >> language >> file;
            if (language == "console") {
                runTranscript();
            } else {
                copyBlock(file);
            }
        }
        return std::move(run);
    }

private:
    bool nextLine()
    {
        ++number;
        return static_cast<bool>(std::getline(lines, line));
    }

    void copyLine() { run.text += line + '\n'; }

    // The rest of a block up to its end; it becomes the file `name` unless that is empty.
    void copyBlock(const std::string& name)
    {
        std::string content;
        while (nextLine() && line != fence) {
            copyLine();
            content += line + '\n';
        }
        copyLine();
        if (!name.empty()) {
            folder.write(name, content);
        }
    }

    void runTranscript()
    {
        bool more = nextLine();
        while (more && line != fence) {
            if (line.starts_with(prompt)) {
                more = runCommand();
            } else {
                copyLine();
                more = nextLine();
            }
        }
        copyLine();
    }

    // Returns whether there is a line behind the command's output.
    bool runCommand()
    {
        const std::string place = std::to_string(number) + ": ";
        std::string command = line.substr(prompt.size());
        copyLine();
        while (command.ends_with('\\') && nextLine()) {
            copyLine();
            command += '\n' + line;
        }
        std::string shown;
        bool more = nextLine();
        for (; more && line != fence && !line.starts_with(prompt); more = nextLine()) {
            shown += line + '\n';
        }
        run.commands.push_back({place + command, shown, folder.run(command)});
        run.text += run.commands.back().present.output;
        return more;
    }

    std::istringstream lines;
    const ExampleFolder& folder;
    std::string line;
    std::size_t number = 0;
    DocumentRun run;
};

}  // namespace

DocumentRun runExamples(const std::string& document, const ExampleFolder& folder)
{
    return Reader(document, folder).read();
}
