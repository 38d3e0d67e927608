#include "VELA_Variable.h"

#include <utility>

#include "data/DataSourceImpl.h"
#include "data/HostError.h"
#include "data/NewCaseFile.h"
#include "data/VariableName.h"

namespace {

constexpr int kMaxNumericWidth = 40;
constexpr int kMaxDecimals = 16;
constexpr int kMaxTextWidth = 32767;

const host::VariableInfo* infoOf(const std::shared_ptr<VELA_Variable::Impl>& impl) {
    if (!impl || !impl->source) return nullptr;
    const host::DataSet& data = *impl->source->data;
    if (impl->index < 0 || impl->index >= data.variableCount()) return nullptr;
    return &data.variable(impl->index);
}

host::VariableInfo& editable(const std::shared_ptr<VELA_Variable::Impl>& impl, const std::string& action) {
    if (infoOf(impl) == nullptr) host::raiseHostError("Cannot " + action + ": there is no such variable.");
    if (!impl->source->newFile)
        host::raiseHostError("Cannot " + action + ": the active data set cannot be changed.");
    return impl->source->newFile->editVariable(impl->index);
}

std::string formatProblem(const host::VariableInfo& variable, VELA_Format::FormatType type, int width,
                          int decimals) {
    if (variable.type == 0) {
        if (type != VELA_Format::FormatNumeric) return "a numeric variable needs a numeric format";
        if (width < 1 || width > kMaxNumericWidth)
            return "the width must be from 1 to " + std::to_string(kMaxNumericWidth);
        if (decimals < 0 || decimals > kMaxDecimals || decimals >= width)
            return "the decimals must be from 0 to " + std::to_string(kMaxDecimals) + " and less than the width";
        return "";
    }
    if (type != VELA_Format::FormatString) return "a text variable needs a text format";
    if (width < 1 || width > kMaxTextWidth) return "the width must be from 1 to " + std::to_string(kMaxTextWidth);
    if (decimals != 0) return "a text format has no decimals";
    return "";
}

}  // namespace

VELA_Variable::VELA_Variable() = default;
VELA_Variable::VELA_Variable(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}
VELA_Variable::VELA_Variable(const VELA_Variable& other) = default;
VELA_Variable& VELA_Variable::operator=(const VELA_Variable& other) = default;
VELA_Variable::~VELA_Variable() = default;

const std::shared_ptr<VELA_Variable::Impl>& VELA_Variable::impl() const { return impl_; }

VELA_Variable::operator bool() const { return infoOf(impl_) != nullptr; }

std::string VELA_Variable::GetName() const {
    const host::VariableInfo* info = infoOf(impl_);
    return info != nullptr ? info->name : std::string();
}

const char* VELA_Variable::GetLabel() const {
    const host::VariableInfo* info = infoOf(impl_);
    if (info == nullptr || !info->hasLabel || info->label.empty()) return nullptr;
    return info->label.c_str();
}

int VELA_Variable::GetMeasurementLevel() const {
    const host::VariableInfo* info = infoOf(impl_);
    return info != nullptr ? info->measurementLevel : 0;
}

VELA_ValueLabelMap VELA_Variable::GetValueLabels() const {
    const host::VariableInfo* info = infoOf(impl_);
    VELA_ValueLabelMap labels(info != nullptr ? info->type : 0);
    if (info != nullptr)
        for (const auto& pair : info->valueLabels) labels.AddPair(pair.first, pair.second);
    return labels;
}

int VELA_Variable::GetType() const {
    const host::VariableInfo* info = infoOf(impl_);
    return info != nullptr ? info->type : 0;
}

VELA_Format VELA_Variable::GetFormat() const {
    const host::VariableInfo* info = infoOf(impl_);
    return info != nullptr ? info->format : VELA_Format(VELA_Format::FormatNumeric, 8, 2);
}

VELA_Format VELA_Variable::GetWriteFormat() const {
    const host::VariableInfo* info = infoOf(impl_);
    return info != nullptr ? info->writeFormat : VELA_Format(VELA_Format::FormatNumeric, 8, 2);
}

void VELA_Variable::SetName(const std::string& name) {
    host::VariableInfo& info = editable(impl_, "rename variable \"" + GetName() + "\"");
    const std::string problem = host::variableNameProblem(name);
    if (!problem.empty()) host::raiseHostError("Cannot name a variable \"" + name + "\": " + problem + ".");
    info.name = name;
}

void VELA_Variable::SetFormat(VELA_Format::FormatType type, int width, int decimals) {
    host::VariableInfo& info = editable(impl_, "set the format of variable \"" + GetName() + "\"");
    const std::string problem = formatProblem(info, type, width, decimals);
    if (!problem.empty())
        host::raiseHostError("Cannot set the format of variable \"" + info.name + "\": " + problem + ".");
    info.format = VELA_Format(type, width, decimals);
}

void VELA_Variable::SetWriteFormat(VELA_Format::FormatType type, int width, int decimals) {
    host::VariableInfo& info = editable(impl_, "set the write format of variable \"" + GetName() + "\"");
    const std::string problem = formatProblem(info, type, width, decimals);
    if (!problem.empty())
        host::raiseHostError("Cannot set the write format of variable \"" + info.name + "\": " + problem + ".");
    info.writeFormat = VELA_Format(type, width, decimals);
}

void VELA_Variable::SetMeasurementLevel(int level) {
    host::VariableInfo& info = editable(impl_, "set the measurement level of variable \"" + GetName() + "\"");
    if (level < 1 || level > 3)
        host::raiseHostError("Cannot set the measurement level of variable \"" + info.name + "\" to " +
                             std::to_string(level) + ": use 1 (nominal), 2 (ordinal) or 3 (scale).");
    if (level == 3 && info.type != 0)
        host::raiseHostError("Cannot make the text variable \"" + info.name + "\" a scale variable.");
    info.measurementLevel = level;
}

void VELA_Variable::SetLabel(const std::string& label) {
    host::VariableInfo& info = editable(impl_, "set the label of variable \"" + GetName() + "\"");
    info.label = label;
    info.hasLabel = !label.empty();
}

void VELA_Variable::SetValueLabels(const VELA_ValueLabelMap& labels) {
    host::VariableInfo& info = editable(impl_, "set the value labels of variable \"" + GetName() + "\"");
    if ((info.type == 0) != (labels.GetType() == 0))
        host::raiseHostError("Cannot set the value labels of variable \"" + info.name + "\": " +
                             (info.type == 0 ? "a numeric variable needs numeric values."
                                             : "a text variable needs text values."));
    std::vector<std::pair<std::string, std::string>> pairs = labels.GetPairs();
    for (const auto& pair : pairs)
        if (info.type > 0 && static_cast<int>(pair.first.size()) > info.type)
            host::raiseHostError("Cannot set the value labels of variable \"" + info.name + "\": the value \"" +
                                 pair.first + "\" is longer than the variable's width " +
                                 std::to_string(info.type) + ".");
    info.valueLabels = std::move(pairs);
}
