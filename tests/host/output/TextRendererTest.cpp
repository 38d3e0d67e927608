// Text rendering: pivot tables laid out exactly (groups centred and
// underlined over their columns, stub header, footnote markers on the
// title, footnotes below, numbers with the table's decimals) and charts as
// a note with a density sketch.
#include <cmath>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "OutputTestSupport.h"
#include "output/PivotLayout.h"

namespace {

std::string render(const host::RunRecord& run) {
    std::ostringstream out;
    host::renderText(out, run);
    return out.str();
}

// Builds a table through the platform model; the callback fills it.
template <typename Fill>
host::RunRecord runWithTable(Fill fill) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    auto* table = new Table(&generator, "T");
    fill(table);
    table->addTableToProcedureJSON();
    delete table;
    return outtest::handOver(generator, "X.");
}

// A table without title: one column headed `column`, one row per label,
// each holding the number 1.
std::string untitledColumn(const std::string& column, const std::vector<std::string>& rowLabels) {
    return render(runWithTable([&](Table* t) {
        t->hide_title(true);
        auto* columns = new Descendants(t);
        columns->addCell(outtest::textCell(t, column));
        auto* rows = new Descendants(t);
        auto* cells = new Cells(t);
        for (const std::string& label : rowLabels) {
            rows->addCell(outtest::textCell(t, label));
            std::vector<Cell*> row{outtest::numberCell(t, 1)};
            cells->addCells(row);
        }
        t->set_dimensions(new Dimension(t, rows, columns));
        t->set_cells(cells);
    }));
}

TEST(TextRendererTest, CoefficientsTableWithGroupStubHeaderAndFootnote) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}, {"x vs. z", -0.125, -1, 1}});
    const host::RunRecord run = outtest::handOver(generator, "X.");
    // Widths: "dCor Value" 10; Lower/Upper take their widest values (7 and 6)
    // and share the 10 missing characters of the 25-character group label.
    EXPECT_EQ(render(run),
              "Distance Correlation\n"
              "\n"
              "Distance Correlation Coefficients [a]\n"
              "===============================================\n"
              "                      Confidence Interval 95.00\n"
              "                      -------------------------\n"
              "Variable  dCor Value         Lower        Upper\n"
              "-----------------------------------------------\n"
              "x vs. y       0.5000        0.2500       0.7500\n"
              "x vs. z      -0.1250       -1.0000       1.0000\n"
              "===============================================\n"
              "a. Number of Replicates 999\n"
              "\n");
}

TEST(TextRendererTest, TextColumnsLeftNumbersRightHiddenRootLabelNoStubHeader) {
    const host::RunRecord run = runWithTable([](Table* t) {
        t->set_table_title("Descriptive Statistics");
        t->set_default_cell_format(5, 10, 3);
        auto* rows = new Descendants(t);
        auto* columns = new Descendants(t);
        columns->set_label(" ");
        columns->setShowLabel(false);
        for (const char* h : {"Variable", "Label", "N"}) columns->addCell(outtest::textCell(t, h));
        auto* cells = new Cells(t);
        std::vector<Cell*> r1{outtest::textCell(t, "x"), outtest::textCell(t, ""), outtest::numberCell(t, 40)};
        std::vector<Cell*> r2{outtest::textCell(t, "longname"), outtest::textCell(t, "Lbl"), outtest::numberCell(t, 3)};
        cells->addCells(r1);
        rows->addCell(outtest::textCell(t, "1"));
        cells->addCells(r2);
        rows->addCell(outtest::textCell(t, "2"));
        t->set_dimensions(new Dimension(t, rows, columns));
        t->set_cells(cells);
    });
    EXPECT_EQ(render(run),
              "Distance Correlation\n"
              "\n"
              "Descriptive Statistics\n"
              "==========================\n"
              "   Variable  Label       N\n"
              "--------------------------\n"
              "1  x                40.000\n"
              "2  longname  Lbl     3.000\n"
              "==========================\n"
              "\n");
}

TEST(TextRendererTest, ReferenceToAMissingFootnoteShowsNoMarker) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addCoefficientsTable(generator, {{"x vs. y", 0.5, 0.25, 0.75}}, /*withFootnote=*/false);
    const std::string text = render(outtest::handOver(generator, "X."));
    EXPECT_NE(text.find("Distance Correlation Coefficients\n"), std::string::npos);
    EXPECT_EQ(text.find('['), std::string::npos);
    EXPECT_EQ(text.find("a. "), std::string::npos);
}

TEST(TextRendererTest, TwoFootnotesAreLetteredInOrder) {
    const std::string text = render(runWithTable([](Table* t) {
        t->set_table_title("Distance Matrix for Variable x");
        t->addFootnoteRefs(0);
        t->add_footnote("First 100 records are printed.");
        t->addFootnoteRefs(1);
        t->add_footnote("Distance Matrix data limit reached ...");
    }));
    EXPECT_NE(text.find("Distance Matrix for Variable x [a,b]\n"), std::string::npos);
    EXPECT_NE(text.find("a. First 100 records are printed.\nb. Distance Matrix data limit reached ...\n"),
              std::string::npos);
}

