#include "SubCommands.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <unordered_set>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DistanceCorrVarList.h"
#include "GetExtendFilePath.h"
#include "MultiPassRecordIter.h"
#include "ParamObj.h"
#include "ProcedureDataSource.h"
#include "Record.h"
#include "SubComObj.h"
#include "VarSpecObj.h"
#include "VELA_Variable.h"
#include "VelaVarName.h"

namespace {

// The host's repeat option is used by its number: naming a variable twice is an error.
const auto kNoRepeatedVars = static_cast<UPSpecTypes::RepeatVarOptions>(0);

const int kScaleLevel = 3;
const int kOrdinalLevel = 2;

// Outcome of reading one axis qualifier of SCATTERPLOT.
enum class AxisRead { Absent, Invalid, Accepted };

// The descriptor of a keyword that carries qualifiers; null when the grammar lacks it.
const ParamDescriptor* qualifiedKeywordDesc(const CommandDescriptor& descriptor,
                                            const std::string& subcommand,
                                            const std::string& keyword) {
    const SubComDescriptor* sub = descriptor.getSubComDesc(subcommand);
    return sub != nullptr ? sub->getParamDesc(keyword) : nullptr;
}

// The display text of a variable: its label, or its name when it has none.
std::string labelOrName(const VELA_Variable& variable) {
    const char* label = variable.GetLabel();
    return label != nullptr ? std::string(label) : variable.GetName();
}

}  // namespace

SubCommands::PrintSettings::PrintSettings()
    : details_(false),
      distanceCorrelationCoefficient_(false),
      correlationEstimates_(false),
      distanceVariance_(false),
      distanceMatrix_(false),
      save_(false) {}

void SubCommands::PrintSettings::setOutFileSpec(std::string path, bool forWriting) {
    outFileSpec_.Init(path, forWriting, true);
}

SubCommands::SubCommands(const CommandSpec& spec, const CommandDescriptor& descriptor,
                         const ProcedureDataSource& source)
    : commandSpec_(spec), commandDescriptor_(descriptor), dataSource_(source) {
    message_.SetCommandName("DISTANCE CORRELATION");
    message_.SetProcedureTitle("Distance Correlation");
}

SubCommands::~SubCommands() = default;

bool SubCommands::get_Subcommand_Global() {
    bool result = false;
    const SubComObj* global = commandSpec_.getSubComObj("");
    if (global == nullptr) return false;

    // The names as written; later checks compare against these texts.
    std::vector<std::string> names;
    getStringListFromParam(global->getParamObj("VARIABLE"), names);
    global_.setGlobalVarNames(names);

    const ParamObj* variable = global->getParamObj("VARIABLE");
    if (variable == nullptr) return false;

    std::vector<std::string> varList;
    variable->getVarList(varList);
    VarSpecObj varSpec("VARIABLE", global->getSubComExtName(), commandDescriptor_, &dataSource_,
                       true);
    result = varSpec.ValidateVariables(varList, kNoRepeatedVars);
    if (!result) return false;

    if (varSpec.GetNValidVars() < 2) {
        message_.GenericError("At least two var names ...");
        return false;
    }

    std::vector<std::string> labels;
    std::vector<int> indices;
    for (int index : varSpec.GetValidVarList()) {
        const VELA_Variable var = dataSource_.GetVariable(index);
        labels.push_back(labelOrName(var));
        if (var.GetMeasurementLevel() == kScaleLevel) {
            indices.push_back(index);
        } else {
            // Only the first offending variable is reported.
            message_.NeedDepVarCont(VelaVarName(var.GetName()), "VARIABLE", nullptr);
            result = false;
            break;
        }
    }

    if (result) {
        std::vector<std::vector<double>> data;
        fetchDataFromActiveDataSet(indices, data);
        global_.setGlobalData(data);
        global_.setGlobalVarLabels(labels);
    }
    return result;
}

