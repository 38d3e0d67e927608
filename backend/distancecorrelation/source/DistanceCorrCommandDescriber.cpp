#include "DistanceCorrCommandDescriber.h"

#include "CommandDescriptor.h"
#include "ParamDescriptor.h"
#include "SubComDescriptor.h"

namespace {

using UPSpecTypes::BracketOptions;
using UPSpecTypes::LowerBdryOptions;
using UPSpecTypes::ParamSpec;
using UPSpecTypes::QualifOptions;
using UPSpecTypes::SubComSpec;
using UPSpecTypes::UpperBdryOptions;

// The host's enumerations are used by their numbers.
ParamDescriptor param(const char* name, int spec, bool flag1, bool flag2, int brackets = 0) {
    return ParamDescriptor(name, static_cast<ParamSpec>(spec), flag1, flag2,
                           static_cast<BracketOptions>(brackets));
}

ParamDescriptor number(const char* name, double lower, bool hasUpper, double upper) {
    ParamDescriptor desc = param(name, 7, false, true);
    desc.setLowerBoundary(lower, static_cast<LowerBdryOptions>(1));
    if (hasUpper) desc.setUpperBoundary(upper, static_cast<UpperBdryOptions>(1));
    return desc;
}

SubComDescriptor subcommand(const char* name, int spec) {
    return SubComDescriptor(name, static_cast<SubComSpec>(spec), false, false);
}

}  // namespace

DistanceCorrCommandDescriber::DistanceCorrCommandDescriber(CommandDescriptor& descriptor)
    : descriptor_(descriptor) {
    message_.SetCommandName("DISTANCE CORRELATION");
    message_.SetProcedureTitle("Distance Correlation");
}

unsigned DistanceCorrCommandDescriber::start() {
    unsigned status = 0;
    try {
        // Each status is kept, not tested: the last one decides.
        for (int i = kGlobal; i <= kPlot; ++i) status = setSubCommandDescription(static_cast<subCommand>(i));
    } catch (...) {
        return 1;
    }
    return status;
}

unsigned DistanceCorrCommandDescriber::setSubCommandDescription(subCommand which) {
    switch (which) {
        case kGlobal: describeGlobalCommands(); return 0;
        case kId: describeId(); return 0;
        case kCriteria: describeCriteria(); return 0;
        case kPrint: describePrint(); return 0;
        case kPlot: describePlot(); return 0;
    }
    return 1;
}

void DistanceCorrCommandDescriber::describeGlobalCommands() {
    SubComDescriptor global = subcommand("", 1);
    ParamDescriptor variable = param("VARIABLE", 16, true, true, 3);
    variable.setQualifOption(static_cast<QualifOptions>(0));
    global.addParamDesc(variable);
    descriptor_.addSubComDesc(global);
}

void DistanceCorrCommandDescriber::describeId() {
    SubComDescriptor id = subcommand("ID", 1);
    id.addParamDesc(param("VARIABLE", 15, false, true));
    descriptor_.addSubComDesc(id);
}

void DistanceCorrCommandDescriber::describeCriteria() {
    SubComDescriptor criteria = subcommand("CRITERIA", 2);

    ParamDescriptor normalization = param("NORMALIZATION", 3, false, true);
    for (const char* word : {"NONE", "MINMAX", "ZSCORE", "ROBUST", "LOG"}) normalization.addStringValue(word);
    criteria.addParamDesc(normalization);

    criteria.addParamDesc(number("CILEVEL", 0.0, true, 100.0));

    ParamDescriptor permutation = param("PERMUTATION", 28, false, false);
    permutation.setQualifOption(static_cast<QualifOptions>(0));
    permutation.addQualifDesc(number("SEED", 0.0, false, 0.0));
    permutation.addQualifDesc(number("MAXITERATIONS", 0.0, false, 0.0));
    permutation.addQualifDesc(number("SIGNIFICANCELEVEL", 0.0, true, 1.0));
    criteria.addParamDesc(permutation);

    descriptor_.addSubComDesc(criteria);
}

void DistanceCorrCommandDescriber::describePrint() {
    SubComDescriptor print = subcommand("PRINT", 2);
    for (const char* keyword : {"DETAILS", "DISTCORRCOEFF", "CORREST", "DISTVAR"})
        print.addParamDesc(param(keyword, 0, false, false));

    ParamDescriptor distMatrix = param("DISTMATRIX", 28, false, true);
    distMatrix.setQualifOption(static_cast<QualifOptions>(0));
    distMatrix.addQualifDesc(param("CONFIGURE", 16, true, true, 3));
    ParamDescriptor save = param("SAVE", 3, false, true);
    save.addStringValue("TRUE");
    save.addStringValue("FALSE");
    distMatrix.addQualifDesc(save);
    distMatrix.addQualifDesc(param("OUTFILE", 23, false, true));
    print.addParamDesc(distMatrix);

    descriptor_.addSubComDesc(print);
}

void DistanceCorrCommandDescriber::describePlot() {
    SubComDescriptor plot = subcommand("PLOT", 2);
    ParamDescriptor scatter = param("SCATTERPLOT", 28, true, true);
    scatter.setQualifOption(static_cast<QualifOptions>(0));
    scatter.addQualifDesc(param("XAXIS", 15, true, true));
    scatter.addQualifDesc(param("YAXIS", 15, true, true));
    plot.addParamDesc(scatter);
    descriptor_.addSubComDesc(plot);
}
