#include "data/CsvDataLoader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "DataTestSupport.h"
#include "data/NumberText.h"

using datatest::fixture;
using datatest::ScratchFolder;
using datatest::writeFile;
using host::kSystemMissing;

namespace {

std::string loadError(const std::string& csv, const std::string& schema = "") {
    try {
        host::loadCsvDataSet(csv, schema);
    } catch (const host::DataLoadError& e) {
        return e.what();
    }
    return "(loaded without error)";
}

// Writes data (and a schema when given) to a scratch folder and loads it.
struct Scratch {
    ScratchFolder folder;
    std::string csv = folder.file("data.csv");
    std::string schema = folder.file("data.schema.json");

    std::shared_ptr<host::DataSet> load(const std::string& data, const std::string& dictionary = "") {
        writeFile(csv, data);
        if (!dictionary.empty()) writeFile(schema, dictionary);
        return host::loadCsvDataSet(csv, "");
    }
    std::shared_ptr<host::DataSet> loadWith(const std::string& data, const host::CsvLoadOptions& options) {
        writeFile(csv, data);
        return host::loadCsvDataSet(csv, "", options);
    }
    std::string error(const std::string& data, const std::string& dictionary = "") {
        writeFile(csv, data);
        if (!dictionary.empty()) writeFile(schema, dictionary);
        return loadError(csv);
    }
};

}  // namespace

// ---- bad files: each message names the file, the line and the problem ----

TEST(CsvDataLoaderTest, RaggedRowNamesItsLine) {
    const std::string path = fixture("ragged.csv");
    EXPECT_EQ(loadError(path), path + ":7: row has 4 fields, header has 5");
}

TEST(CsvDataLoaderTest, UnterminatedQuoteNamesTheLineWhereItOpens) {
    const std::string path = fixture("unterminated_quote.csv");
    EXPECT_EQ(loadError(path), path + ":3: field 2 opens a quote that is never closed");
}

TEST(CsvDataLoaderTest, MalformedSchemaNamesTheSchemaAndLine) {
    const std::string path = fixture("bad_schema.schema.json");
    EXPECT_EQ(loadError(fixture("bad_schema.csv")),
              path + ":4: not valid JSON: Missing a comma or ']' after an array element.");
}

TEST(CsvDataLoaderTest, TextInNumericColumnNamesLineColumnAndText) {
    const std::string path = fixture("text_in_numeric.csv");
    EXPECT_EQ(loadError(path), path + ":5: \"n/a\" in column \"age\" is not a number");
}

TEST(CsvDataLoaderTest, EmptyFileIsAnError) {
    const std::string path = fixture("empty.csv");
    EXPECT_EQ(loadError(path), path + ":1: the file is empty; its first line must name the variables");
}

TEST(CsvDataLoaderTest, DuplicateNamesIgnoringCaseAreRenamed) {
    const auto data = host::loadCsvDataSet(fixture("duplicate_names.csv"), "");
    ASSERT_EQ(data->variableCount(), 3);
    EXPECT_EQ(data->variable(0).name, "x");
    EXPECT_FALSE(data->variable(0).hasLabel);
    EXPECT_EQ(data->variable(2).name, "X_2");
    EXPECT_EQ(data->variable(2).label, "X");
}

TEST(CsvDataLoaderTest, EmptyHeaderNameBecomesVAndTheColumnNumber) {
    const auto data = host::loadCsvDataSet(fixture("empty_header_name.csv"), "");
    ASSERT_EQ(data->variableCount(), 3);
    EXPECT_EQ(data->variable(1).name, "V2");
    EXPECT_FALSE(data->variable(1).hasLabel);
}

TEST(CsvDataLoaderTest, InvalidVariableNamesAreMadeValidWithTheTextAsLabel) {
    Scratch s;
    const auto data = s.load("my var,2b,to,a (cm),x.\n1,2,3,4,5\n");
    ASSERT_EQ(data->variableCount(), 5);
    const char* const names[] = {"my_var", "V2b", "to_", "a_cm", "x"};
    const char* const labels[] = {"my var", "2b", "to", "a (cm)", "x."};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(data->variable(i).name, names[i]);
        EXPECT_EQ(data->variable(i).label, labels[i]);
        EXPECT_TRUE(data->variable(i).hasLabel);
    }
}