bool SubCommands::get_SubCommand_ID() {
    const bool result = true;
    const SubComObj* idSub = commandSpec_.getSubComObj("ID");
    if (idSub == nullptr) {
        id_.setIdEnabled(false);
        return true;
    }
    id_.setIdEnabled(true);

    const ParamObj* variable = idSub->getParamObj("VARIABLE");
    if (variable == nullptr) return true;

    std::string name;
    variable->getVarName(name);
    VarSpecObj varSpec("VARIABLE", idSub->getSubComExtName(), commandDescriptor_, &dataSource_,
                       true);
    const int index = varSpec.ValidateVariable(name);
    if (index < 0) return false;

    // Case identifiers may be ordinal; analysis variables may not.
    const int level = dataSource_.GetVariable(index).GetMeasurementLevel();
    if (level != kScaleLevel && level != kOrdinalLevel) {
        message_.NeedDepVarCont(VelaVarName(name), "VARIABLE", nullptr);
        return false;
    }

    std::vector<double> data;
    fetchDataFromActiveDataSet(index, data);
    id_.setIdData(data);
    id_.setIdName(name);
    return result;
}

bool SubCommands::get_Subcommand_Criteria() {
    // No checks beyond the grammar's bounds: CRITERIA never stops the run.
    const SubComObj* criteria = commandSpec_.getSubComObj("CRITERIA");
    if (criteria == nullptr) return true;

    const std::string normalization =
        getStringValueFromParam(criteria->getParamObj("NORMALIZATION"), "NONE", true);
    const double ciLevel = getNumberValueFromParam(criteria->getParamObj("CILEVEL"), 95.0);
    double seed = 2e6;
    double maxIterations = 1000.0;
    double sigLevel = 0.05;

    const ParamObj* permutation = criteria->getParamObj("PERMUTATION");
    if (permutation != nullptr) {
        criteria_.set_permEnabled(true);
        const ParamDescriptor* desc =
            qualifiedKeywordDesc(commandDescriptor_, "CRITERIA", "PERMUTATION");
        std::vector<ParamObj> qualifiers;
        if (desc != nullptr && permutation->getStringQualList(qualifiers, desc, nullptr)) {
            seed = getNumberValueFromParam(ParamObj::getParamObj("SEED", qualifiers), seed);
            maxIterations = getNumberValueFromParam(
                ParamObj::getParamObj("MAXITERATIONS", qualifiers), maxIterations);
            sigLevel = getNumberValueFromParam(
                ParamObj::getParamObj("SIGNIFICANCELEVEL", qualifiers), sigLevel);
        }
    } else {
        criteria_.set_permEnabled(false);
    }

    criteria_.set_normalization(normalization);
    criteria_.set_ciLevel(ciLevel);
    criteria_.set_permSeed(seed);
    criteria_.set_permMaxIterations(maxIterations);
    criteria_.set_permSigLevel(sigLevel);
    return true;
}

