#pragma once
// Builders shared by the output tests: tables made through the platform
// table model as a procedure makes them, and a chart with GPL statements.
#include <string>
#include <utility>
#include <vector>

#include "BpProcedure.h"
#include "Cell.h"
#include "Cells.h"
#include "Descendants.h"
#include "Dimension.h"
#include "HostSession.h"
#include "StatGPLGraph.h"
#include "StatJSONConverter.h"
#include "StatJSONGenerator.h"
#include "Table.h"
#include "output/Report.h"

namespace outtest {

inline Cell* textCell(Table* t, const std::string& text) {
    Cell* c = new Cell(t, CellTypeStandard);
    c->setValue(text);
    return c;
}

inline Cell* numberCell(Table* t, double v) {
    Cell* c = new Cell(t, CellTypeStandard);
    c->setValue(v);
    return c;
}

struct PairRow {
    std::string name;
    double dcor, lower, upper;
};

// A coefficients table: "dCor Value" | "Confidence Interval 95.00" (Lower,
// Upper), rows labelled by the shown row label "Variable", one footnote
// referenced by the table.
inline void addCoefficientsTable(StatJSONGenerator& generator, const std::vector<PairRow>& rows,
                                 bool withFootnote = true) {
    Table* table = new Table(&generator, "Distance Correlation Coefficients");
    table->set_table_title("Distance Correlation Coefficients");
    table->hide_title(false);
    table->set_min_data_column_width(100);
    table->set_max_data_column_width(300);
    table->set_default_cell_format(5, 10, 4);
    table->addFootnoteRefs(0);
    if (withFootnote) table->add_footnote("Number of Replicates 999");
    Cells* cells = new Cells(table);
    Descendants* rowTree = new Descendants(table);
    Descendants* columnTree = new Descendants(table);
    Descendants* interval = new Descendants(table);
    interval->set_label("Confidence Interval 95.00");
    interval->addCell(textCell(table, "Lower"));
    interval->addCell(textCell(table, "Upper"));
    columnTree->addCell(textCell(table, "dCor Value"));
    interval->setShowLabel(true);
    columnTree->addCell(interval);
    rowTree->set_label("Variable");
    rowTree->setShowLabel(true);
    for (const PairRow& r : rows) {
        std::vector<Cell*> row{numberCell(table, r.dcor), numberCell(table, r.lower), numberCell(table, r.upper)};
        cells->addCells(row);
        rowTree->addCell(textCell(table, r.name));
    }
    table->set_dimensions(new Dimension(table, rowTree, columnTree));
    table->set_cells(cells);
    table->addTableToProcedureJSON();
    delete table;
}

// A chart whose statements are those of the distance scatter plot.
class ScatterChart : public StatGPLGraph {
public:
    ScatterChart(StatJSONGenerator* generator, const std::string& name, std::string xName, std::string yName)
        : StatGPLGraph(generator, name), x_(std::move(xName)), y_(std::move(yName)) {}

    void addGPLCommands(rapidjson::Value& value, rapidjson::MemoryPoolAllocator<>& a) override {
        rapidjson::Value gpl(rapidjson::kArrayType);
        const std::vector<std::string> statements{
            "SOURCE: s = userSource(id(\"" + getProcedureName() + "\"))",
            "DATA: xdata  = col(source(s), name(\"xdata\"))",
            "DATA: ydata  = col(source(s), name(\"ydata\"))",
            "GRAPH: begin()",
            "GUIDE: axis(dim(2),label(\"" + y_ + "\"))",
            "GUIDE: axis(dim(1),label(\"" + x_ + "\"))",
            "GUIDE: text.title(label(\"" + getName() + "\"))",
            "ELEMENT: point(position(xdata*ydata))",
            "GRAPH: end()"};
        for (const std::string& s : statements) gpl.PushBack(rapidjson::Value(s.c_str(), a), a);
        value.AddMember("gpl", gpl, a);
    }

private:
    std::string x_;
    std::string y_;
};

inline void addScatterChart(StatJSONGenerator& generator, std::vector<double> x, std::vector<double> y,
                            const std::string& title = "Scatter Plot of pairwise distances") {
    ScatterChart chart(&generator, title, "a", "b");
    chart.setDataVector(std::move(x), true);
    chart.setDataVector(std::move(y), false);
    chart.addGPLGraphToProcedureJSON();
}

// Starts a quiet command in the session, as the program does before a run.
inline void beginCommand(const std::string& text) {
    host::HostSession::instance().setQuiet(true);
    host::HostSession::instance().beginCommand({text, "test", 1});
}

// Hands the generator's document to a procedure frame and takes the record.
inline host::RunRecord handOver(StatJSONGenerator& generator, const std::string& command) {
    BpProcedure procedure("Distance Correlation", 10);
    StatJSONConverter converter(procedure);
    converter.generateOutput(generator.getProcedureStatJSON());
    return host::takeRunRecord(command);
}

}  // namespace outtest
