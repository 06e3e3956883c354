# The everyday commands. `make help` lists them.

JOBS ?= $(shell nproc)
# Tests on a display wait more than they compute.
TEST_JOBS ?= $(shell expr $(JOBS) + 1)
FUZZ_SECONDS ?= 600
# More options for the configuration of the release build, such as -DNIVORA_WARNINGS_AS_ERRORS=ON.
CMAKE_OPTIONS ?=
# What --version --verbose tells; only packages record it, so that a new commit does not link every program anew.
COMMIT ?=
KILLS ?= 1000

.PHONY: package release build setup run python test bench soak fuzz lint format asan screenshots clean help

build: setup ## build the programs as shipped, with samples and manual, into the folder build/nivora
	cmake --preset release -DNIVORA_COMMIT=$(COMMIT) $(CMAKE_OPTIONS)
	cmake --build --preset release -j $(JOBS) --target nivora_program_folder nivora_manual_pdf

setup: ## install the packages of packages.txt that are missing
	@tools/setup

run: build ## open the program; without a display, run the bundled sample basin and print its statistics
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then \
	    echo "Opening build/nivora/nivora"; build/nivora/nivora; \
	else \
	    echo "There is no display to open the program on; running the sample basin through nivora-batch instead."; \
	    cmake --build --preset release --target run_sample; \
	fi

python: setup ## build the Python package into build/nivora/python, with the programs beside it
	cmake --preset release $(CMAKE_OPTIONS)
	cmake --build --preset release -j $(JOBS) --target nivora_python_module nivora_program_folder

test: build ## build and run all tests
	cmake --build --preset release -j $(JOBS)
	ctest --preset release -j $(TEST_JOBS)

bench: build ## run the benchmarks; the last lines are a table of ours, of the floor that no program could leave out, and of their ratios
	cmake --build --preset release --target nivora_benchmarks -j $(JOBS)
	@set -e; export NIVORA_BENCH_TABLE=$(CURDIR)/build/bench_table.txt; rm -f "$$NIVORA_BENCH_TABLE"; \
	for source in bench/*_bench.cpp; do \
	    build/release/bench/$$(basename $$source .cpp); \
	done; \
	printf '\n%-58s %25s   %25s   %5s\n' 'ms, in turns' 'least: ours floor ratio' 'median: ours floor ratio' goal; \
	cat "$$NIVORA_BENCH_TABLE"

soak: build ## kill saves and opens 1,000 times and save on almost full disks; prints figures (KILLS=1000)
	cmake --build --preset release --target nivora_soak -j $(JOBS)
	build/release/tools/soak/nivora_soak $(KILLS)

fuzz: setup ## run each fuzz target for FUZZ_SECONDS (600) seconds
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	tools/fuzz $(FUZZ_SECONDS)

lint: setup ## check format, layers and clang-tidy's findings
	tools/lint

format: setup ## bring all sources into format
	tools/lint fix

asan: setup ## build under the address and undefined-behaviour sanitizers and run all tests
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(TEST_JOBS)

screenshots: build ## draw every window into build/screenshots, at 96 and at 192 dpi, in light and in dark colours
	cmake --build --preset release --target nivora_screenshots -j $(JOBS)
	set -e; for scale in 1 2; do \
	    folder=build/screenshots/$$((scale * 96)); \
	    export QT_QPA_PLATFORM=offscreen:configfile=tools/screenshots/screen.json QT_SCALE_FACTOR=$$scale; \
	    build/release/tools/screenshots/nivora_screenshots $$folder; \
	    build/release/tools/screenshots/nivora_screenshots $$folder-dark dark; \
	done

package: ## make the Debian package, the folder that runs from anywhere, symbols and bill of materials in build/packages
	SOURCE_DATE_EPOCH=$$(git log -1 --format=%ct) $(MAKE) build \
	    COMMIT=$$(git describe --always --dirty --abbrev=40 --exclude='*')
	tools/package

release: package ## make everything that a release needs, and check it
	tools/package-test
	tools/clean-root-test
	tools/release-check

clean: ## remove everything that was built
	rm -rf build

help: ## list the commands
	@sed -n 's/^\([a-z]*\):[^#]*## /\1\t/p' Makefile | expand -t 10
