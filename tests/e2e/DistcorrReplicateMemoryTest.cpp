// The permutation test's replicate count has no upper bound in the syntax, so
// memory must grow by no more than one statistic (8 bytes) per replicate, and
// a count whose statistics cannot be held ends the command as a failure.
#include <gtest/gtest.h>

#include <string>

#include "DistcorrSyntaxHardeningSupport.h"
#include "Sanitizers.h"

using hardening::runMeasured;

namespace {

std::string permutationCommand(const std::string& iterations) {
    return "DISTANCE CORRELATION VARIABLE=x1 x2 /CRITERIA PERMUTATION(SEED=5 MAXITERATIONS=" + iterations +
           ") /PRINT DISTCORRCOEFF.";
}

}  // namespace

TEST(DistcorrReplicateMemory, EachReplicateCostsOneStatistic) {
    const std::string data = hardening::smallData();
    const auto few = runMeasured({"--quiet", "--data", data, "-e", permutationCommand("1")});
    const auto many = runMeasured({"--quiet", "--data", data, "-e", permutationCommand("1000000")});
    ASSERT_EQ(few.exitCode, 0) << few.err;
    ASSERT_EQ(many.exitCode, 0) << many.err;
    // 1,000,000 statistics are 7.6 MiB; at 137 bytes a replicate they would be 130 MiB.
    const long extraKilobytes = many.peakKilobytes - few.peakKilobytes;
    EXPECT_LT(extraKilobytes, 8 * 1000 + 4 * 1024) << "a million replicates added " << extraKilobytes << " KB";
}

TEST(DistcorrReplicateMemory, ReplicatesBeyondMemoryFailTheCommand) {
#ifdef DC_ADDRESS_SANITIZER
    // AddressSanitizer's operator new aborts on an impossible size instead of
    // throwing, so the failure path can only be seen without it.
    GTEST_SKIP() << "AddressSanitizer aborts instead of throwing std::bad_alloc";
#endif
    const auto r = runMeasured({"--data", hardening::smallData(), "-e", permutationCommand("100000000000")});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.err,
              "distancecorr_entry: Step4 Unknown error occurred.\nNote: DISTANCE CORRELATION produced no output.\n");
    EXPECT_EQ(r.out, "") << "no tables after a failed computation";
}