TEST(TextRendererTest, FootnoteMarkersGoOnAfterZ) {
    EXPECT_EQ(host::PivotLayout::footnoteMarker(0), "a");
    EXPECT_EQ(host::PivotLayout::footnoteMarker(25), "z");
    EXPECT_EQ(host::PivotLayout::footnoteMarker(26), "aa");
    EXPECT_EQ(host::PivotLayout::footnoteMarker(27), "ab");
    EXPECT_EQ(host::PivotLayout::footnoteMarker(701), "zz");
    EXPECT_EQ(host::PivotLayout::footnoteMarker(702), "aaa");
}

TEST(TextRendererTest, NestedRowGroupsAndShownColumnRootLabel) {
    const std::string text = render(runWithTable([](Table* t) {
        t->set_table_title("Nested");
        t->set_default_cell_format(5, 8, 1);
        auto* rows = new Descendants(t);
        auto* group = new Descendants(t);
        group->set_label("G");
        group->setShowLabel(true);
        group->addCell(outtest::textCell(t, "r1"));
        group->addCell(outtest::textCell(t, "r2"));
        rows->addCell(group);
        rows->addCell(outtest::textCell(t, "r3"));
        auto* columns = new Descendants(t);
        columns->set_label("Root");
        columns->setShowLabel(true);
        columns->addCell(outtest::textCell(t, "c"));
        auto* cells = new Cells(t);
        for (double v : {1.0, 2.0, 3.0}) {
            std::vector<Cell*> row{outtest::numberCell(t, v)};
            cells->addCells(row);
        }
        t->set_dimensions(new Dimension(t, rows, columns));
        t->set_cells(cells);
    }));
    // Stub: the outer column holds "G" and the leaf "r3" (width 2), the inner
    // one "r1" and "r2" (width 2); with the gaps the data column starts at 8
    // and is 4 wide for "Root", so "c" and the values end at column 12.
    EXPECT_EQ(text,
              "Distance Correlation\n"
              "\n"
              "Nested\n"
              "============\n"
              "        Root\n"
              "        ----\n"
              "           c\n"
              "------------\n"
              "G   r1   1.0\n"
              "    r2   2.0\n"
              "r3       3.0\n"
              "============\n"
              "\n");
}

TEST(TextRendererTest, LeafAfterAGroupStandsInTheBottomRowInColumnOrder) {
    const std::string text = render(runWithTable([](Table* t) {
        t->set_table_title("P");
        t->set_default_cell_format(5, 10, 3);
        auto* rows = new Descendants(t);
        rows->set_label("Variable");
        rows->setShowLabel(true);
        rows->addCell(outtest::textCell(t, "x vs. y"));
        auto* group = new Descendants(t);
        group->set_label("G");
        group->setShowLabel(true);
        group->addCell(outtest::textCell(t, "Lower"));
        group->addCell(outtest::textCell(t, "Upper"));
        auto* columns = new Descendants(t);
        columns->addCell(outtest::textCell(t, "d"));
        columns->addCell(group);
        columns->addCell(outtest::textCell(t, "Sig."));
        auto* cells = new Cells(t);
        std::vector<Cell*> row{outtest::numberCell(t, 0.5), outtest::numberCell(t, 0.1), outtest::numberCell(t, 0.9),
                               outtest::numberCell(t, 0.001)};
        cells->addCells(row);
        t->set_dimensions(new Dimension(t, rows, columns));
        t->set_cells(cells);
    }));
    // Every column is 5 wide ("0.500", "Lower", ...); "G" is centred over
    // the 12 characters of Lower and Upper; "d" and "Sig." are right-aligned.
    EXPECT_EQ(text,
              "Distance Correlation\n"
              "\n"
              "P\n"
              "====================================\n"
              "                      G\n"
              "                 ------------\n"
              "Variable      d  Lower  Upper   Sig.\n"
              "------------------------------------\n"
              "x vs. y   0.500  0.100  0.900  0.001\n"
              "====================================\n"
              "\n");
}

TEST(TextRendererTest, HiddenTitleAndAccentedLettersCountOnce) {
    const std::string text = untitledColumn("Fälle", {"ü"});
    // Stub 1 character, gap 2, column 5 characters: rules of 8.
    EXPECT_EQ(text,
              "Distance Correlation\n"
              "\n"
              "========\n"
              "   Fälle\n"
              "--------\n"
              "ü   1.00\n"
              "========\n"
              "\n");
}

TEST(TextRendererTest, WideCharactersTakeTwoCellsAndCombiningMarksNone) {
    // Two ideographs take four cells; e with a combining acute takes one.
    const std::string text = untitledColumn("Wert", {"\u8EAB\u9577", "e\u0301", "x"});
    // Stub 4 cells, gap 2, column 4: rules of 10, and every number ends in
    // cell 10 whatever the label before it.
    EXPECT_EQ(text,
              "Distance Correlation\n"
              "\n"
              "==========\n"
              "      Wert\n"
              "----------\n"
              "\u8EAB\u9577  1.00\n"
              "e\u0301     1.00\n"
              "x     1.00\n"
              "==========\n"
              "\n");
}