TEST(CsvDataLoaderTest, MissingOrFolderPathIsAnError) {
    ScratchFolder folder;
    const std::string missing = folder.file("nothing.csv");
    EXPECT_EQ(loadError(missing), missing + ": cannot read the file: No such file or directory");
    EXPECT_EQ(loadError(folder.path()), folder.path() + ": this is a folder, not a file");
}

TEST(CsvDataLoaderTest, RaggedRowAfterQuotedLineBreakCountsPhysicalLines) {
    Scratch s;
    EXPECT_EQ(s.error("a,b\n1,\"x\ny\"\n2\n"), s.csv + ":4: row has 1 field, header has 2");
    EXPECT_EQ(s.error("a,b\n1,2\n1,2,3\n"), s.csv + ":3: row has 3 fields, header has 2");
}

TEST(CsvDataLoaderTest, NumbersMustFitAndIntegersMustBeWhole) {
    Scratch s;
    EXPECT_EQ(s.error("x\n1\n1e999\n"), s.csv + ":3: \"1e999\" in column \"x\" is too large for a number");
    EXPECT_EQ(s.error("n\n2\n2.5\n", R"({"fields":[{"name":"n","type":"integer"}]})"),
              s.csv + ":3: \"2.5\" in column \"n\" is not a whole number");
}

TEST(CsvDataLoaderTest, NumberWithDecimalCommaIsNotANumber) {
    Scratch s;
    EXPECT_EQ(s.error("x\n\"1,5\"\n", R"({"fields":[{"name":"x","type":"number"}]})"),
              s.csv + ":2: \"1,5\" in column \"x\" is not a number");
}

// ---- schema problems ----

TEST(CsvDataLoaderTest, SchemaFieldsMustBeColumnsOfTheFile) {
    Scratch s;
    EXPECT_EQ(s.error("a,b\n1,2\n", R"({"fields":[{"name":"a"},{"name":"B"}]})"),
              s.schema + ": field 2 (\"B\") is not a column of " + s.csv +
                  " (column 2 is \"b\"; names must match exactly, letter case included)");
    EXPECT_EQ(s.error("a,b\n1,2\n", R"({"fields":[{"name":"c"}]})"),
              s.schema + ": field 1 (\"c\") is not a column of " + s.csv);
    EXPECT_EQ(s.error("a,b\n1,2\n", R"({"fields":[{"name":"b"},{"name":"b"}]})"),
              s.schema + ": field 2 (\"b\") has the name of field 1");
}

TEST(CsvDataLoaderTest, SchemaPropertiesAreChecked) {
    Scratch s;
    const std::string data = "x\n1\n";
    EXPECT_EQ(
        s.error(data, R"({"fields":[{"name":"x","type":"date"}]})"),
        s.schema + ": field 1 (\"x\"): type \"date\" is not supported (use \"number\", \"integer\" or \"string\")");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","measurementLevel":"interval"}]})"),
              s.schema +
                  ": field 1 (\"x\"): \"measurementLevel\" must be \"nominal\", \"ordinal\" or \"scale\", not "
                  "\"interval\"");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","type":"string","measurementLevel":"scale"}]})"),
              s.schema + ": field 1 (\"x\"): a string field cannot have the measurement level \"scale\"");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","title":true}]})"),
              s.schema + ": field 1 (\"x\"): \"title\" must be a text");
    EXPECT_EQ(s.error(data, R"({"fields":[{"type":"number"}]})"), s.schema + ": field 1: needs a \"name\" text");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","displayDecimals":40}]})"),
              s.schema + ": field 1 (\"x\"): \"displayDecimals\" must be a whole number from 0 to 16");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","displayWidth":41}]})"),
              s.schema +
                  ": field 1 (\"x\"): a numeric format needs a width from 1 to 40 and fewer decimals than "
                  "its width");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","writeWidth":4,"writeDecimals":4}]})"),
              s.schema +
                  ": field 1 (\"x\"): a numeric format needs a width from 1 to 40 and fewer decimals than "
                  "its width");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","categories":[{"label":"one"}]}]})"),
              s.schema + ": field 1 (\"x\"): each category needs a \"value\" (a number or a text)");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","type":"number","categories":[{"value":"one"}]}]})"),
              s.schema + ": field 1 (\"x\"): category value \"one\" is not a number");
    EXPECT_EQ(s.error(data, R"({"fields":[{"name":"x","categories":[1, 1.0]}]})"),
              s.schema + ": field 1 (\"x\"): category value \"1.0\" is given twice");
    EXPECT_EQ(s.error(data, R"({"fields":{}})"), s.schema + ": \"fields\" must be a list of field objects");
    EXPECT_EQ(s.error(data, R"([1, 2])"), s.schema + ": a table schema must be a JSON object");
    EXPECT_EQ(s.error(data, "{\"fields\":[]}\n\nextra"),
              s.schema + ":3: not valid JSON: The document root must not be followed by other values.");
}

