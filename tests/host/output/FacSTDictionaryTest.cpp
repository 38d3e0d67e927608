// The string table: keys come back unchanged without a translation, the
// German table translates every visible text of the procedure, and a broken
// or missing table is reported and leaves the texts in English.
#include <filesystem>
#include <fstream>
#include <map>

#include <gtest/gtest.h>

#include "FacSTDictionary.h"
#include "HostSession.h"
#include "PathFactory.h"
#include "output/StringResources.h"

namespace fs = std::filesystem;

namespace {

class FacSTDictionaryTest : public ::testing::Test {
protected:
    void SetUp() override {
        session().setQuiet(true);
        session().beginCommand({"X.", "test", 1});
        session().setResourceDir("");
        session().setLanguage("");
    }
    void TearDown() override {
        session().setResourceDir("");
        session().setLanguage("");
        if (!folder_.empty()) fs::remove_all(folder_);
    }
    static host::HostSession& session() { return host::HostSession::instance(); }

    // A resource root holding strings/<language>/strings.json with the text.
    std::string resourcesWith(const std::string& language, const std::string& text) {
        folder_ = fs::temp_directory_path() /
                  ("dc-strings-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder_ / "strings" / language);
        std::ofstream(folder_ / "strings" / language / "strings.json") << text;
        return folder_.string();
    }

    std::vector<std::string> warnings() const {
        std::vector<std::string> texts;
        for (const auto& m : session().messages())
            if (m.level == host::MessageLevel::Warning) texts.push_back(m.text);
        return texts;
    }

    fs::path folder_;
};

// Every text the procedure looks up, with its German translation.
const std::map<std::string, std::string> kGerman = {
    {"Distance Correlation", "Distanzkorrelation"},
    {"Descriptive Statistics", "Deskriptive Statistiken"},
    {"Variable", "Variable"},
    {"Label", "Beschriftung"},
    {"N", "N"},
    {"Mean", "Mittelwert"},
    {"Std. Deviation", "Std.-Abweichung"},
    {"Minimum", "Minimum"},
    {"Maximum", "Maximum"},
    {"Distance Correlation Coefficients", "Distanzkorrelationskoeffizienten"},
    {"Number of Replicates ^1", "Anzahl der Replikationen ^1"},
    {"Permutation Confidence Interval ^1", "Permutations-Konfidenzintervall ^1"},
    {"Confidence Interval ^1", "Konfidenzintervall ^1"},
    {"Lower", "Untergrenze"},
    {"Upper", "Obergrenze"},
    {"dCor Value", "dCor-Wert"},
    {"Sig.", "Sig."},
    {"vs.", "gegen"},
    {"Distance Correlation Estimates", "Schätzungen der Distanzkorrelation"},
    {"dCov", "dCov"},
    {"dCor", "dCor"},
    {"dVar", "dVar"},
    {"Variable Pair", "Variablenpaar"},
    {"Distance Variance", "Distanzvarianz"},
    {"Distance Matrix for Variable ^1", "Distanzmatrix für Variable ^1"},
    {"First ^1 records are printed.", "Die ersten ^1 Fälle werden angezeigt."},
    {"Distance Matrix data limit reached ...", "Datengrenze der Distanzmatrix erreicht ..."},
    {"Scatter Plot of pairwise distances", "Streudiagramm der paarweisen Distanzen"},
};

TEST_F(FacSTDictionaryTest, EnglishHasNoTableAndReturnsEveryKeyUnchanged) {
    const std::string location = PathFactory::getPathInstance(3)->getStringResourcePath();
    EXPECT_EQ(location, "");
    FacSTDictionary dictionary(location);
    dictionary.SetProcedure("Distance Correlation");
    for (const auto& [key, german] : kGerman) EXPECT_EQ(dictionary.LookUp(key), key);
    EXPECT_EQ(dictionary.LookUp("Anything else ^1"), "Anything else ^1");
    EXPECT_TRUE(session().messages().empty());
}

TEST_F(FacSTDictionaryTest, ResourcesAreFoundBesideTheHostLibrary) {
    const fs::path expected = fs::weakly_canonical(fs::path(DC_BINARY_DIR) / "share" / "distcorr");
    EXPECT_EQ(fs::weakly_canonical(host::resourceRoot()), expected);
    session().setLanguage("de");
    EXPECT_EQ(fs::weakly_canonical(PathFactory::getPathInstance(3)->getStringResourcePath()),
              expected / "strings" / "de");
    const auto languages = host::availableLanguages();
    EXPECT_NE(std::find(languages.begin(), languages.end(), "de"), languages.end());
}

TEST_F(FacSTDictionaryTest, GermanTranslatesEveryVisibleText) {
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    dictionary.SetProcedure("Distance Correlation");
    for (const auto& [key, german] : kGerman) EXPECT_EQ(dictionary.LookUp(key), german) << key;
    // Texts the table does not know stay as they are (e.g. composed titles).
    EXPECT_EQ(dictionary.LookUp("Distanzmatrix für Variable x"), "Distanzmatrix für Variable x");
    EXPECT_TRUE(warnings().empty());
}

TEST_F(FacSTDictionaryTest, GermanTableInTheSourceTreeIsCompleteAndKeepsMarkers) {
    session().setResourceDir(std::string(DC_SOURCE_DIR) + "/host/resources");
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    dictionary.SetProcedure("Distance Correlation");
    for (const auto& [key, german] : kGerman) {
        const std::string text = dictionary.LookUp(key);
        EXPECT_EQ(text, german) << key;
        EXPECT_EQ(key.find("^1") != std::string::npos, text.find("^1") != std::string::npos) << key;
    }
}

TEST_F(FacSTDictionaryTest, OtherProceduresAndNoProcedureGetTheKey) {
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    EXPECT_EQ(dictionary.LookUp("Mean"), "Mean");
    dictionary.SetProcedure("Other Procedure");
    EXPECT_EQ(dictionary.LookUp("Mean"), "Mean");
    dictionary.SetProcedure("Distance Correlation");
    EXPECT_EQ(dictionary.LookUp("Mean"), "Mittelwert");
}

TEST_F(FacSTDictionaryTest, MissingLanguageIsReportedAndTextsStayEnglish) {
    session().setLanguage("xx");
    const std::string location = PathFactory::getPathInstance(3)->getStringResourcePath();
    FacSTDictionary dictionary(location);
    dictionary.SetProcedure("Distance Correlation");
    EXPECT_EQ(dictionary.LookUp("Mean"), "Mean");
    const auto w = warnings();
    ASSERT_EQ(w.size(), 1u);
    EXPECT_EQ(w[0], "There is no string table " + (fs::path(location) / "strings.json").string() +
                        "; output texts are shown in English.");
}

TEST_F(FacSTDictionaryTest, MalformedTableIsReportedWithLineAndColumn) {
    // The trailing comma on line 3 leaves the object without a member name
    // where the closing brace stands: line 3, column 21 (4 blanks, "P" in
    // 5-7, colon 8, blank 9, brace 10, "a" 11-13, colon 14, blank 15, "b"
    // 16-18, comma 19, blank 20, closing brace 21).
    const std::string root = resourcesWith("de", "{\n  \"procedures\": {\n    \"P\": {\"a\": \"b\", }\n  }\n}\n");
    session().setResourceDir(root);
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    dictionary.SetProcedure("P");
    EXPECT_EQ(dictionary.LookUp("a"), "a");
    const auto w = warnings();
    ASSERT_EQ(w.size(), 2u);
    const std::string file = (fs::path(root) / "strings" / "de" / "strings.json").string();
    EXPECT_EQ(w[0], "The string table " + file + " is not valid JSON (line 3, column 21: Missing a name for object member.).");
    EXPECT_EQ(w[1], "Output texts are shown in English.");
}

TEST_F(FacSTDictionaryTest, EntriesThatAreNotTextsAreSkippedAndReported) {
    const std::string root =
        resourcesWith("de", R"({"procedures": {"P": {"a": 1, "b": "B"}, "Q": ["not", "an", "object"]}})");
    session().setResourceDir(root);
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    dictionary.SetProcedure("P");
    EXPECT_EQ(dictionary.LookUp("a"), "a");
    EXPECT_EQ(dictionary.LookUp("b"), "B");
    const auto w = warnings();
    ASSERT_EQ(w.size(), 2u);
    const std::string file = (fs::path(root) / "strings" / "de" / "strings.json").string();
    EXPECT_EQ(w[0], "The string table " + file + ": the translation of \"a\" (procedure \"P\") is not a text; it is skipped.");
    EXPECT_EQ(w[1], "The string table " + file + ": the entry of procedure \"Q\" is not an object of translations; it is skipped.");
}

TEST_F(FacSTDictionaryTest, TableWithoutProceduresIsReported) {
    const std::string root = resourcesWith("de", R"({"Mean": "Mittelwert"})");
    session().setResourceDir(root);
    session().setLanguage("de");
    FacSTDictionary dictionary(PathFactory::getPathInstance(3)->getStringResourcePath());
    dictionary.SetProcedure("Distance Correlation");
    EXPECT_EQ(dictionary.LookUp("Mean"), "Mean");
    const auto w = warnings();
    ASSERT_EQ(w.size(), 2u);
    EXPECT_NE(w[0].find("has no \"procedures\" object"), std::string::npos);
}

}  // namespace
