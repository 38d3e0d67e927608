#pragma once
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <rapidjson/document.h>

namespace host {

class DataSet;

enum class MessageLevel { Error, Warning, Note };

struct HostMessage {
    MessageLevel level;
    std::string text;
};

// The text of the command being run and where it came from, so that syntax
// errors can name the file, line and column.
struct CommandText {
    std::string text;        // from the command name to the terminating period
    std::string sourceName;  // syntax file name, or "command line"
    int firstLine = 1;       // line of the source on which the text starts
};

// A file the program reads (the data file, its dictionary, the syntax file).
// No output may replace it; it is known by device and inode, so another name
// or a link to it is recognised too.
struct InputFile {
    std::string path;
    std::string role;  // "the data file", ... as used in messages
    unsigned long long device = 0;
    unsigned long long inode = 0;
};

// State the reference host shares between the distcorr program and the
// procedures it loads: the active data set, the command being run, its
// messages and the output document the procedure handed over.
class HostSession {
public:
    static HostSession& instance();

    void setActiveDataSet(std::shared_ptr<DataSet> data);
    std::shared_ptr<DataSet> activeDataSet() const;

    // Records an input file; a path that names no file is ignored.
    void addInputFile(const std::string& path, const std::string& role);
    // The input file that `path` names after following links, or null (also
    // when `path` names no file).
    const InputFile* inputFileAt(const std::string& path) const;

    // Starts a new command: clears the messages and the output document.
    void beginCommand(CommandText command);
    const CommandText& command() const;

    // Name of the procedure running the current command ("" when none), used
    // for host messages that do not name the command themselves.
    void setCommandName(const std::string& name);
    const std::string& commandName() const;

    // Records a message and, unless quiet, shows it on standard error as
    // "Error: <command name>: <text>" (or "Warning: ...", "Note: ..."). An empty
    // commandName stands for the current command's name.
    void addMessage(MessageLevel level, const std::string& commandName, const std::string& text);
    const std::vector<HostMessage>& messages() const;
    bool hasErrors() const;

    // The output document handed over by the procedure (null if none).
    void setOutputDocument(std::unique_ptr<rapidjson::Document> document);
    rapidjson::Document* outputDocument() const;
    std::unique_ptr<rapidjson::Document> takeOutputDocument();

    void setQuiet(bool quiet);
    bool quiet() const;
    void setErrorStream(std::ostream* stream);  // standard error by default

    // Language of the string tables ("" for English) and the resource folder.
    void setLanguage(const std::string& language);
    const std::string& language() const;
    void setResourceDir(const std::string& dir);
    const std::string& resourceDir() const;

private:
    HostSession();
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace host
