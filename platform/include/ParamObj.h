#pragma once
#include <memory>
#include <string>
#include <vector>

class ParamDescriptor;
class ParserMessage;

// One parsed keyword (or qualifier) with its value as written.
class ParamObj {
public:
    ParamObj();
    ParamObj(const ParamObj& other);
    ParamObj& operator=(const ParamObj& other);
    ParamObj(ParamObj&& other) noexcept;
    ParamObj& operator=(ParamObj&& other) noexcept;
    ~ParamObj();

    // The value as a list of texts (variable names as written, ranges expanded).
    bool getStringList(std::vector<std::string>& out) const;
    // The value as one word, upper-cased.
    bool getUpStringGeneric(std::string& out) const;
    // The value as a quoted string or a bare word; isLiteral tells which.
    bool getStringOrLiteral(std::string& out, bool& isLiteral) const;
    bool getNumberValue(double& out) const;
    bool getIntegerValue(int& out) const;
    // The variable names of a variable-list value, as written, ranges expanded.
    bool getVarList(std::vector<std::string>& out) const;
    // The one variable name of a single-variable value.
    bool getVarName(std::string& out) const;
    // The qualifiers given to this keyword.
    bool getStringQualList(std::vector<ParamObj>& out, const ParamDescriptor* desc,
                           const ParserMessage* message) const;
    static const ParamObj* getParamObj(const std::string& name, const std::vector<ParamObj>& list);

    std::string getParamName() const;
    std::string getSubComExtName() const;
    // The value's text as it stands in the command.
    std::string getStringToken() const;

    struct Impl;
    explicit ParamObj(std::unique_ptr<Impl> impl);
    Impl& impl();
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