TEST(CsvDataLoaderTest, DeclaredScaleFieldMustHoldNumbers) {
    Scratch s;
    EXPECT_EQ(s.error("x\n1\nlow\n", R"({"fields":[{"name":"x","measurementLevel":"scale"}]})"),
              s.csv + ":3: \"low\" in column \"x\" is not a number");
}

TEST(CsvDataLoaderTest, ExplicitSchemaThatDoesNotExistIsAnError) {
    Scratch s;
    writeFile(s.csv, "x\n1\n");
    const std::string schema = s.folder.file("other.json");
    EXPECT_EQ(loadError(s.csv, schema), schema + ": cannot read the file: No such file or directory");
}

// ---- good files ----

TEST(CsvDataLoaderTest, HeaderOnlyGivesVariablesWithoutCases) {
    const auto data = host::loadCsvDataSet(fixture("header_only.csv"), "");
    ASSERT_EQ(data->variableCount(), 3);
    EXPECT_EQ(data->caseCount(), 0u);
    EXPECT_EQ(data->variable(0).name, "x");
    EXPECT_EQ(data->variable(2).type, 0);
}

TEST(CsvDataLoaderTest, InfersNumericAndTextColumnsWithoutSchema) {
    const auto data = host::loadCsvDataSet(fixture("inferred.csv"), "");
    ASSERT_EQ(data->variableCount(), 3);
    ASSERT_EQ(data->caseCount(), 3u);
    const host::VariableInfo& code = data->variable(0);
    const host::VariableInfo& note = data->variable(2);
    EXPECT_EQ(code.type, 0);
    EXPECT_EQ(code.measurementLevel, 3);
    EXPECT_FALSE(code.hasLabel);
    EXPECT_EQ(note.type, 4);  // longest value "none"
    EXPECT_EQ(note.measurementLevel, 1);
    EXPECT_EQ(data->numericValue(0, 0), 1.0);
    EXPECT_EQ(data->numericValue(2, 0), kSystemMissing);
    EXPECT_EQ(data->numericValue(1, 1), kSystemMissing);
    EXPECT_EQ(data->numericValue(2, 1), 30.0);
    EXPECT_EQ(data->textValue(0, 2), "");
    EXPECT_EQ(data->textValue(1, 2), "none");
    // Text never reaches a procedure as a number.
    EXPECT_EQ(data->numericValue(1, 2), kSystemMissing);
    EXPECT_EQ(data->label(), "");
}

TEST(CsvDataLoaderTest, ByteOrderMarkAndCrLfAreAccepted) {
    const auto data = host::loadCsvDataSet(fixture("bom_crlf.csv"), "");
    ASSERT_EQ(data->variableCount(), 3);
    EXPECT_EQ(data->variable(0).name, "height");
    ASSERT_EQ(data->caseCount(), 3u);
    EXPECT_EQ(data->numericValue(1, 1), 82.5);
    EXPECT_EQ(data->numericValue(2, 1), kSystemMissing);
    EXPECT_EQ(data->textValue(2, 2), "mid, average");
    EXPECT_EQ(data->textValue(0, 2), "short");
}

TEST(CsvDataLoaderTest, QuotedFieldsKeepCommasQuotesAndLineBreaks) {
    const auto data = host::loadCsvDataSet(fixture("quoted_newlines.csv"), "");
    ASSERT_EQ(data->caseCount(), 4u);
    EXPECT_EQ(data->textValue(0, 1), "first line\nsecond line");
    EXPECT_EQ(data->textValue(1, 1), "says \"hi\", then leaves");
    EXPECT_EQ(data->textValue(2, 1), "a,b,c");
    EXPECT_EQ(data->numericValue(3, 2), 40.0);
    EXPECT_EQ(data->variable(1).type, static_cast<int>(std::string("first line\nsecond line").size()));
}

