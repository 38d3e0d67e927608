#include "runner/ProcedureRegistry.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "DistcorrRunner.h"

namespace fs = std::filesystem;
using host::ProcedureLoadError;
using host::ProcedureRegistry;

namespace {

std::string writeManifest(const std::string& dir, const std::string& name, const std::string& body) {
    const std::string path = dir + "/" + name + ".procedure.json";
    std::ofstream(path) << body;
    return path;
}

const std::string kPlugin = std::string(DC_BINARY_DIR) + "/lib/libdistancecorrelation.so";

}  // namespace

TEST(ProcedureRegistry, FindsTheBuiltProcedureThroughItsManifest) {
    ProcedureRegistry registry;
    registry.loadManifests(std::string(DC_BINARY_DIR) + "/lib");
    const auto* p = registry.match("distance   correlation VARIABLE=a b.");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->command, "DISTANCE CORRELATION");
    EXPECT_EQ(p->entry, "discorr_");
    EXPECT_TRUE(fs::exists(p->library));
    EXPECT_EQ(registry.match("DISTANCE VARIABLE=a."), nullptr);
    EXPECT_EQ(registry.match("DISTANCECORRELATION VARIABLE=a."), nullptr);
}

TEST(ProcedureRegistry, MissingLibraryIsAClearError) {
    const std::string dir = makeTempDir();
    writeManifest(dir, "ghost", R"({"command": "GHOST", "library": "libghost.so", "entry": "ghost_"})");
    ProcedureRegistry registry;
    registry.loadManifests(dir);
    const auto* p = registry.match("GHOST.");
    ASSERT_NE(p, nullptr);
    try {
        registry.run(*p);
        FAIL() << "expected an error";
    } catch (const ProcedureLoadError& e) {
        EXPECT_NE(std::string(e.what()).find("libghost.so does not exist"), std::string::npos) << e.what();
    }
}

TEST(ProcedureRegistry, MissingSymbolIsAClearError) {
    const std::string dir = makeTempDir();
    writeManifest(dir, "dc", R"({"command": "DISTANCE CORRELATION", "library": ")" + kPlugin +
                                 R"(", "entry": "no_such_entry"})");
    ProcedureRegistry registry;
    registry.loadManifests(dir);
    const auto* p = registry.match("DISTANCE CORRELATION VARIABLE=a b.");
    ASSERT_NE(p, nullptr);
    try {
        registry.run(*p);
        FAIL() << "expected an error";
    } catch (const ProcedureLoadError& e) {
        EXPECT_NE(std::string(e.what()).find("has no entry symbol \"no_such_entry\""), std::string::npos)
            << e.what();
    }
}

TEST(ProcedureRegistry, MalformedManifestNamesTheFile) {
    const std::string dir = makeTempDir();
    const std::string path = writeManifest(dir, "bad", "{\"command\": ");
    ProcedureRegistry registry;
    try {
        registry.loadManifests(dir);
        FAIL() << "expected an error";
    } catch (const ProcedureLoadError& e) {
        EXPECT_NE(std::string(e.what()).find(path + ": malformed manifest"), std::string::npos) << e.what();
    }
}

TEST(ProcedureRegistry, ManifestWithoutEntryNamesTheMember) {
    const std::string dir = makeTempDir();
    writeManifest(dir, "noentry", R"({"command": "X", "library": "libx.so"})");
    ProcedureRegistry registry;
    try {
        registry.loadManifests(dir);
        FAIL() << "expected an error";
    } catch (const ProcedureLoadError& e) {
        EXPECT_NE(std::string(e.what()).find("manifest member \"entry\" is missing"), std::string::npos)
            << e.what();
    }
}

TEST(ProcedureRegistry, PluginExportsOnlyTheEntryPoints) {
    // The plug-in hides every symbol except the two entries.
    const std::string cmd = "nm -D --defined-only " + shellQuote(kPlugin) + " | awk '$2 ~ /^[TDBRVWui]$/ {print $3}'";
    FILE* pipe = popen(cmd.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string symbols;
    char buf[512];
    while (fgets(buf, sizeof buf, pipe)) symbols += buf;
    pclose(pipe);
    EXPECT_NE(symbols.find("discorr_\n"), std::string::npos) << symbols;
    EXPECT_NE(symbols.find("_Z18distancecorr_entryPv\n"), std::string::npos) << symbols;
    std::size_t lines = 0;
    for (char c : symbols) lines += (c == '\n');
    EXPECT_EQ(lines, 2u) << symbols;
}
