#include "DependenceCommandDescriber.h"

#include "CommandDescriptor.h"
#include "ParamDescriptor.h"
#include "SubComDescriptor.h"

namespace {

using namespace UPSpecTypes;

ParamDescriptor keyword(const char* name, ParamSpec spec, BracketOptions brackets = BracketsNone) {
    return ParamDescriptor(name, spec, false, false, brackets);
}

ParamDescriptor words(const char* name, std::initializer_list<const char*> allowed) {
    ParamDescriptor desc = keyword(name, ParamKeywordValue);
    for (const char* word : allowed) desc.addStringValue(word);
    return desc;
}

SubComDescriptor subcommand(const char* name, SubComSpec spec) { return SubComDescriptor(name, spec, false, false); }

}  // namespace

unsigned DependenceCommandDescriber::start() {
    try {
        SubComDescriptor global = subcommand("", SubComPlain);
        global.addParamDesc(keyword("VARIABLES", ParamVariableList, BracketsOptional));
        global.addParamDesc(keyword("WITH", ParamVariableListContinued, BracketsOptional));
        global.addParamDesc(keyword("CONTROL", ParamVariableList, BracketsOptional));
        descriptor_.addSubComDesc(global);

        SubComDescriptor criteria = subcommand("CRITERIA", SubComKeywords);
        criteria.addParamDesc(words("STATISTIC", {"U", "V"}));
        ParamDescriptor exponent = keyword("EXPONENT", ParamNumber);
        exponent.setLowerBoundary(0.0, LowerExclusive);
        exponent.setUpperBoundary(2.0, UpperExclusive);
        criteria.addParamDesc(exponent);
        criteria.addParamDesc(words("MODE", {"PAIRS", "SETS"}));
        descriptor_.addSubComDesc(criteria);

        SubComDescriptor test = subcommand("TEST", SubComKeywords);
        test.addParamDesc(keyword("TTEST", ParamBareKeyword));
        ParamDescriptor permutation = keyword("PERMUTATION", ParamQualifiedKeyword);
        permutation.setQualifOption(QualifParenthesised);
        ParamDescriptor seed = keyword("SEED", ParamNumber);
        seed.setLowerBoundary(0.0, LowerInclusive);
        permutation.addQualifDesc(seed);
        ParamDescriptor replicates = keyword("REPLICATES", ParamNumber);
        replicates.setLowerBoundary(1.0, LowerInclusive);
        permutation.addQualifDesc(replicates);
        test.addParamDesc(permutation);
        test.addParamDesc(keyword("NONE", ParamBareKeyword));
        descriptor_.addSubComDesc(test);

        SubComDescriptor missing = subcommand("MISSING", SubComKeywords);
        missing.addParamDesc(keyword("LISTWISE", ParamBareKeyword));
        missing.addParamDesc(keyword("PAIRWISE", ParamBareKeyword));
        descriptor_.addSubComDesc(missing);
    } catch (...) {
        return 1;
    }
    return 0;
}
