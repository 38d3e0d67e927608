#pragma once
#include <string>
#include <vector>

#include "ParamObj.h"

// One keyword or qualifier as the parser found it.
struct ParamObj::Impl {
    enum class Value {
        None,      // bare keyword, or a keyword that carries qualifiers
        Word,      // a bare word (stored upper case when it came from an allowed list)
        String,    // a quoted string; text holds its content
        Number,
        Variables  // one variable name or a variable list
    };

    std::string name;           // the described name, upper case
    std::string subComExtName;  // the subcommand it belongs to, as the user knows it
    Value value = Value::None;
    std::string text;                // the word or the string's content
    double number = 0.0;
    std::vector<std::string> names;  // variable names as written, ranges expanded
    std::string token;               // the value as written in the command
    bool hasQualifiers = false;      // "(" ... ")" was written after the keyword
    std::vector<ParamObj> qualifiers;
    int line = 0;                    // where the keyword stands
    int column = 0;
};
