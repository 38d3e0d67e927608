// Data files as R, pandas and spreadsheets write them load, and DISTANCE
// CORRELATION prints the same numbers as for a clean file of the same data.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <rapidjson/document.h>

#include "DistcorrRunner.h"

namespace {

const char* const kPrint = " /PRINT DISTCORRCOEFF DETAILS CORREST DISTVAR.";

std::string importFixture(const std::string& name) { return fixture("import/" + name); }

void collectNumbers(const rapidjson::Value& value, std::vector<double>& numbers) {
    if (value.IsNumber()) {
        numbers.push_back(value.GetDouble());
    } else if (value.IsArray()) {
        for (const auto& item : value.GetArray()) collectNumbers(item, numbers);
    } else if (value.IsObject()) {
        for (const auto& member : value.GetObject()) collectNumbers(member.value, numbers);
    }
}

// Every number of the output document a run writes, in document order.
std::vector<double> numbersOfRun(std::vector<std::string> args, const std::string& command,
                                 const std::string& stdinText = "") {
    static int runs = 0;
    const std::string output = makeTempDir() + "/out" + std::to_string(++runs) + ".json";
    args.insert(args.end(),
                {"--quiet", "--output", output, "-e", std::string("DISTANCE CORRELATION ") + command + kPrint});
    const DistcorrResult r = runDistcorr(args, stdinText);
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err.find("Error"), std::string::npos) << r.err;
    std::vector<double> numbers;
    const rapidjson::Document doc = parseJsonFile(output);
    EXPECT_TRUE(doc.IsObject()) << output;
    if (doc.IsObject()) collectNumbers(doc, numbers);
    return numbers;
}

struct Shape {
    const char* file;
    const char* variables;
    const char* clean;
    const char* cleanVariables;
};

const char* const kAirquality = "VARIABLE=Ozone Solar.R Wind Temp";
const char* const kCars = "VARIABLE=mpg disp hp wt qsec";

const Shape kShapes[] = {
    {"r_write_csv_airquality.csv", kAirquality, "airquality_clean.csv", kAirquality},
    {"r_write_csv_mtcars.csv", kCars, "mtcars_clean.csv", kCars},
    {"r_write_csv2_airquality.csv", kAirquality, "airquality_clean.csv", kAirquality},
    {"r_write_table_tab_mtcars.txt", kCars, "mtcars_clean.csv", kCars},
    {"pandas_index_airquality.csv", kAirquality, "airquality_clean.csv", kAirquality},
    {"spreadsheet_bom_crlf_airquality.csv", "VARIABLE=Ozone_ppb Solar_R Wind Temp", "airquality_clean.csv",
     kAirquality},
    {"names_spaces_duplicates_swiss.csv", "VARIABLE=Fertility Infant_Mortality Education Education_2",
     "swiss_clean.csv", "VARIABLE=Fertility Infant_Mortality Education Education_2"},
    {"partial_fields_airquality.csv", kAirquality, "airquality_clean.csv", kAirquality},
    {"partial_missing_airquality.csv", kAirquality, "airquality_clean.csv", kAirquality},
};

}  // namespace

TEST(DistcorrDataImport, EachShapeGivesTheNumbersOfTheCleanFile) {
    for (const Shape& shape : kShapes) {
        SCOPED_TRACE(shape.file);
        const std::vector<double> clean = numbersOfRun({"--data", importFixture(shape.clean)}, shape.cleanVariables);
        const std::vector<double> messy = numbersOfRun({"--data", importFixture(shape.file)}, shape.variables);
        ASSERT_GT(clean.size(), 20u);
        EXPECT_EQ(messy, clean);
    }
}

TEST(DistcorrDataImport, StandardInputGivesTheNumbersOfTheFile) {
    const std::string text = readWholeFile(importFixture("r_write_csv2_airquality.csv"));
    const std::vector<double> piped = numbersOfRun({"--data", "-"}, kAirquality, text);
    EXPECT_EQ(piped, numbersOfRun({"--data", importFixture("airquality_clean.csv")}, kAirquality));
    // A schema for standard input is named with --schema.
    const std::string partial = readWholeFile(importFixture("partial_missing_airquality.csv"));
    EXPECT_EQ(numbersOfRun({"--data", "-", "--schema", importFixture("partial_missing_airquality.schema.json")},
                           kAirquality, partial),
              piped);
}

