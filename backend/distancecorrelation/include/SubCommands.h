#pragma once
#include <string>
#include <vector>

#include "ParserMessage.h"
#include "UserCaseFileSpec.h"

class CommandSpec;
class CommandDescriptor;
class ProcedureDataSource;
class ParamObj;

// The parts of the command, in the order they are described and read.
enum subCommand {
    kGlobal = 0,
    kId = 1,
    kCriteria = 2,
    kPrint = 3,
    kPlot = 4
};

// The run's whole configuration and case data: one record per part of the
// command, filled once by the subcommand readers and read-only afterwards.
class SubCommands {
public:
    class GlobalSettings {
    public:
        void setGlobalVarList(const std::vector<int>& list) { varList_ = list; }
        const std::vector<int>& getGlobalVarList() const { return varList_; }
        void setGlobalVarLabels(const std::vector<std::string>& labels) { varLabels_ = labels; }
        const std::vector<std::string>& getGlobalVarLabels() const { return varLabels_; }
        void setGlobalVarNames(const std::vector<std::string>& names) { varNames_ = names; }
        const std::vector<std::string>& getGlobalVarNames() const { return varNames_; }
        void setGlobalData(const std::vector<std::vector<double>>& data) { data_ = data; }
        const std::vector<std::vector<double>>& getGlobalData() const { return data_; }

    private:
        std::vector<int> varList_;  // kept for the host interface; never filled
        std::vector<std::string> varLabels_;
        std::vector<std::string> varNames_;
        std::vector<std::vector<double>> data_;  // one inner vector per variable
    };

    class IDSettings {
    public:
        void setIdEnabled(bool enabled) { enabled_ = enabled; }
        bool getIdEnabled() const { return enabled_; }
        void setIdName(std::string& name) { name_ = name; }
        std::string getIdName() const { return name_; }
        void setIdData(const std::vector<double>& data) { data_ = data; }
        const std::vector<double>& getIdData() const { return data_; }

    private:
        bool enabled_ = false;
        std::string name_;
        std::vector<double> data_;
    };

    class CriteriaSettings {
    public:
        void set_normalization(const std::string& value) { normalization_ = value; }
        std::string get_normalization() const { return normalization_; }
        void set_ciLevel(double value) { ciLevel_ = value; }
        double get_ciLevel() const { return ciLevel_; }
        void set_permSeed(double value) { permSeed_ = value; }
        double get_permSeed() const { return permSeed_; }
        void set_permMaxIterations(double value) { permMaxIterations_ = value; }
        double get_permMaxIterations() const { return permMaxIterations_; }
        void set_permSigLevel(double value) { permSigLevel_ = value; }
        double get_permSigLevel() const { return permSigLevel_; }
        void set_permEnabled(bool value) { permEnabled_ = value; }
        bool get_permEnabled() const { return permEnabled_; }

    private:
        std::string normalization_ = "NONE";
        double ciLevel_ = 95.0;
        double permSeed_ = 2e6;
        double permMaxIterations_ = 1000.0;
        double permSigLevel_ = 0.05;
        bool permEnabled_ = false;
    };

    class PrintSettings {
    public:
        PrintSettings();

        void set_details(bool value) { details_ = value; }
        bool get_details() const { return details_; }
        // The getter's name is shorter than the setter's; both names are part of the interface.
        void set_distanceCorrelationCoefficient(bool value) { distanceCorrelationCoefficient_ = value; }
        bool get_distanceCorrCoefficient() const { return distanceCorrelationCoefficient_; }
        void set_correlationEstimates(bool value) { correlationEstimates_ = value; }
        bool get_correlationEstimates() const { return correlationEstimates_; }
        void set_distanceVariance(bool value) { distanceVariance_ = value; }
        bool get_distanceVariance() const { return distanceVariance_; }
        void set_distanceMatrix(bool value) { distanceMatrix_ = value; }
        bool get_distanceMatrix() const { return distanceMatrix_; }
        void set_save(bool value) { save_ = value; }
        bool get_save() const { return save_; }
        void set_configList(const std::vector<std::string>& list) { configList_ = list; }
        const std::vector<std::string>& get_configList() const { return configList_; }
        void set_fileName(const std::string& name) { fileName_ = name; }
        std::string get_fileName() const { return fileName_; }
        void setOutFileSpec(std::string path, bool forWriting);
        const UserCaseFileSpec& GetOutFileSpec() const { return outFileSpec_; }

    private:
        bool details_;
        bool distanceCorrelationCoefficient_;
        bool correlationEstimates_;
        bool distanceVariance_;
        bool distanceMatrix_;
        bool save_;
        std::vector<std::string> configList_;
        std::string fileName_;
        UserCaseFileSpec outFileSpec_;
    };

    class PlotSettings {
    public:
        void set_xAxisName(const std::string& name) { xAxisName_ = name; }
        std::string get_xAxisName() const { return xAxisName_; }
        void set_yAxisName(const std::string& name) { yAxisName_ = name; }
        std::string get_yAxisName() const { return yAxisName_; }
        void set_scatterPlotEnabled(bool value) { scatterPlotEnabled_ = value; }
        bool get_scatterPlotEnabled() const { return scatterPlotEnabled_; }

    private:
        std::string xAxisName_;
        std::string yAxisName_;
        bool scatterPlotEnabled_ = false;
    };

    SubCommands(const CommandSpec& spec, const CommandDescriptor& descriptor,
                const ProcedureDataSource& source);
    virtual ~SubCommands();

    const GlobalSettings& globalSettings() const { return global_; }
    const IDSettings& idSettings() const { return id_; }
    const CriteriaSettings& criteriaSettings() const { return criteria_; }
    const PrintSettings& printSettings() const { return print_; }
    const PlotSettings& plotSettings() const { return plot_; }

    // Subcommand readers: true when the subcommand is acceptable.
    bool get_Subcommand_Global();
    bool get_SubCommand_ID();
    bool get_Subcommand_Criteria();
    bool get_Subcommand_Print();
    bool get_Subcommand_Plot();

    static bool getStringListFromParam(const ParamObj* param, std::vector<std::string>& out);
    static std::string getStringValueFromParam(const ParamObj* param, std::string defaultValue,
                                               bool upperCase);
    static double getNumberValueFromParam(const ParamObj* param, double defaultValue);
    static int getIntegerValueFromParam(const ParamObj* param, int defaultValue);
    bool checkIsValidVarName(const std::vector<std::string>& names) const;
    bool checkIsValidVarName(const std::string& name) const;

    unsigned fetchDataFromActiveDataSet(std::vector<int>& indices,
                                        std::vector<std::vector<double>>& data);
    unsigned fetchDataFromActiveDataSet(int index, std::vector<double>& data);

protected:
    const CommandSpec& commandSpec_;
    const CommandDescriptor& commandDescriptor_;
    const ProcedureDataSource& dataSource_;
    ParserMessage message_;
    GlobalSettings global_;
    IDSettings id_;
    CriteriaSettings criteria_;
    PrintSettings print_;
    PlotSettings plot_;
};
