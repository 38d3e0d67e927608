# Entry points: `make demo` runs a demo analysis, `make test` builds and runs every test.
BUILD ?= build
JOBS ?= 2
CMAKE_FLAGS ?= -DDC_WERROR=ON

.PHONY: all deps deps-build build demo test asan tsan clang fuzz bench clean

all: build

# Installs the Debian packages that are missing (needs root, as on CI).
deps:
	@./dev install

deps-build:
	@./dev install-build

build: deps
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)
	cmake --build $(BUILD) -j$(JOBS)

# Builds only the program and the procedure the demo runs, not the tests.
demo: deps-build
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)
	cmake --build $(BUILD) -j$(JOBS) --target distcorr distancecorrelation
	$(BUILD)/bin/distcorr --data examples/study.csv examples/demo.sps

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j$(JOBS)

# The suite (all but the browser check) under AddressSanitizer, LeakSanitizer and
# UBSan, built with Clang (so CI builds the tree with both compilers).
asan: deps
	CC=clang CXX=clang++ cmake -S . -B build-asan -DDC_WERROR=ON -DDC_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
	cmake --build build-asan -j$(JOBS)
	ctest --test-dir build-asan --output-on-failure -j$(JOBS) -LE browser

# ThreadSanitizer on what runs on several threads: the engine and permutation
# tests, the shared kernels, DEPENDENCE, the host's worker pool, and distcorr
# at several thread counts. Each test program runs on its own. Left out: the
# permutation memory test, whose address-space limits leave no room for the
# sanitizer's own memory (it skips itself under AddressSanitizer likewise),
# and the permutation sweep, which runs on one thread only.
TSAN_TESTS := $(filter-out DistanceCorrAlgoPermutationMemoryTest DistanceCorrPermutationSweepTest,$(sort $(basename $(notdir $(wildcard \
	tests/backend/distancecorrelation/engine/*Test.cpp tests/backend/distancecorrelation/perf/*Test.cpp \
	tests/backend/shared/*Test.cpp tests/backend/dependence/*Test.cpp))))) \
	ThreadWorkerPoolTest DistcorrThreadsIdentityTest
tsan: deps
	cmake -S . -B build-tsan -DDC_WERROR=ON -DDC_TSAN=ON
	cmake --build build-tsan -j$(JOBS) --target $(TSAN_TESTS)
	@for t in $(TSAN_TESTS); do \
		echo "== $$t"; \
		TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" build-tsan/bin/$$t --gtest_brief=1 || exit 1; \
	done

# The suite (all but the browser check) built with Clang, warnings as errors.
clang: deps
	CC=clang CXX=clang++ cmake -S . -B build-clang -DDC_WERROR=ON
	cmake --build build-clang -j$(JOBS)
	ctest --test-dir build-clang --output-on-failure -j$(JOBS) -LE browser

# The libFuzzer targets (syntax, CSV, schema) under ASan and UBSan, FUZZ_SECONDS each.
FUZZ_SECONDS ?= 60
fuzz: deps
	tests/fuzz/run.sh $(FUZZ_SECONDS) build-fuzz

bench: build
	bench/run.sh

clean:
	rm -rf $(BUILD) build-asan build-tsan build-clang build-fuzz