TEST(CsvDataLoaderTest, NamesWithDotsAndSchemaMissingValues) {
    const auto data = host::loadCsvDataSet(fixture("airquality.csv"), "");
    ASSERT_EQ(data->variableCount(), 6);
    EXPECT_EQ(data->label(), "New York air quality, May 1973 (first days)");
    const int solar = data->findVariable("solar.r");
    ASSERT_EQ(solar, 1);
    EXPECT_EQ(data->variable(solar).name, "Solar.R");
    EXPECT_EQ(data->variable(solar).label, "Solar radiation (lang)");
    EXPECT_TRUE(data->variable(solar).hasLabel);
    EXPECT_EQ(data->numericValue(0, solar), 190.0);
    // "NA" is a missing-value text of the schema.
    EXPECT_EQ(data->numericValue(4, 0), kSystemMissing);
    EXPECT_EQ(data->numericValue(5, solar), kSystemMissing);
    EXPECT_EQ(data->numericValue(5, 0), 28.0);
    EXPECT_EQ(data->variable(4).measurementLevel, 2);
    EXPECT_EQ(data->variable(0).measurementLevel, 3);
    EXPECT_EQ(data->findVariable("Nope"), -1);
}

TEST(CsvDataLoaderTest, FieldMissingValuesReplaceTheSchemaDefault) {
    Scratch s;
    const auto data = s.load("a,b\n-9,-9\n,3\n", R"({"missingValues":["","-9"],"fields":[
        {"name":"a"},{"name":"b","missingValues":["99"]}]})");
    EXPECT_EQ(data->numericValue(0, 0), kSystemMissing);
    EXPECT_EQ(data->numericValue(0, 1), -9.0);
    // Empty cells are missing whatever the missing-value texts say.
    EXPECT_EQ(data->numericValue(1, 0), kSystemMissing);
}

TEST(CsvDataLoaderTest, UserMissingTextCodeMakesTextEmpty) {
    Scratch s;
    const auto data = s.load("city\nOslo\nNA\n", R"({"missingValues":["NA"],"fields":[{"name":"city"}]})");
    EXPECT_EQ(data->variable(0).type, 4);
    EXPECT_EQ(data->textValue(0, 0), "Oslo");
    EXPECT_EQ(data->textValue(1, 0), "");
}

TEST(CsvDataLoaderTest, LabelsValueLabelsAndLevelsComeFromTheSchema) {
    Scratch s;
    const auto data = s.load("g,r,name\n1,2,a\n2,3,b\n", R"({"title":"Survey","fields":[
        {"name":"g","type":"integer","title":"Group","measurementLevel":"nominal",
         "categories":[{"value":1,"label":"One"},{"value":2.0,"label":"Two"}]},
        {"name":"r","type":"number","measurementLevel":"ordinal","categories":[1,2,3]},
        {"name":"name","type":"string","title":"Name","width":12,"categories":[{"value":"a","label":"Alpha"}]}]})");
    EXPECT_EQ(data->label(), "Survey");
    const host::VariableInfo& g = data->variable(0);
    EXPECT_EQ(g.label, "Group");
    EXPECT_EQ(g.measurementLevel, 1);
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(g.valueLabels, (Pairs{{"1", "One"}, {"2", "Two"}}));
    const host::VariableInfo& r = data->variable(1);
    EXPECT_EQ(r.measurementLevel, 2);
    EXPECT_FALSE(r.hasLabel);
    EXPECT_EQ(r.valueLabels, (Pairs{{"1", "1"}, {"2", "2"}, {"3", "3"}}));
    const host::VariableInfo& name = data->variable(2);
    EXPECT_EQ(name.type, 12);
    EXPECT_EQ(name.measurementLevel, 1);
    EXPECT_EQ(name.valueLabels, (Pairs{{"a", "Alpha"}}));
}