TEST(TextRendererTest, GroupLabelOfWideCharactersIsCentredByCells) {
    const std::string text = render(runWithTable([](Table* t) {
        t->hide_title(true);
        auto* group = new Descendants(t);
        group->set_label("\u533A\u9593");  // two ideographs: four cells over columns of 1 and 1
        group->setShowLabel(true);
        group->addCell(outtest::textCell(t, "a"));
        group->addCell(outtest::textCell(t, "b"));
        auto* columns = new Descendants(t);
        columns->addCell(group);
        auto* cells = new Cells(t);
        std::vector<Cell*> row{outtest::textCell(t, "p"), outtest::textCell(t, "q")};
        cells->addCells(row);
        t->set_dimensions(new Dimension(t, new Descendants(t), columns));
        t->set_cells(cells);
    }));
    // The columns of 1 and 1 with their gap span 4 cells, exactly the label's
    // width, so nothing is widened: stub 0, gap 2, then "a  b" under the label.
    EXPECT_NE(text.find("\n  \u533A\u9593\n  ----\n  a  b\n"), std::string::npos) << text;
}

TEST(TextRendererTest, NegativeZeroAfterRoundingHasNoSign) {
    const std::string text = render(runWithTable([](Table* t) {
        t->set_default_cell_format(5, 10, 2);
        auto* cells = new Cells(t);
        std::vector<Cell*> row{outtest::numberCell(t, -0.001), outtest::numberCell(t, -0.006)};
        cells->addCells(row);
        t->set_cells(cells);
    }));
    EXPECT_NE(text.find(" 0.00  -0.01\n"), std::string::npos) << text;
}

TEST(TextRendererTest, ChartNoteAndSketch) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addScatterChart(generator, {0, 1}, {0, 1});
    // Two points: (0, 0) in the bottom-left cell, (1, 1) in the top-right
    // cell of the 60 x 15 grid; with one point per cell both show as ".".
    EXPECT_EQ(render(outtest::handOver(generator, "X.")),
              "Distance Correlation\n"
              "\n"
              "Scatter Plot of pairwise distances\n"
              "Scatter plot of 2 points; horizontal axis: a, vertical axis: b.\n"
              "  b\n"
              "1 |                                                           .\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "  |\n"
              "0 |.\n"
              "  +------------------------------------------------------------\n"
              "   0                                                          1  a\n"
              "\n");
}

TEST(TextRendererTest, ChartWithUnequalColumnsAndMissingCoordinatesSaysSo) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addScatterChart(generator, {0, 1, NAN, 5}, {0, 1, 2});
    const std::string text = render(outtest::handOver(generator, "X."));
    EXPECT_NE(text.find("Scatter plot of 3 points;"), std::string::npos);
    EXPECT_NE(text.find("The x data has 4 values and the y data 3; only the first 3 pairs are shown.\n"),
              std::string::npos);
    EXPECT_NE(text.find("1 points with a missing coordinate are not drawn.\n"), std::string::npos);
}

TEST(TextRendererTest, ExtremeCoordinatesStayOnTheSketch) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    const double largest = std::numeric_limits<double>::max();
    const double tiny = std::numeric_limits<double>::denorm_min();
    // x spans the whole double range, y two denormal steps: (-max, 0) at the
    // bottom left, (0, 2 tiny) at the top in the middle column (30 of 0..59),
    // (max, tiny) half way up (row 7 of 0..14) at the right.
    outtest::addScatterChart(generator, {-largest, 0, largest}, {0, 2 * tiny, tiny});
    const std::string text = render(outtest::handOver(generator, "X."));
    EXPECT_NE(text.find("\n9.881e-324 |" + std::string(30, ' ') + ".\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n           |" + std::string(59, ' ') + ".\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n         0 |.\n"), std::string::npos) << text;
    EXPECT_NE(text.find("-1.798e+308"), std::string::npos) << text;
}

TEST(TextRendererTest, ChartWithoutPointsHasNoSketch) {
    outtest::beginCommand("X.");
    StatJSONGenerator generator("Distance Correlation", "");
    outtest::addScatterChart(generator, {}, {});
    EXPECT_EQ(render(outtest::handOver(generator, "X.")),
              "Distance Correlation\n"
              "\n"
              "Scatter Plot of pairwise distances\n"
              "Scatter plot of 0 points; horizontal axis: a, vertical axis: b.\n"
              "\n");
}

TEST(TextRendererTest, RunWithoutOutputRendersNothing) {
    host::RunRecord run;
    run.command = "X.";
    run.messages.push_back({host::MessageLevel::Error, "Bad."});
    EXPECT_EQ(render(run), "");
}

}  // namespace
