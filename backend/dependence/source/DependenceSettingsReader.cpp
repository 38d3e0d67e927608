#include "DependenceSettingsReader.h"

#include <algorithm>
#include <cmath>

#include "CommandDescriptor.h"
#include "CommandSpec.h"
#include "DependenceCaseData.h"
#include "ParamObj.h"
#include "ProcedureDataSource.h"
#include "SubComObj.h"
#include "VELA_Variable.h"
#include "VarSpecObj.h"
#include "VelaVarName.h"

namespace {

const int kScaleLevel = 3;

// The parsed keyword of a subcommand, or null.
const ParamObj* keywordOf(const SubComObj* sub, const char* name) {
    return sub != nullptr ? sub->getParamObj(name) : nullptr;
}

std::vector<ParamObj> qualifiersOf(const ParamObj& keyword) {
    std::vector<ParamObj> qualifiers;
    keyword.getStringQualList(qualifiers, nullptr, nullptr);
    return qualifiers;
}

bool named(const std::vector<DependenceVariable>& list, const std::string& name) {
    return std::any_of(list.begin(), list.end(), [&](const DependenceVariable& v) { return v.name == name; });
}

}  // namespace

DependenceSettingsReader::DependenceSettingsReader(const CommandSpec& spec, const CommandDescriptor& descriptor,
                                                   ProcedureDataSource& source)
    : spec_(spec), descriptor_(descriptor), source_(source) {
    message_.SetCommandName("DEPENDENCE");
    message_.SetProcedureTitle("Dependence");
}

bool DependenceSettingsReader::fail(const std::string& text) const {
    message_.GenericError(text);
    return false;
}

unsigned DependenceSettingsReader::start(DependenceSettings& settings) {
    try {
        if (!readLists(settings) || !readCriteria(settings) || !readTest(settings) || !readMissing(settings) ||
            !checkCombinations(settings))
            return 1;
    } catch (...) {
        return 1;
    }
    return 0;
}

bool DependenceSettingsReader::readLists(DependenceSettings& settings) {
    const SubComObj* global = spec_.getSubComObj("");
    if (global == nullptr || global->getParamObj("VARIABLES") == nullptr)
        return fail("VARIABLES: name the variables to compare, as in VARIABLES=a b or VARIABLES=a b WITH c d.");

    std::vector<int> indices;
    if (!readList(*global, "VARIABLES", settings.variables, indices)) return false;
    if (!readList(*global, "WITH", settings.with, indices)) return false;
    if (!readList(*global, "CONTROL", settings.control, indices)) return false;

    if (settings.with.empty() && settings.variables.size() < 2)
        return fail("VARIABLES: at least two variables are needed, or a second list after WITH.");
    for (const DependenceVariable& z : settings.control) {
        if (named(settings.variables, z.name) || named(settings.with, z.name))
            return fail("CONTROL: variable \"" + z.name +
                        "\" is also compared; a control variable cannot be one of the compared variables.");
    }

    const std::vector<std::vector<double>> columns = DependenceCaseData::fetch(source_, indices);
    std::size_t k = 0;
    for (auto* list : {&settings.variables, &settings.with, &settings.control})
        for (DependenceVariable& v : *list) v.values = columns.at(k++);
    return true;
}

bool DependenceSettingsReader::readList(const SubComObj& global, const std::string& keyword,
                                        std::vector<DependenceVariable>& out, std::vector<int>& indices) {
    const ParamObj* param = global.getParamObj(keyword);
    if (param == nullptr) return true;
    std::vector<std::string> names;
    param->getVarList(names);
    // Each list is checked on its own: a variable may stand in both lists of WITH.
    VarSpecObj check(keyword, keyword, descriptor_, &source_, true);
    if (!check.ValidateVariables(names, UPSpecTypes::RepeatVarForbidden)) return false;
    const std::vector<int>& valid = check.GetValidVarList();
    for (std::size_t i = 0; i < valid.size(); ++i) {
        const VELA_Variable variable = source_.GetVariable(valid[i]);
        if (variable.GetMeasurementLevel() != kScaleLevel) {
            message_.NeedDepVarCont(VelaVarName(variable.GetName()), keyword.c_str(), nullptr);
            return false;
        }
        out.push_back({names[i], {}});
        indices.push_back(valid[i]);
    }
    return true;
}