TEST(CsvDataLoaderTest, FormatsAreInferredOrTakenFromTheSchema) {
    Scratch s;
    const auto data = s.load("a,b,c,d\n1.25,3,1.5,x\n2.5,4,2,yy\n", R"({"fields":[
        {"name":"a"},{"name":"b","type":"integer"},
        {"name":"c","displayWidth":10,"displayDecimals":3,"writeWidth":12,"writeDecimals":4},
        {"name":"d","displayWidth":20}]})");
    EXPECT_EQ(data->variable(0).format.type, VELA_Format::FormatNumeric);
    EXPECT_EQ(data->variable(0).format.width, 8);
    EXPECT_EQ(data->variable(0).format.decimals, 2);  // most decimals written
    EXPECT_EQ(data->variable(1).format.decimals, 0);
    EXPECT_EQ(data->variable(2).format.width, 10);
    EXPECT_EQ(data->variable(2).format.decimals, 3);
    EXPECT_EQ(data->variable(2).writeFormat.width, 12);
    EXPECT_EQ(data->variable(2).writeFormat.decimals, 4);
    EXPECT_EQ(data->variable(3).type, 2);
    EXPECT_EQ(data->variable(3).format.type, VELA_Format::FormatString);
    EXPECT_EQ(data->variable(3).format.width, 20);
    EXPECT_EQ(data->variable(3).writeFormat.width, 2);
}

TEST(CsvDataLoaderTest, DeclaredStringWidthGrowsToFitLongerValues) {
    Scratch s;
    const auto data = s.load("w\nabcdef\n", R"({"fields":[{"name":"w","type":"string","width":3}]})");
    EXPECT_EQ(data->variable(0).type, 6);
    EXPECT_EQ(data->textValue(0, 0), "abcdef");
}

TEST(CsvDataLoaderTest, NumbersInAStringFieldStayText) {
    Scratch s;
    const auto data = s.load("zip\n01234\n", R"({"fields":[{"name":"zip","type":"string"}]})");
    EXPECT_EQ(data->textValue(0, 0), "01234");
    EXPECT_EQ(data->numericValue(0, 0), kSystemMissing);
}

TEST(CsvDataLoaderTest, FindsTheSchemaBesideTheFile) {
    ScratchFolder folder;
    writeFile(folder.file("a.txt"), "x\n1\n");
    writeFile(folder.file("a.txt.schema.json"), R"({"title":"T1","fields":[{"name":"x"}]})");
    EXPECT_EQ(host::loadCsvDataSet(folder.file("a.txt"), "")->label(), "T1");
    writeFile(folder.file("b.CSV"), "x\n1\n");
    writeFile(folder.file("b.schema.json"), R"({"title":"T2","fields":[{"name":"x"}]})");
    EXPECT_EQ(host::loadCsvDataSet(folder.file("b.CSV"), "")->label(), "T2");
    writeFile(folder.file("c.csv"), "x\n1\n");
    writeFile(folder.file("c.csv.schema.json"), R"({"title":"T3","fields":[{"name":"x"}]})");
    EXPECT_EQ(host::loadCsvDataSet(folder.file("c.csv"), "")->label(), "T3");
    writeFile(folder.file("other.json"), R"({"title":"T4","fields":[{"name":"x"}]})");
    EXPECT_EQ(host::loadCsvDataSet(folder.file("c.csv"), folder.file("other.json"))->label(), "T4");
    EXPECT_EQ(host::schemaPathFor("/d/x.csv"), "/d/x.schema.json");
    EXPECT_EQ(host::schemaPathFor("/d/x"), "/d/x.schema.json");
}

TEST(CsvDataLoaderTest, NumbersReadExactly) {
    Scratch s;
    const auto data = s.load("x\n0.1\n-0\n1e-3\n 12 \n");
    EXPECT_EQ(data->numericValue(0, 0), 0.1);
    EXPECT_EQ(data->numericValue(1, 0), 0.0);
    EXPECT_TRUE(std::signbit(data->numericValue(1, 0)));
    EXPECT_EQ(data->numericValue(2, 0), 0.001);
    EXPECT_EQ(data->numericValue(3, 0), 12.0);
}

