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

namespace host {
class DataSet;
}

namespace host::syntax {

// Reads a command's tokens against the grammar the procedure described:
// the command name, the global part, then "/NAME" subcommands, each a list of
// keywords with the values their descriptors ask for. Variable names are
// looked up, case-insensitively, in the given data set. Throws SyntaxError
// at the first problem.
class CommandParser {
public:
    CommandParser(const std::vector<Token>& tokens, const CommandDescriptor& descriptor,
                  std::shared_ptr<const DataSet> data);

    CommandSpec::Impl parse();

private:
    // The keywords that may stand at one place of the command.
    struct Level {
        const std::vector<ParamDescriptor>* params;
        std::string context;  // "PRINT", "PRINT DISTMATRIX"; empty in the global part
        bool qualifiers;      // inside the "( )" of a keyword
    };

    const Token& peek(std::size_t ahead = 0) const;
    const Token& take();
    [[noreturn]] void fail(const std::string& context, const std::string& text, const Token& at,
                           const std::string& allowed = "") const;

    void readCommandName();
    bool globalPartStartsWithSlash() const;
    const SubComDescriptor* namedSubcommand(const std::string& name) const;
    std::string subcommandNames() const;
    void readSubcommand(const Level& level, const std::string& name, const std::string& extName,
                        CommandSpec::Impl& spec);

    void readItems(const Level& level, const std::string& extName, const Token* openParen,
                   std::vector<ParamObj>& out);
    void rejectSecondValue(const Level& level, const ParamDescriptor& previous, const Token& t) const;
    ParamObj readParam(const ParamDescriptor& desc, const Level& level, const std::string& extName);
    void expectEquals(const std::string& context, const ParamDescriptor& desc);
    void readAllowedWord(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readNumber(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readVariable(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out);
    void readVariableList(const std::string& context, const ParamDescriptor& desc, const Level& level,
                          ParamObj::Impl& out);
    void readSingleValue(const std::string& context, const std::string& expected, ParamObj::Impl& out);

    std::vector<std::string> resolveNames(const std::string& context,
                                          const std::vector<const Token*>& written) const;
    int findVariable(const std::string& context, const Token& name) const;

    const std::vector<Token>& tokens_;
    const CommandDescriptor& descriptor_;
    std::shared_ptr<const DataSet> data_;
    std::size_t pos_ = 0;
};

}  // namespace host::syntax
