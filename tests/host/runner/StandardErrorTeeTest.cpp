#include "runner/StandardErrorTee.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

using host::StandardErrorTee;

TEST(StandardErrorTee, ForwardsEverythingAndNotesTheProceduresOwnText) {
    std::ostringstream real;
    std::ostream err(real.rdbuf());
    {
        StandardErrorTee tee(err);
        tee.hostStream() << "Note: from the host\n";
        EXPECT_FALSE(tee.procedureWrote());
        err << "distancecorr_entry: Step4 Unknown error occurred." << std::endl;
        EXPECT_TRUE(tee.procedureWrote());
        tee.resetProcedureWrote();
        EXPECT_FALSE(tee.procedureWrote());
    }
    EXPECT_EQ(real.str(), "Note: from the host\ndistancecorr_entry: Step4 Unknown error occurred.\n");
    // The stream has its own buffer back.
    err << "after";
    EXPECT_EQ(real.str(), "Note: from the host\ndistancecorr_entry: Step4 Unknown error occurred.\nafter");
}

TEST(StandardErrorTee, LiveLineIsClearedBeforeOtherText) {
    std::ostringstream real;
    std::ostream err(real.rdbuf());
    StandardErrorTee tee(err);
    tee.showLiveLine("C  0:01");
    tee.showLiveLine("C  0:02");
    tee.hostStream() << "Warning: W\n";
    tee.clearLiveLine();  // nothing shown any more: writes nothing
    EXPECT_EQ(real.str(), "\rC  0:01\033[K\rC  0:02\033[K\r\033[KWarning: W\n");
}

TEST(StandardErrorTee, LiveLineWaitsForTheEndOfAnUnfinishedLine) {
    std::ostringstream real;
    std::ostream err(real.rdbuf());
    StandardErrorTee tee(err);
    err << "half a line";
    tee.showLiveLine("C  0:01");  // would overwrite the text: not drawn
    err << " and its end\n";
    tee.showLiveLine("C  0:02");
    tee.clearLiveLine();
    EXPECT_EQ(real.str(), "half a line and its end\n\rC  0:02\033[K\r\033[K");
}

TEST(StandardErrorTee, DestructionClearsTheLiveLine) {
    std::ostringstream real;
    std::ostream err(real.rdbuf());
    {
        StandardErrorTee tee(err);
        tee.showLiveLine("C  0:05");
    }
    EXPECT_EQ(real.str(), "\rC  0:05\033[K\r\033[K");
}

TEST(StandardErrorTee, LinesFromSeveralThreadsStayWhole) {
    std::ostringstream real;
    std::ostream err(real.rdbuf());
    {
        StandardErrorTee tee(err);
        std::thread a([&] {
            for (int i = 0; i < 200; ++i) tee.hostStream() << std::string("aaaaaaaaaa\n");
        });
        std::thread b([&] {
            for (int i = 0; i < 200; ++i) err << std::string("bbbbbbbbbb\n");
        });
        a.join();
        b.join();
    }
    std::istringstream lines(real.str());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_TRUE(line == "aaaaaaaaaa" || line == "bbbbbbbbbb") << line;
    EXPECT_EQ(count, 400);
}
