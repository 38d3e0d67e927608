#include "VarSpecObj.h"

#include <unordered_set>

#include "CommandDescriptor.h"
#include "DataSet.h"
#include "HostSession.h"
#include "VELA_DataSource.h"
#include "syntax/CommandDescriptorImpl.h"
#include "syntax/MessageText.h"
#include "syntax/ParamDescriptorImpl.h"
#include "syntax/SyntaxError.h"
#include "syntax/TextCase.h"
#include "syntax/VariableIndex.h"
#include "syntax/VariableNameLocator.h"

struct VarSpecObj::Impl {
    std::string commandName;
    std::string paramName;
    std::string subComName;
    std::string context;  // as the parser names the place: "PRINT DISTMATRIX CONFIGURE"
    bool numericOnly = false;
    std::shared_ptr<const host::DataSet> data;
    std::unique_ptr<host::syntax::VariableIndex> variables;
    std::vector<int> valid;

    // Reports one problem with a name, at its place in the command when it can be found.
    void report(const std::string& text, const std::string& name, int occurrence) const;
    int check(const std::string& name);
};

void VarSpecObj::Impl::report(const std::string& text, const std::string& name, int occurrence) const {
    host::HostSession& session = host::HostSession::instance();
    const host::CommandText& command = session.command();
    host::syntax::SyntaxError error;
    error.context = context;
    error.text = text;
    host::syntax::Token at;
    if (host::syntax::VariableNameLocator(command.text, command.firstLine)
            .find(subComName, paramName, name, occurrence, at)) {
        error.line = at.line;
        error.column = at.column;
    }
    session.addMessage(host::MessageLevel::Error, commandName, error.format(command.sourceName));
}

// The variable's index, or -1 after reporting why it cannot be used.
int VarSpecObj::Impl::check(const std::string& name) {
    const std::string quoted = host::syntax::quotedText(name);
    if (!data) {
        report("there is no active data set in which to find variable " + quoted, name, 1);
        return -1;
    }
    const int index = variables->find(name);
    if (index < 0) {
        report("variable " + quoted + " is not in the active data set", name, 1);
        return -1;
    }
    if (numericOnly && data->variable(index).type != 0) {
        report("variable " + quoted + " is a text variable; a numeric variable is needed", name, 1);
        return -1;
    }
    return index;
}

namespace {

std::string joinContext(const std::string& a, const std::string& b) {
    if (a.empty() || host::syntax::equalsIgnoreCase(a, b)) return b;
    return a + " " + b;
}

// The subcommand name given may be a subcommand, the global part's external
// name, or a keyword whose qualifier the parameter is; the grammar tells which.
std::string contextOf(const CommandDescriptor& desc, const std::string& subComName, const std::string& paramName) {
    if (!subComName.empty() && desc.getSubComDesc(subComName) != nullptr)
        return joinContext(host::syntax::upperCase(subComName), paramName);
    for (const auto& sub : desc.impl().subcommands) {
        const ParamDescriptor* keyword = sub.getParamDesc(subComName);
        if (keyword != nullptr && keyword->impl().findQualifier(paramName) != nullptr)
            return joinContext(sub.getName(), joinContext(keyword->getName(), paramName));
    }
    return joinContext(subComName, paramName);
}

}  // namespace

VarSpecObj::VarSpecObj(const std::string& paramName, const std::string& subComName, const CommandDescriptor& desc,
                       const VELA_DataSource* source, bool numericOnly)
    : impl_(std::make_unique<Impl>()) {
    impl_->commandName = desc.getCommandName();
    impl_->context = contextOf(desc, subComName, paramName);
    impl_->paramName = paramName;
    impl_->subComName = subComName;
    impl_->numericOnly = numericOnly;
    if (source != nullptr) impl_->data = host::dataSetOf(*source);
    if (!impl_->data) impl_->data = host::HostSession::instance().activeDataSet();
    impl_->variables = std::make_unique<host::syntax::VariableIndex>(impl_->data);
}

VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::ValidateVariables(const std::vector<std::string>& names, UPSpecTypes::RepeatVarOptions repeat) {
    impl_->valid.clear();
    std::unordered_set<int> seen;
    for (const std::string& name : names) {
        const int index = impl_->check(name);
        if (index < 0) {
            impl_->valid.clear();
            return false;
        }
        if (!seen.insert(index).second && repeat == UPSpecTypes::RepeatVarForbidden) {
            impl_->report("variable " + host::syntax::quotedText(name) + " is named more than once", name, 2);
            impl_->valid.clear();
            return false;
        }
        impl_->valid.push_back(index);
    }
    return true;
}

int VarSpecObj::ValidateVariable(const std::string& name) {
    impl_->valid.clear();
    const int index = impl_->check(name);
    if (index >= 0) impl_->valid.push_back(index);
    return index;
}

int VarSpecObj::GetNValidVars() const { return static_cast<int>(impl_->valid.size()); }

const std::vector<int>& VarSpecObj::GetValidVarList() const { return impl_->valid; }