TEST(DistcorrDataImport, RenamedColumnsAreNotedUnlessQuiet) {
    const std::string file = importFixture("names_spaces_duplicates_swiss.csv");
    const DistcorrResult listed = runDistcorr({"--data", file});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_NE(listed.err.find("Note: " + file +
                              ":1: column 4 (\"Infant Mortality\") is named Infant_Mortality: a variable name may "
                              "hold only letters, digits, '.', '_', '$', '#' and '@'\n"),
              std::string::npos)
        << listed.err;
    EXPECT_NE(listed.err.find("Note: " + file +
                              ":1: column 5 (\"Education\") is named Education_2: column 3 has the same name"),
              std::string::npos)
        << listed.err;
    EXPECT_NE(listed.out.find("Infant_Mortality  numeric  scale  \"Infant Mortality\""), std::string::npos)
        << listed.out;
    EXPECT_EQ(runDistcorr({"--data", file, "--quiet"}).err, "");
}

TEST(DistcorrDataImport, ImportOptionsOnTheCommandLine) {
    const std::string dir = makeTempDir();
    const std::string csv = dir + "/codes.csv";
    std::ofstream(csv) << "a|b\n1|2,5\n-99|3,5\n3|.\n4|1,5\n";
    const DistcorrResult r = runDistcorr({"--data", csv, "--na", "-99,.", "--delimiter", "|", "--decimal", ","});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("4 cases, 2 variables"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("b  numeric  scale"), std::string::npos) << r.out;
    EXPECT_EQ(runDistcorr({"--data", csv, "--delimiter", "x"}).exitCode, 2);
    EXPECT_EQ(runDistcorr({"--data", csv, "--decimal", ";"}).exitCode, 2);
    EXPECT_EQ(runDistcorr({"--data", "-", "-"}).exitCode, 2);
    const DistcorrResult help = runDistcorr({"--help"});
    for (const char* option : {"--na", "--delimiter", "--decimal"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
}

TEST(DistcorrDataImport, TextThatIsNotUtf8NeverReachesASavedDictionary) {
    const std::string dir = makeTempDir();
    const std::string csv = dir + "/latin1.csv";
    std::ofstream(csv, std::ios::binary) << "Gr\xF6\xDF"
                                            "e,Gewicht\n1,2\n2,3\n3,5\n4,4\n";
    const DistcorrResult r = runDistcorr({"--data", csv, "-e",
                                          "DISTANCE CORRELATION VARIABLE=Gr\xC3\xB6\xC3\x9F"
                                          "e Gewicht /PRINT DISTMATRIX(CONFIGURE=[Gr\xC3\xB6\xC3\x9F"
                                          "e] SAVE=TRUE OUTFILE='" +
                                              dir + "/saved.csv')."});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.err.find("Note: " + csv + ":1: the file is not UTF-8 text; it is read as Windows-1252 (Latin-1)"),
              std::string::npos)
        << r.err;
    const std::string dictionary = readWholeFile(dir + "/saved.schema.json");
    rapidjson::Document doc;
    doc.Parse<rapidjson::kParseValidateEncodingFlag>(dictionary.c_str());
    EXPECT_FALSE(doc.HasParseError()) << dictionary;
    EXPECT_NE(dictionary.find("[Gr\xC3\xB6\xC3\x9F"
                              "e = 1.000]"),
              std::string::npos)
        << dictionary;
}

TEST(DistcorrDataImport, DeeplyNestedJsonIsRefusedWithoutCrashing) {
    const std::string dir = makeTempDir();
    const std::string deep = std::string(150000, '[') + std::string(150000, ']');
    std::ofstream(dir + "/d.csv") << "x,y\n1,2\n2,1\n3,3\n";
    std::ofstream(dir + "/d.schema.json") << "{\"fields\":[{\"name\":\"x\",\"title\":" << deep << "}]}";
    const DistcorrResult data = runDistcorr({"--data", dir + "/d.csv", "-e", "DISTANCE CORRELATION VARIABLE=x y."});
    EXPECT_EQ(data.exitCode, 3);
    EXPECT_NE(data.err.find(dir + "/d.schema.json:1: not valid JSON: Arrays and objects are nested more than 200 "
                                  "levels deep."),
              std::string::npos)
        << data.err;
    // An unclosed one too.
    std::ofstream(dir + "/d.schema.json") << std::string(150000, '[');
    EXPECT_EQ(runDistcorr({"--data", dir + "/d.csv"}).exitCode, 3);
    // A procedure manifest.
    const std::string procedures = makeTempDir();
    std::ofstream(procedures + "/deep.procedure.json") << "{\"command\":" << deep << "}";
    std::ofstream(dir + "/e.csv") << "x,y\n1,2\n2,1\n3,3\n";
    const DistcorrResult manifest =
        runDistcorr({"--data", dir + "/e.csv", "--procedures", procedures, "-e", "DISTANCE CORRELATION VARIABLE=x y."});
    EXPECT_NE(manifest.exitCode, 139);
    EXPECT_NE(manifest.err.find("deep.procedure.json: malformed manifest: Arrays and objects are nested more than"),
              std::string::npos)
        << manifest.err;
}
