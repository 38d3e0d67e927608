#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "ParamDescriptor.h"
#include "syntax/CommandSpecImpl.h"
#include "syntax/ParamObjImpl.h"
#include "syntax/Token.h"
#include "syntax/TokenStream.h"
#include "syntax/VariableIndex.h"

namespace host {
class DataSet;
}

namespace host::syntax {

// Reads a command's tokens against the grammar the procedure described:
// the command name, the global part, then "/NAME" subcommands, each a list of
// keywords with the values their descriptors ask for. Variable names are
// looked up, case-insensitively, in the given data set. Throws SyntaxError
// at the first problem, in the order of the text.
class CommandParser {
public:
    // A variable list may hold this many names, or as many as the data set
    // has variables when that is more.
    static constexpr std::size_t kMostListNames = 100000;

    CommandParser(TokenStream& tokens, const CommandDescriptor& descriptor, std::shared_ptr<const DataSet> data);

    CommandSpec::Impl parse();

private:
    // The keywords that may stand at one place of the command.
    struct Level {
        const std::vector<ParamDescriptor>* params;
        std::string context;  // "PRINT", "PRINT DISTMATRIX"; empty in the global part
        bool qualifiers;      // inside the "( )" of a keyword
    };

    const Token& peek(std::size_t ahead = 0) { return tokens_.peek(ahead); }
    Token take() { return tokens_.take(); }
    [[noreturn]] void fail(const std::string& context, const std::string& text, const Token& at,
                           const std::string& allowed = "") const;

    void readCommandName();
    bool globalPartStartsWithSlash();
    const SubComDescriptor* namedSubcommand(std::string_view name) const;
    std::string subcommandNames() const;
    void readSubcommand(const Level& level, const std::string& name, const std::string& extName,
                        CommandSpec::Impl& spec);

    void readItems(const Level& level, const std::string& extName, const Token* openParen, std::vector<ParamObj>& out);
    void rejectSecondValue(const Level& level, const ParamDescriptor& previous, const Token& t);
    ParamObj readParam(const ParamDescriptor& desc, const Level& level, const std::string& extName);
    void expectEquals(const std::string& context, const ParamDescriptor& desc);
    void readAllowedWord(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readNumber(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readVariable(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readVariableList(const std::string& context, const ParamDescriptor& desc, const Level& level,
                          ParamObj::Impl& out);
    void readSingleValue(const std::string& context, const std::string& expected, ParamObj::Impl& out);

    // The most names one variable list may hold, ranges expanded: a list
    // never needs more names than the data set has variables, and the bound
    // keeps a list of endless repeats from filling the memory.
    std::size_t mostListNames() const;
    [[noreturn]] void failListTooLong(const std::string& context, const Token& at) const;
    std::vector<std::string> resolveNames(const std::string& context, const std::vector<Token>& written);
    int findVariable(const std::string& context, const Token& name);

    TokenStream& tokens_;
    const CommandDescriptor& descriptor_;
    std::shared_ptr<const DataSet> data_;
    VariableIndex variables_;
};

}  // namespace host::syntax
