#include "syntax/CommandParser.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "DataSet.h"
#include "SubComDescriptor.h"
#include "output/NumberText.h"
#include "syntax/CommandDescriptorImpl.h"
#include "syntax/MessageText.h"
#include "syntax/ParamDescriptorImpl.h"
#include "syntax/SubComDescriptorImpl.h"
#include "syntax/SubComObjImpl.h"
#include "syntax/SyntaxError.h"
#include "syntax/TextCase.h"

namespace host::syntax {
namespace {

std::string joinContext(const std::string& context, const std::string& name) {
    return context.empty() ? name : context + " " + name;
}

std::string formatNumber(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

std::string keywordNames(const std::vector<ParamDescriptor>& params) {
    std::vector<std::string> names;
    for (const auto& p : params) names.push_back(p.getName());
    return joinWords(names);
}

const ParamDescriptor* findParam(const std::vector<ParamDescriptor>& params, std::string_view name) {
    for (const auto& p : params)
        if (equalsIgnoreCase(p.getName(), name)) return &p;
    return nullptr;
}

std::string allowedRange(const ParamDescriptor::Impl& d) {
    const bool lowerIn = d.lowerOption == UPSpecTypes::LowerInclusive;
    const bool upperIn = d.upperOption == UPSpecTypes::UpperInclusive;
    if (lowerIn && upperIn) return "numbers from " + formatNumber(d.lower) + " to " + formatNumber(d.upper);
    std::vector<std::string> parts;
    if (lowerIn) parts.push_back("at least " + formatNumber(d.lower));
    if (d.lowerOption == UPSpecTypes::LowerExclusive) parts.push_back("greater than " + formatNumber(d.lower));
    if (upperIn) parts.push_back("at most " + formatNumber(d.upper));
    if (d.upperOption == UPSpecTypes::UpperExclusive) parts.push_back("less than " + formatNumber(d.upper));
    return parts.empty() ? std::string() : "numbers " + joinWords(parts, " and ");
}

bool isTo(const Token& t) { return t.is(TokenKind::Word) && equalsIgnoreCase(t.text, "TO"); }

}  // namespace

CommandParser::CommandParser(TokenStream& tokens, const CommandDescriptor& descriptor,
                             std::shared_ptr<const DataSet> data)
    : tokens_(tokens), descriptor_(descriptor), data_(data), variables_(std::move(data)) {}

void CommandParser::fail(const std::string& context, const std::string& text, const Token& at,
                         const std::string& allowed) const {
    SyntaxError error;
    error.context = context;
    error.text = text;
    error.line = at.line;
    error.column = at.column;
    error.allowed = allowed;
    throw error;
}

CommandSpec::Impl CommandParser::parse() {
    tokens_.rewind();
    readCommandName();
    CommandSpec::Impl spec;

    if (const SubComDescriptor* global = descriptor_.getSubComDesc("")) {
        const bool slash = globalPartStartsWithSlash();
        if (slash) take();
        if (slash || !(peek().is(TokenKind::Slash) || peek().is(TokenKind::End))) {
            // The global part is known to the user by its first keyword.
            const auto& params = global->impl().params;
            const std::string extName = params.empty() ? std::string() : params.front().getName();
            readSubcommand(Level{&params, "", false}, "", extName, spec);
        }
    }

    while (!peek().is(TokenKind::End)) {
        if (!peek().is(TokenKind::Slash))
            fail("", "a subcommand is expected, written as \"/\" and its name, found " + peek().describe(), peek(),
                 subcommandNames());
        take();
        const Token name = peek();
        if (!name.is(TokenKind::Word))
            fail("", "a subcommand name is expected after \"/\", found " + name.describe(), name, subcommandNames());
        const SubComDescriptor* sub = namedSubcommand(name.text);
        if (sub == nullptr) fail("", "subcommand " + name.describe() + " is not recognized", name, subcommandNames());
        for (const auto& given : spec.subcommands)
            if (given.impl().name == sub->getName())
                fail("", "subcommand \"" + sub->getName() + "\" is given more than once", name);
        take();
        readSubcommand(Level{&sub->impl().params, sub->getName(), false}, sub->getName(), sub->getName(), spec);
    }
    return spec;
}

void CommandParser::readCommandName() {
    std::istringstream words(descriptor_.getCommandName());
    std::string word;
    while (words >> word) {
        const Token& t = peek();
        if (!t.is(TokenKind::Word) || !equalsIgnoreCase(t.text, word))
            fail("", "the command must start with \"" + descriptor_.getCommandName() + "\", found " + t.describe(), t);
        take();
    }
}

// "/VARIABLE=..." right after the command name is accepted as the global part.
bool CommandParser::globalPartStartsWithSlash() {
    const SubComDescriptor* global = descriptor_.getSubComDesc("");
    if (global == nullptr || !peek().is(TokenKind::Slash) || !peek(1).is(TokenKind::Word)) return false;
    const std::string name(peek(1).text);
    return namedSubcommand(name) == nullptr && global->getParamDesc(name) != nullptr;
}

const SubComDescriptor* CommandParser::namedSubcommand(std::string_view name) const {
    if (name.empty()) return nullptr;
    for (const auto& s : descriptor_.impl().subcommands)
        if (equalsIgnoreCase(s.getName(), name)) return &s;
    return nullptr;
}

std::string CommandParser::subcommandNames() const {
    std::vector<std::string> names;
    for (const auto& s : descriptor_.impl().subcommands)
        if (!s.getName().empty()) names.push_back(s.getName());
    return joinWords(names);
}

void CommandParser::readSubcommand(const Level& level, const std::string& name, const std::string& extName,
                                   CommandSpec::Impl& spec) {
    SubComObj sub;
    sub.impl().name = name;
    sub.impl().extName = extName;
    sub.impl().line = peek().line;
    sub.impl().column = peek().column;
    readItems(level, extName, nullptr, sub.impl().params);
    spec.subcommands.push_back(sub);
}

void CommandParser::readItems(const Level& level, const std::string& extName, const Token* openParen,
                              std::vector<ParamObj>& out) {
    const std::string what = level.qualifiers ? "qualifier" : "keyword";
    const std::string allowed = keywordNames(*level.params);
    const ParamDescriptor* previous = nullptr;
    for (;;) {
        const Token t = peek();
        if (t.is(TokenKind::End) || t.is(TokenKind::Slash)) {
            if (openParen != nullptr) fail(level.context, "the \"(\" is not closed", *openParen);
            return;
        }
        if (t.is(TokenKind::RightParen)) {
            if (openParen == nullptr) fail(level.context, "\")\" has no matching \"(\"", t);
            take();
            return;
        }
        if (t.is(TokenKind::RightBracket)) fail(level.context, "\"]\" has no matching \"[\"", t);
        const ParamDescriptor* desc = t.is(TokenKind::Word) ? findParam(*level.params, t.text) : nullptr;
        if (desc == nullptr && previous != nullptr) rejectSecondValue(level, *previous, t);
        if (!t.is(TokenKind::Word))
            fail(level.context, "a " + what + " is expected, found " + t.describe(), t, allowed);
        if (desc == nullptr) fail(level.context, what + " " + t.describe() + " is not recognized", t, allowed);
        for (const auto& given : out)
            if (given.impl().name == desc->getName())
                fail(level.context, what + " \"" + desc->getName() + "\" is given more than once", t);
        out.push_back(readParam(*desc, level, extName));
        previous = desc;
    }
}

// "CILEVEL=90 95" or "VARIABLE=id x1" (one variable): a second value where a
// keyword belongs is named as such rather than as an unknown keyword.
void CommandParser::rejectSecondValue(const Level& level, const ParamDescriptor& previous, const Token& t) {
    const auto spec = previous.impl().spec;
    if (spec == UPSpecTypes::ParamBareKeyword || spec == UPSpecTypes::ParamQualifiedKeyword ||
        spec == UPSpecTypes::ParamVariableList || spec == UPSpecTypes::ParamVariableListContinued)
        return;
    const std::string context = joinContext(level.context, previous.getName());
    if (t.is(TokenKind::Number) || t.is(TokenKind::String))
        fail(context, "only one value is allowed, found " + t.describe(), t);
    const bool startsItem = peek(1).is(TokenKind::Equals) || peek(1).is(TokenKind::LeftParen);
    if (spec == UPSpecTypes::ParamVariable && t.is(TokenKind::Word) && !startsItem && variables_.find(t.text) >= 0)
        fail(context, "only one variable name is allowed, found " + t.describe(), t);
}

ParamObj CommandParser::readParam(const ParamDescriptor& desc, const Level& level, const std::string& extName) {
    const Token key = take();
    ParamObj obj;
    ParamObj::Impl& p = obj.impl();
    p.name = desc.getName();
    p.subComExtName = extName;
    p.line = key.line;
    p.column = key.column;
    const std::string context = joinContext(level.context, desc.getName());

    switch (desc.impl().spec) {
        case UPSpecTypes::ParamBareKeyword:
            if (peek().is(TokenKind::Equals) || peek().is(TokenKind::LeftParen))
                fail(context, desc.getName() + " takes no value, found " + peek().describe(), peek());
            break;
        case UPSpecTypes::ParamQualifiedKeyword:
            if (peek().is(TokenKind::Equals))
                fail(context, desc.getName() + " takes qualifiers in parentheses, not a value, found \"=\"", peek(),
                     keywordNames(desc.impl().qualifiers));
            if (peek().is(TokenKind::LeftParen)) {
                const Token open = take();
                p.hasQualifiers = true;
                readItems(Level{&desc.impl().qualifiers, context, true}, extName, &open, p.qualifiers);
            }
            break;
        case UPSpecTypes::ParamKeywordValue:
            expectEquals(context, desc);
            readAllowedWord(context, desc, p);
            break;
        case UPSpecTypes::ParamNumber:
            expectEquals(context, desc);
            readNumber(context, desc, p);
            break;
        case UPSpecTypes::ParamVariable:
            expectEquals(context, desc);
            readVariable(context, desc, p);
            break;
        case UPSpecTypes::ParamVariableList:
            expectEquals(context, desc);
            readVariableList(context, desc, level, p);
            break;
        case UPSpecTypes::ParamVariableListContinued:
            // Continues the list before it, as in "a b WITH c d"; "WITH=c d" is read alike.
            if (peek().is(TokenKind::Equals)) take();
            readVariableList(context, desc, level, p);
            break;
        case UPSpecTypes::ParamFileSpec:
            expectEquals(context, desc);
            readSingleValue(context, "a file name", p);
            break;
        default:
            // Kinds this command does not use take one value of any form.
            expectEquals(context, desc);
            readSingleValue(context, "a value", p);
            break;
    }
    return obj;
}

void CommandParser::expectEquals(const std::string& context, const ParamDescriptor& desc) {
    if (!peek().is(TokenKind::Equals))
        fail(context, "\"=\" is expected after " + desc.getName() + ", found " + peek().describe(), peek());
    take();
}

void CommandParser::readAllowedWord(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out) {
    const auto& allowedValues = desc.impl().allowedValues;
    const std::string allowed = joinWords(allowedValues);
    const Token t = peek();
    if (!t.is(TokenKind::Word)) fail(context, "a word is expected, found " + t.describe(), t, allowed);
    const std::string word = upperCase(t.text);
    bool known = allowedValues.empty();
    for (const auto& a : allowedValues) known = known || a == word;
    if (!known) fail(context, t.describe() + " is not an allowed value", t, allowed);
    take();
    out.value = ParamObj::Impl::Value::Word;
    out.text = word;
    out.token = t.text;
}

void CommandParser::readNumber(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out) {
    const ParamDescriptor::Impl& d = desc.impl();
    const Token t = peek();
    const std::string allowed = allowedRange(d);
    if (!t.is(TokenKind::Number)) fail(context, "a number is expected, found " + t.describe(), t, allowed);
    const double v = t.number();
    const std::string shown = shownText(t.text);
    if (d.lowerOption == UPSpecTypes::LowerInclusive && v < d.lower)
        fail(context, "value " + shown + " is below the minimum of " + formatNumber(d.lower), t, allowed);
    if (d.lowerOption == UPSpecTypes::LowerExclusive && v <= d.lower)
        fail(context, "value " + shown + " must be greater than " + formatNumber(d.lower), t, allowed);
    if (d.upperOption == UPSpecTypes::UpperInclusive && v > d.upper)
        fail(context, "value " + shown + " is above the maximum of " + formatNumber(d.upper), t, allowed);
    if (d.upperOption == UPSpecTypes::UpperExclusive && v >= d.upper)
        fail(context, "value " + shown + " must be less than " + formatNumber(d.upper), t, allowed);
    take();
    out.value = ParamObj::Impl::Value::Number;
    out.number = v;
    out.token = t.text;
}

void CommandParser::readVariable(const std::string& context, const ParamDescriptor& desc, ParamObj::Impl& out) {
    const bool bracketed = peek().is(TokenKind::LeftBracket);
    if (bracketed && desc.impl().brackets != UPSpecTypes::BracketsOptional)
        fail(context, "brackets are not allowed here, found \"[\"", peek());
    const Token open = bracketed ? take() : Token{};
    const Token t = peek();
    if (!t.is(TokenKind::Word) || isTo(t)) fail(context, "a variable name is expected, found " + t.describe(), t);
    findVariable(context, t);
    take();
    if (bracketed) {
        if (!peek().is(TokenKind::RightBracket)) fail(context, "the \"[\" is not closed", open);
        take();
    }
    out.value = ParamObj::Impl::Value::Variables;
    out.names = {std::string(t.text)};
    out.token = t.text;
}

void CommandParser::readVariableList(const std::string& context, const ParamDescriptor& desc, const Level& level,
                                     ParamObj::Impl& out) {
    const bool bracketed = peek().is(TokenKind::LeftBracket);
    if (bracketed && desc.impl().brackets != UPSpecTypes::BracketsOptional)
        fail(context, "brackets are not allowed here, found \"[\"", peek());
    const Token open = bracketed ? take() : Token{};
    std::vector<Token> written;
    Token stop;
    const std::size_t mostNames = mostListNames();
    std::size_t namesWritten = 0;
    for (;;) {
        const Token t = peek();
        // A word followed by "=" or "(" starts the next keyword, known or not.
        const bool startsItem =
            t.is(TokenKind::Word) && (peek(1).is(TokenKind::Equals) || peek(1).is(TokenKind::LeftParen));
        if (bracketed) {
            if (t.is(TokenKind::RightBracket)) {
                stop = take();
                break;
            }
            if (t.is(TokenKind::End) || t.is(TokenKind::Slash) || t.is(TokenKind::RightParen) ||
                t.is(TokenKind::Equals) || t.is(TokenKind::LeftParen) || startsItem)
                fail(context, "the \"[\" is not closed", open);
            if (t.is(TokenKind::LeftBracket)) fail(context, "\"[\" is not expected inside brackets", t);
        } else {
            if (t.is(TokenKind::End) || t.is(TokenKind::Slash) || t.is(TokenKind::RightParen) || startsItem ||
                (t.is(TokenKind::Word) && findParam(*level.params, t.text) != nullptr)) {
                stop = t;
                break;
            }
            if (t.is(TokenKind::RightBracket)) fail(context, "\"]\" has no matching \"[\"", t);
            if (t.is(TokenKind::LeftBracket)) fail(context, "brackets must enclose the whole list, found \"[\"", t);
        }
        if (!t.is(TokenKind::Word)) fail(context, "a variable name is expected, found " + t.describe(), t);
        if (!isTo(t) && ++namesWritten > mostNames) failListTooLong(context, t);
        written.push_back(take());
    }
    if (written.empty()) fail(context, "at least one variable name is expected, found " + stop.describe(), stop);

    out.value = ParamObj::Impl::Value::Variables;
    out.names = resolveNames(context, written);
    std::size_t length = bracketed ? 2 : 0;
    for (const Token& t : written) length += t.text.size() + 1;
    out.token.reserve(length);
    if (bracketed) out.token += '[';
    for (std::size_t i = 0; i < written.size(); ++i) {
        if (i > 0) out.token += ' ';
        out.token += written[i].text;
    }
    if (bracketed) out.token += ']';
}

void CommandParser::readSingleValue(const std::string& context, const std::string& expected, ParamObj::Impl& out) {
    const Token t = peek();
    if (t.is(TokenKind::String)) {
        out.value = ParamObj::Impl::Value::String;
        out.text = t.value();
    } else if (t.is(TokenKind::Word)) {
        out.value = ParamObj::Impl::Value::Word;
        out.text = t.text;
    } else if (t.is(TokenKind::Number)) {
        out.value = ParamObj::Impl::Value::Number;
        out.number = t.number();
    } else {
        fail(context, expected + " is expected, found " + t.describe() + "; write it in quotes", t);
    }
    out.token = t.text;
    take();
}

std::vector<std::string> CommandParser::resolveNames(const std::string& context, const std::vector<Token>& written) {
    std::vector<std::string> names;
    names.reserve(written.size());
    const std::string misplacedTo = "\"TO\" must stand between two variable names, as in \"a TO c\"";
    for (std::size_t i = 0; i < written.size(); ++i) {
        const Token& first = written[i];
        if (isTo(first)) fail(context, misplacedTo, first);
        const bool range = i + 1 < written.size() && isTo(written[i + 1]);
        if (!range) {
            findVariable(context, first);
            if (names.size() == mostListNames()) failListTooLong(context, first);
            names.emplace_back(first.text);
            continue;
        }
        if (i + 2 >= written.size() || isTo(written[i + 2])) fail(context, misplacedTo, written[i + 1]);
        const Token& last = written[i + 2];
        const int from = findVariable(context, first);
        const int to = findVariable(context, last);
        if (from > to)
            fail(context,
                 "the range \"" + shownText(first.text) + " TO " + shownText(last.text) +
                     "\" runs backwards: " + first.describe() + " comes after " + last.describe() + " in the data set",
                 first);
        if (names.size() + static_cast<std::size_t>(to - from) + 1 > mostListNames()) failListTooLong(context, first);
        // The two ends keep their written spelling, the names between them the dictionary's.
        names.emplace_back(first.text);
        for (int k = from + 1; k < to; ++k) names.push_back(data_->variable(k).name);
        if (to > from) names.emplace_back(last.text);
        i += 2;
    }
    return names;
}

std::size_t CommandParser::mostListNames() const {
    const std::size_t variables = data_ ? static_cast<std::size_t>(std::max(0, data_->variableCount())) : 0;
    return std::max(kMostListNames, variables);
}

void CommandParser::failListTooLong(const std::string& context, const Token& at) const {
    fail(context, "a variable list may hold at most " + groupedCount(mostListNames()) + " names; this one holds more",
         at);
}

int CommandParser::findVariable(const std::string& context, const Token& name) {
    if (!data_) fail(context, "there is no active data set in which to find variable " + name.describe(), name);
    const int index = variables_.find(name.text);
    if (index < 0) fail(context, "variable " + name.describe() + " is not in the active data set", name);
    return index;
}

}  // namespace host::syntax