bool SubCommands::get_Subcommand_Print() {
    bool result = true;
    const SubComObj* print = commandSpec_.getSubComObj("PRINT");
    if (print == nullptr) return true;

    if (print->getParamObj("DETAILS") != nullptr) print_.set_details(true);
    if (print->getParamObj("DISTCORRCOEFF") != nullptr) print_.set_distanceCorrelationCoefficient(true);
    if (print->getParamObj("CORREST") != nullptr) print_.set_correlationEstimates(true);
    if (print->getParamObj("DISTVAR") != nullptr) print_.set_distanceVariance(true);

    const ParamObj* distMatrix = print->getParamObj("DISTMATRIX");
    if (distMatrix == nullptr) {
        print_.set_distanceMatrix(false);
        return result;
    }
    print_.set_distanceMatrix(true);
    const ParamDescriptor* desc = qualifiedKeywordDesc(commandDescriptor_, "PRINT", "DISTMATRIX");
    if (desc == nullptr) return result;
    std::vector<ParamObj> qualifiers;
    if (!distMatrix->getStringQualList(qualifiers, desc, nullptr)) return result;

    // The matrices to print must be named; a missing CONFIGURE stops the run silently.
    const ParamObj* configure = ParamObj::getParamObj("CONFIGURE", qualifiers);
    if (configure == nullptr) {
        result = false;
    } else {
        VarSpecObj varSpec("CONFIGURE", "DISTMATRIX", commandDescriptor_, &dataSource_, false);
        std::vector<std::string> varList;
        if (configure->getVarList(varList)) {
            if (!varSpec.ValidateVariables(varList, kNoRepeatedVars)) {
                result = false;
            } else {
                std::vector<std::string> names;
                if (getStringListFromParam(configure, names)) {
                    if (checkIsValidVarName(names)) {
                        print_.set_configList(names);
                    } else {
                        message_.GenericError("Only input varlist are allowed in CONFIGURE ...");
                        result = false;
                    }
                }
            }
        }
    }

    const ParamObj* save = ParamObj::getParamObj("SAVE", qualifiers);
    if (save == nullptr || !result) return result;
    if (getStringValueFromParam(save, "FALSE", true) != "TRUE") return result;
    print_.set_save(true);

    const ParamObj* outFile = ParamObj::getParamObj("OUTFILE", qualifiers);
    if (outFile == nullptr) {
        message_.GenericError("Param required for ^1 subcom when ^2 is enabled",
                              save->getSubComExtName().c_str(), save->getParamName().c_str());
        return false;
    }

    std::string fileName;
    bool isLiteral = false;
    if (!outFile->getStringOrLiteral(fileName, isLiteral)) {
        // Reported, but the subcommand still passes and no file is set.
        const std::string token = outFile->getStringToken();
        const std::string paramName = outFile->getParamName();
        const std::string subComName = outFile->getSubComExtName();
        if (!token.empty())
            message_.GenericError("^1 invalid file name param ^2 subcom ^3 ...", token.c_str(),
                                  paramName.c_str(), subComName.c_str());
        else
            message_.GenericError("Invalid file name param ^1 subcom ^2 ...", paramName.c_str(),
                                  subComName.c_str());
        return result;
    }
    if (fileName.empty()) return result;

    // The host has reported why a path cannot be used.
    const std::string path = GetExtendFilePath(fileName, true, false, true);
    if (path.empty()) return false;
    print_.setOutFileSpec(path, true);
    return result;
}

bool SubCommands::get_Subcommand_Plot() {
    bool result = true;
    const SubComObj* plot = commandSpec_.getSubComObj("PLOT");
    if (plot == nullptr) return true;

    const ParamObj* scatter = plot->getParamObj("SCATTERPLOT");
    if (scatter == nullptr) {
        plot_.set_scatterPlotEnabled(false);
        return true;
    }
    plot_.set_scatterPlotEnabled(true);
    const ParamDescriptor* desc = qualifiedKeywordDesc(commandDescriptor_, "PLOT", "SCATTERPLOT");
    std::vector<ParamObj> qualifiers;
    if (desc == nullptr || !scatter->getStringQualList(qualifiers, desc, nullptr)) result = false;

    // An axis must be a valid variable written in the VARIABLE list.
    auto readAxis = [&](const char* axis, std::string& name) {
        const ParamObj* param = ParamObj::getParamObj(axis, qualifiers);
        if (param == nullptr) return AxisRead::Absent;
        VarSpecObj varSpec(axis, "SCATTERPLOT", commandDescriptor_, &dataSource_, false);
        param->getVarName(name);
        if (varSpec.ValidateVariable(name) < 0) return AxisRead::Invalid;
        if (!checkIsValidVarName(name)) {
            message_.GenericError("Only input varlist are allowed in SCATTERPLOT ...");
            return AxisRead::Invalid;
        }
        return AxisRead::Accepted;
    };

    std::string xName;
    const AxisRead x = readAxis("XAXIS", xName);
    if (x == AxisRead::Accepted) plot_.set_xAxisName(xName);
    if (x != AxisRead::Accepted) result = false;
    // A present XAXIS that failed ends the reading; an absent one does not.
    if (x != AxisRead::Absent && !result) return false;

    std::string yName;
    const AxisRead y = readAxis("YAXIS", yName);
    if (y == AxisRead::Accepted) plot_.set_yAxisName(yName);
    if (y != AxisRead::Accepted) result = false;
    return result;
}

