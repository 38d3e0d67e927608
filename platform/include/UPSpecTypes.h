#pragma once

// Enumerations of the host's universal parser. Procedures use them by number;
// the names below are the reference host's reading of each number.
namespace UPSpecTypes {

enum SubComSpec {
    SubComPlain = 1,     // subcommand made of parameters (the global part, ID)
    SubComKeywords = 2   // subcommand made of keywords (CRITERIA, PRINT, PLOT)
};

enum ParamSpec {
    ParamBareKeyword = 0,       // keyword with no value
    ParamKeywordValue = 3,      // keyword = one word from the allowed list
    ParamNumber = 7,            // keyword = number
    ParamVariable = 15,         // keyword = one variable name
    ParamVariableList = 16,     // keyword = variable list
    ParamVariableListContinued = 17,  // second variable list, "=" optional: "a b WITH c d"
    ParamFileSpec = 23,         // keyword = file specification
    ParamQualifiedKeyword = 28  // keyword (qualifier = value ...)
};

enum BracketOptions {
    BracketsNone = 0,
    BracketsOptional = 3        // value may be written with or without [ ]
};

enum QualifOptions {
    QualifParenthesised = 0     // qualifiers follow the keyword inside ( )
};

enum LowerBdryOptions {
    LowerNone = 0,
    LowerInclusive = 1,
    LowerExclusive = 2
};

enum UpperBdryOptions {
    UpperNone = 0,
    UpperInclusive = 1,
    UpperExclusive = 2
};

enum RepeatVarOptions {
    RepeatVarForbidden = 0,     // naming one variable twice is an error
    RepeatVarAllowed = 1
};

}  // namespace UPSpecTypes