// Damaged files either load or fail with a DataLoadError, never otherwise.
TEST(CsvDataLoaderTest, RandomlyDamagedFilesNeverCrash) {
    ScratchFolder folder;
    const std::string original = datatest::readFile(fixture("quoted_newlines.csv"));
    const std::string schema = R"({"fields":[{"name":"id","type":"integer"},{"name":"comment"},{"name":"value"}]})";
    const char alphabet[] = {'"', ',', '\n', '\r', 'x', '1', '.', ' ', '\0', '\xEF'};
    std::mt19937 random(7);
    int loaded = 0;
    int refused = 0;
    for (int round = 0; round < 400; ++round) {
        std::string text = original;
        const int edits = 1 + static_cast<int>(random() % 4);
        for (int e = 0; e < edits; ++e) {
            const std::size_t at = random() % text.size();
            if (random() % 2 == 0)
                text[at] = alphabet[random() % sizeof alphabet];
            else
                text.erase(at, 1 + random() % 3);
            if (text.empty()) break;
        }
        writeFile(folder.file("d.csv"), text);
        writeFile(folder.file("d.schema.json"), round % 2 == 0 ? schema : schema.substr(0, random() % schema.size()));
        try {
            host::loadCsvDataSet(folder.file("d.csv"), "");
            ++loaded;
        } catch (const host::DataLoadError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(folder.path(), 0), 0u) << e.what();
            ++refused;
        }
    }
    EXPECT_EQ(loaded + refused, 400);
    EXPECT_GT(refused, 0);
}

// ---- files as other programs write them ----

namespace {

host::CsvLoadOptions withNotes(std::ostream& notes) {
    host::CsvLoadOptions options;
    options.notes = &notes;
    return options;
}

}  // namespace

TEST(CsvDataLoaderTest, NaIsMissingInNumericColumnsAndTextElsewhere) {
    Scratch s;
    const auto data = s.load("x,country\n1,NA\nNA,DE\n 3 ,FR\n");
    EXPECT_EQ(data->variable(0).type, 0);
    EXPECT_EQ(data->numericValue(1, 0), kSystemMissing);
    EXPECT_EQ(data->numericValue(2, 0), 3.0);
    // "NA" is Namibia in a text column.
    EXPECT_EQ(data->textValue(0, 1), "NA");
}

TEST(CsvDataLoaderTest, NaOptionReplacesTheDefaultListInEveryColumn) {
    Scratch s;
    host::CsvLoadOptions options;
    options.missingValues = std::vector<std::string>{"-99", "."};
    const auto data = s.loadWith("x,y,t\n-99,NA,.\n2,3,a\n", options);
    EXPECT_EQ(data->numericValue(0, 0), kSystemMissing);
    EXPECT_EQ(data->variable(1).type, 2);  // "NA" is no longer missing: y is text
    EXPECT_EQ(data->textValue(0, 2), "");
    // A schema's list replaces the option's for its file.
    writeFile(s.schema, R"({"missingValues":["", "NA"]})");
    const auto withSchema = host::loadCsvDataSet(s.csv, "", options);
    EXPECT_EQ(withSchema->numericValue(0, 0), -99.0);
    EXPECT_EQ(withSchema->numericValue(0, 1), kSystemMissing);
}

TEST(CsvDataLoaderTest, SeparatorIsDetected) {
    Scratch s;
    for (const std::string sep : {";", "\t", "|"}) {
        const auto data =
            s.load("a" + sep + "b c" + sep + "d\n1" + sep + "2" + sep + "x,y\n3" + sep + "4" + sep + "z\n");
        ASSERT_EQ(data->variableCount(), 3) << sep;
        EXPECT_EQ(data->variable(1).name, "b_c");
        EXPECT_EQ(data->numericValue(1, 1), 4.0);
        EXPECT_EQ(data->textValue(0, 2), "x,y");
    }
}

TEST(CsvDataLoaderTest, ForcedSeparatorWinsOverDetection) {
    Scratch s;
    host::CsvLoadOptions options;
    options.delimiter = ';';
    const auto data = s.loadWith("a;b,c\n1;2,3\n", options);
    ASSERT_EQ(data->variableCount(), 2);
    EXPECT_EQ(data->variable(1).name, "b_c");
    EXPECT_EQ(data->numericValue(0, 1), 2.3);  // with ';' between fields, a decimal comma
}

