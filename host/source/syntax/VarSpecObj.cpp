#include "VarSpecObj.h"

#include <algorithm>

#include "CommandDescriptor.h"
#include "DataSet.h"
#include "HostSession.h"
#include "VELA_DataSource.h"
#include "syntax/CommandDescriptorImpl.h"
#include "syntax/CommandTokenizer.h"
#include "syntax/ParamDescriptorImpl.h"
#include "syntax/SyntaxError.h"
#include "syntax/TextCase.h"
#include "syntax/VariableNameLocator.h"

struct VarSpecObj::Impl {
    std::string commandName;
    std::string paramName;
    std::string subComName;
    std::string context;  // as the parser names the place: "PRINT DISTMATRIX CONFIGURE"
    bool numericOnly = false;
    std::shared_ptr<const host::DataSet> data;
    std::vector<int> valid;

    // Reports one problem with a name, at its place in the command when it can be found.
    void report(const std::string& text, const std::string& name, int occurrence) const;
    int check(const std::string& name) const;
};

void VarSpecObj::Impl::report(const std::string& text, const std::string& name, int occurrence) const {
    host::HostSession& session = host::HostSession::instance();
    const host::CommandText& command = session.command();
    host::syntax::SyntaxError error;
    error.context = context;
    error.text = text;
    host::syntax::CommandTokenizer tokenizer(command.text, command.firstLine);
    if (tokenizer.run()) {
        host::syntax::VariableNameLocator locator(tokenizer.tokens());
        if (const host::syntax::Token* at = locator.find(subComName, paramName, name, occurrence)) {
            error.line = at->line;
            error.column = at->column;
        }
    }
    session.addMessage(host::MessageLevel::Error, commandName, error.format(command.sourceName));
}

// The variable's index, or -1 after reporting why it cannot be used.
int VarSpecObj::Impl::check(const std::string& name) const {
    if (!data) {
        report("there is no active data set in which to find variable \"" + name + "\"", name, 1);
        return -1;
    }
    const int index = data->findVariable(name);
    if (index < 0) {
        report("variable \"" + name + "\" is not in the active data set", name, 1);
        return -1;
    }
    if (numericOnly && data->variable(index).type != 0) {
        report("variable \"" + name + "\" is a text variable; a numeric variable is needed", name, 1);
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

VarSpecObj::VarSpecObj(const std::string& paramName, const std::string& subComName,
                       const CommandDescriptor& desc, const VELA_DataSource* source, bool numericOnly)
    : impl_(std::make_unique<Impl>()) {
    impl_->commandName = desc.getCommandName();
    impl_->context = contextOf(desc, subComName, paramName);
    impl_->paramName = paramName;
    impl_->subComName = subComName;
    impl_->numericOnly = numericOnly;
    if (source != nullptr) impl_->data = host::dataSetOf(*source);
    if (!impl_->data) impl_->data = host::HostSession::instance().activeDataSet();
}

VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::ValidateVariables(const std::vector<std::string>& names, UPSpecTypes::RepeatVarOptions repeat) {
    impl_->valid.clear();
    for (const std::string& name : names) {
        const int index = impl_->check(name);
        if (index < 0) {
            impl_->valid.clear();
            return false;
        }
        const bool seen = std::find(impl_->valid.begin(), impl_->valid.end(), index) != impl_->valid.end();
        if (seen && repeat == UPSpecTypes::RepeatVarForbidden) {
            impl_->report("variable \"" + name + "\" is named more than once", name, 2);
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