bool SubCommands::getStringListFromParam(const ParamObj* param, std::vector<std::string>& out) {
    if (param == nullptr) return false;
    std::vector<std::string> list;
    if (!param->getStringList(list)) return false;
    out = list;
    return true;
}

std::string SubCommands::getStringValueFromParam(const ParamObj* param, std::string defaultValue,
                                                 bool upperCase) {
    if (param == nullptr) return defaultValue;
    std::string value;
    bool isLiteral = false;
    const bool read = upperCase ? param->getUpStringGeneric(value)
                                : param->getStringOrLiteral(value, isLiteral);
    return read ? value : defaultValue;
}

double SubCommands::getNumberValueFromParam(const ParamObj* param, double defaultValue) {
    double value = 0.0;
    if (param == nullptr || !param->getNumberValue(value)) return defaultValue;
    return value;
}

int SubCommands::getIntegerValueFromParam(const ParamObj* param, int defaultValue) {
    int value = 0;
    if (param == nullptr || !param->getIntegerValue(value)) return defaultValue;
    return value;
}

bool SubCommands::checkIsValidVarName(const std::vector<std::string>& names) const {
    // Exact text, as written in VARIABLE; one look-up per name, so that long
    // lists are checked in linear time.
    const std::vector<std::string>& written = global_.getGlobalVarNames();
    const std::unordered_set<std::string_view> known(written.begin(), written.end());
    for (const std::string& name : names)
        if (known.count(name) == 0) return false;
    return true;
}

bool SubCommands::checkIsValidVarName(const std::string& name) const {
    // Exact text, as written in VARIABLE: "X" does not match "x".
    const std::vector<std::string>& written = global_.getGlobalVarNames();
    return std::find(written.begin(), written.end(), name) != written.end();
}

unsigned SubCommands::fetchDataFromActiveDataSet(std::vector<int>& indices,
                                                 std::vector<std::vector<double>>& data) {
    // The factory owns the host chain; it goes when this returns or throws.
    auto factory = std::make_unique<AlgoDataAccessFactory>();
    // The host's input adapter takes the source as non-const; reading does not change it.
    auto* source = const_cast<ProcedureDataSource*>(&dataSource_);
    const AlgoDataAccess* access = factory->getAlgoDataAccess(indices, source, true, true, true);
    if (access == nullptr) return 1;
    const MultiPassRecordIter* iterator = access->GetRecordIterator();
    if (iterator == nullptr) return 1;

    // Column-major: one inner vector per variable, every delivered case kept as is.
    while (iterator->Next()) {
        const Record* record = iterator->GetCurrentRecord();
        if (record == nullptr) continue;
        const std::size_t count = record->Size();
        const double* values = record->GetAll();
        if (values == nullptr) continue;
        if (data.size() < count) data.resize(count);
        for (std::size_t j = 0; j < count; ++j) data[j].push_back(values[j]);
    }
    return 0;
}

unsigned SubCommands::fetchDataFromActiveDataSet(int index, std::vector<double>& data) {
    // One variable: the first value of each delivered case.
    std::vector<int> indices{index};
    std::vector<std::vector<double>> columns;
    const unsigned status = fetchDataFromActiveDataSet(indices, columns);
    if (!columns.empty()) data.insert(data.end(), columns[0].begin(), columns[0].end());
    return status;
}