TEST(CsvDataLoaderTest, DecimalCommaIsDetectedPerColumnWithSemicolons) {
    Scratch s;
    const auto data = s.load("a;b;c\n1;2,5;1.5\n2;-0,25;2\n3;1e3;x,5\n");
    EXPECT_EQ(data->numericValue(0, 1), 2.5);
    EXPECT_EQ(data->numericValue(1, 1), -0.25);
    EXPECT_EQ(data->numericValue(2, 1), 1000.0);
    EXPECT_EQ(data->variable(1).format.decimals, 2);
    EXPECT_EQ(data->numericValue(0, 0), 1.0);
    // Column c uses a point first, so "x,5" makes it text.
    EXPECT_EQ(data->variable(2).type, 3);
    // A column that mixes both marks is text: "1,5" after "2.5".
    EXPECT_EQ(s.load("v;w\n2.5;1\n1,5;2\n")->variable(0).type, 3);
}

TEST(CsvDataLoaderTest, ForcedDecimalComma) {
    Scratch s;
    host::CsvLoadOptions options;
    options.decimal = ',';
    const auto data = s.loadWith("a;b\n1.5;\"2,5\"\n", options);
    EXPECT_NE(data->variable(0).type, 0);  // "1.5" is not a number with a decimal comma
    EXPECT_EQ(data->numericValue(0, 1), 2.5);
    // With commas between fields, quoted numbers can have a decimal comma.
    EXPECT_EQ(s.loadWith("a,b\n\"1,5\",2\n", options)->numericValue(0, 0), 1.5);
}

TEST(CsvDataLoaderTest, SchemaNumberPropertiesAreHonoured) {
    Scratch s;
    const auto data = s.load("price,share,big\n\"EUR 1.234,5\",95%,\"1,000,000\"\n", R"({"fields":[
        {"name":"price","type":"number","decimalChar":",","groupChar":".","bareNumber":false},
        {"name":"share","type":"number","bareNumber":false},
        {"name":"big","type":"integer","groupChar":","}]})");
    EXPECT_EQ(data->numericValue(0, 0), 1234.5);
    EXPECT_EQ(data->numericValue(0, 1), 95.0);
    EXPECT_EQ(data->numericValue(0, 2), 1000000.0);
    EXPECT_EQ(s.error("x\n1\n", R"({"fields":[{"name":"x","decimalChar":"ab"}]})"),
              s.schema + ": field 1 (\"x\"): \"decimalChar\" must be one character such as \".\" or \",\"");
    EXPECT_EQ(s.error("x\n1\n", R"({"fields":[{"name":"x","bareNumber":"no"}]})"),
              s.schema + ": field 1 (\"x\"): \"bareNumber\" must be true or false");
    EXPECT_EQ(s.error("x\n1\n", R"({"fields":[{"name":"x","decimalChar":",","groupChar":","}]})"),
              s.schema + ": field 1 (\"x\"): \"decimalChar\" and \"groupChar\" must differ");
}

TEST(CsvDataLoaderTest, PartialSchemaDescribesSomeColumnsByName) {
    Scratch s;
    const auto data = s.load("id,Infant Mortality,note\n1,-9,a\n2,5.5,b\n",
                             R"({"missingValues":["","-9"],"fields":[
                                 {"name":"Infant Mortality","title":"Deaths per 1000"},
                                 {"name":"id","measurementLevel":"ordinal"}]})");
    EXPECT_EQ(data->variable(0).measurementLevel, 2);
    EXPECT_EQ(data->variable(1).name, "Infant_Mortality");
    EXPECT_EQ(data->variable(1).label, "Deaths per 1000");
    EXPECT_EQ(data->numericValue(0, 1), kSystemMissing);
    EXPECT_EQ(data->variable(2).type, 1);
    // A field may also use the name the column was given.
    Scratch t;
    EXPECT_EQ(t.load("a b\n1\n", R"({"fields":[{"name":"a_b","title":"T"}]})")->variable(0).label, "T");
    // A schema with missingValues alone.
    Scratch u;
    EXPECT_EQ(u.load("x\n1\n.\n", R"({"missingValues":["."]})")->numericValue(1, 0), kSystemMissing);
}