bool DependenceSettingsReader::readCriteria(DependenceSettings& settings) {
    const SubComObj* criteria = spec_.getSubComObj("CRITERIA");
    std::string word;
    if (const ParamObj* p = keywordOf(criteria, "STATISTIC"); p != nullptr && p->getUpStringGeneric(word))
        settings.statistic = word == "V" ? DependenceStatistic::V : DependenceStatistic::U;
    if (const ParamObj* p = keywordOf(criteria, "EXPONENT")) p->getNumberValue(settings.exponent);
    if (const ParamObj* p = keywordOf(criteria, "MODE"); p != nullptr && p->getUpStringGeneric(word))
        settings.mode = word == "SETS" ? DependenceMode::Sets : DependenceMode::Pairs;
    return true;
}

bool DependenceSettingsReader::readTest(DependenceSettings& settings) {
    const SubComObj* test = spec_.getSubComObj("TEST");
    const ParamObj* ttest = keywordOf(test, "TTEST");
    const ParamObj* permutation = keywordOf(test, "PERMUTATION");
    const ParamObj* none = keywordOf(test, "NONE");
    const int given = (ttest != nullptr) + (permutation != nullptr) + (none != nullptr);
    if (given > 1) return fail("TEST: name one test: TTEST, PERMUTATION or NONE.");
    // Without TEST: the t-test where it applies, otherwise none.
    const bool tApplies = settings.statistic == DependenceStatistic::U && settings.control.empty();
    settings.test = tApplies ? DependenceTest::TTest : DependenceTest::None;
    if (ttest != nullptr) settings.test = DependenceTest::TTest;
    if (none != nullptr) settings.test = DependenceTest::None;
    if (permutation == nullptr) return true;

    settings.test = DependenceTest::Permutation;
    const std::vector<ParamObj> qualifiers = qualifiersOf(*permutation);
    double value = 0;
    if (const ParamObj* seed = ParamObj::getParamObj("SEED", qualifiers);
        seed != nullptr && seed->getNumberValue(value)) {
        if (value != std::floor(value) || value >= 18446744073709551616.0)
            return fail("TEST PERMUTATION SEED: the seed must be a whole number from 0 to 18446744073709551615.");
        settings.seed = static_cast<std::uint64_t>(value);
    }
    if (const ParamObj* reps = ParamObj::getParamObj("REPLICATES", qualifiers);
        reps != nullptr && reps->getNumberValue(value)) {
        if (value != std::floor(value) || value > 1e9)
            return fail(
                "TEST PERMUTATION REPLICATES: the number of replicates must be a whole number from 1 to "
                "1000000000.");
        settings.replicates = static_cast<std::uint64_t>(value);
    }
    return true;
}

bool DependenceSettingsReader::readMissing(DependenceSettings& settings) {
    const SubComObj* missing = spec_.getSubComObj("MISSING");
    const bool listwise = keywordOf(missing, "LISTWISE") != nullptr;
    const bool pairwise = keywordOf(missing, "PAIRWISE") != nullptr;
    if (listwise && pairwise) return fail("MISSING: name one of LISTWISE or PAIRWISE.");
    settings.missing = pairwise ? DependenceMissing::Pairwise : DependenceMissing::Listwise;
    return true;
}

bool DependenceSettingsReader::checkCombinations(const DependenceSettings& settings) {
    const bool partial = !settings.control.empty();
    if (settings.mode == DependenceMode::Sets && settings.with.empty())
        return fail("CRITERIA MODE: SETS compares two sets of variables; name them as VARIABLES=a b WITH c d.");
    if (partial && settings.statistic == DependenceStatistic::V)
        return fail(
            "CRITERIA STATISTIC: partial distance correlation is a bias-corrected statistic; use "
            "STATISTIC=U with CONTROL.");
    if (settings.test == DependenceTest::TTest && settings.statistic == DependenceStatistic::V)
        return fail(
            "TEST TTEST: the t-test is a test of the bias-corrected statistic; use STATISTIC=U, or TEST "
            "PERMUTATION.");
    if (settings.test == DependenceTest::TTest && partial)
        return fail(
            "TEST TTEST: there is no t-test of partial distance correlation; use TEST PERMUTATION or "
            "TEST NONE.");
    return true;
}