TEST(CsvDataLoaderTest, RowNamesWithoutAHeaderCellGetAColumn) {
    Scratch s;
    const auto data = s.load("\"mpg\"\t\"cyl\"\n\"Mazda RX4\"\t21\t6\n\"Datsun 710\"\t22.8\t4\n");
    ASSERT_EQ(data->variableCount(), 3);
    EXPECT_EQ(data->variable(0).name, "V1");
    EXPECT_EQ(data->textValue(1, 0), "Datsun 710");
    EXPECT_EQ(data->numericValue(1, 1), 22.8);
    EXPECT_EQ(s.error("a,b\n1,2,3\n4,5\n"),
              s.csv + ":3: row has 2 fields, header has 2 (and a first column of row names)");
}

TEST(CsvDataLoaderTest, RenamedColumnsGetOneNoteEach) {
    Scratch s;
    writeFile(s.csv, "a b,,a\n1,2,3\n");
    std::ostringstream notes;
    host::loadCsvDataSet(s.csv, "", withNotes(notes));
    EXPECT_EQ(notes.str(), "Note: " + s.csv +
                               ":1: column 1 (\"a b\") is named a_b: a variable name may hold only "
                               "letters, digits, '.', '_', '$', '#' and '@'\n"
                               "Note: " +
                               s.csv + ":1: column 2 has no name in the header row; it is named V2\n");
    host::CsvLoadOptions quiet = withNotes(notes);
    quiet.quiet = true;
    notes.str("");
    host::loadCsvDataSet(s.csv, "", quiet);
    EXPECT_EQ(notes.str(), "");
}

TEST(CsvDataLoaderTest, TextThatIsNotUtf8IsReadAsWindows1252WithANote) {
    Scratch s;
    writeFile(s.csv,
              "Gr\xF6\xDF"
              "e,x\n1,\x80 5\n");
    std::ostringstream notes;
    const auto data = host::loadCsvDataSet(s.csv, "", withNotes(notes));
    EXPECT_EQ(data->variable(0).name,
              "Gr\xC3\xB6\xC3\x9F"
              "e");
    EXPECT_EQ(data->textValue(0, 1), "\xE2\x82\xAC 5");
    EXPECT_EQ(notes.str(), "Note: " + s.csv + ":1: the file is not UTF-8 text; it is read as Windows-1252 (Latin-1)\n");
}

TEST(CsvDataLoaderTest, Utf16WithByteOrderMarkIsConverted) {
    Scratch s;
    const std::string text = "a\tb\r\n1\t\xC3\xA9\r\n";  // UTF-8 of the same text
    std::string utf16 = "\xFF\xFE";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) == 0xC3) {  // é = U+00E9
            utf16 += "\xE9";
            utf16 += '\0';
            ++i;
            continue;
        }
        utf16 += text[i];
        utf16 += '\0';
    }
    writeFile(s.csv, utf16);
    const auto data = host::loadCsvDataSet(s.csv, "");
    ASSERT_EQ(data->variableCount(), 2);
    EXPECT_EQ(data->textValue(0, 1), "\xC3\xA9");
}

TEST(CsvDataLoaderTest, DeeplyNestedSchemaIsRefusedWithoutCrashing) {
    Scratch s;
    const std::string nested =
        R"({"fields":[{"name":"x","title":)" + std::string(150000, '[') + std::string(150000, ']') + "}]}";
    EXPECT_EQ(s.error("x\n1\n", nested),
              s.schema + ":1: not valid JSON: Arrays and objects are nested more than 200 levels deep.");
}

TEST(CsvDataLoaderTest, ColumnsAreReadWhateverTheirOrderOfTypes) {
    Scratch s;
    // b turns out to be text at its last cell; its earlier cells keep their text.
    const auto data = s.load("a,b,c\n1,2.50,x\n2,NA,y\n3,n/a,z\n");
    EXPECT_EQ(data->variable(1).type, 4);
    EXPECT_EQ(data->textValue(0, 1), "2.50");
    EXPECT_EQ(data->textValue(1, 1), "NA");
    EXPECT_EQ(data->numericValue(2, 0), 3.0);
    EXPECT_EQ(data->textValue(2, 2), "z");
    // A number too large matters only when the column stays numeric.
    EXPECT_EQ(s.load("t\n1e999\nword\n")->textValue(0, 0), "1e999");
}
