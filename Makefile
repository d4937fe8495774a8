# The front door: each target installs what it needs, configures, builds and runs. docs/building.md says more.

example = build/release/bin/vorkel-example
script = examples/addressbook/addressbook.js
PROGRAM ?= $(example)
FUZZ_SECONDS ?= 60

need = scripts/install-dependencies

.DEFAULT_GOAL := help
.PHONY: help build demo test bench fuzz asan tsan armhf format check-format tidy cleanroom clean

help: ## show this list
	@echo 'usage: make TARGET'
	@sed -n 's/^\([a-z -]*\):.*## /\1\t/p' $(MAKEFILE_LIST) | expand -t 14

build: ## build everything in build/release
	@$(need) build test
	@cmake --preset release
	@cmake --build --preset release

demo: ## drive a running program by a script; PROGRAM=/path/to/one shows that one's objects instead
	@$(need) build demo
	@cmake --preset release -DVORKEL_TESTS=OFF
	@cmake --build --preset demo
ifeq ($(PROGRAM),$(example))
	@mkdir -p build/demo
	cd build/demo && ../../build/release/bin/vorkel test --xvfb ../../$(script) -- ../../$(example)
else
	build/release/bin/vorkel info -- $(PROGRAM)
	build/release/bin/vorkel tree --depth 2 -- $(PROGRAM)
endif

test: build ## build and run all tests
	@ctest --preset release

bench: ## measure, one benchmark after the other
	@$(need) build bench
	@cmake --preset bench
	@cmake --build --preset bench
	@scripts/bench

fuzz: ## run every fuzz target for FUZZ_SECONDS=60 seconds
	@$(need) build sanitizers
	@cmake --preset fuzz
	@cmake --build --preset fuzz
	@scripts/fuzz $(FUZZ_SECONDS)

asan tsan: ## the tests, watched by address and undefined-behaviour sanitizers, or by the thread sanitizer
	@$(need) build test
	@cmake --preset $@
	@cmake --build --preset $@
	@ctest --preset $@

armhf: ## cross-build for 32-bit ARM and run the tests under emulation
	@$(need) build test armhf
	@scripts/armhf-sysroot
	@cmake --preset armhf
	@cmake --build --preset armhf
	@scripts/armhf-emulated ctest --preset armhf

format: ## lay out all C++ files
	@$(need) style
	@scripts/check-format --fix

check-format: ## fail if a C++ file is laid out otherwise
	@$(need) style
	@scripts/check-format

tidy: ## look for mistakes with clang-tidy
	@$(need) build test style
	@cmake --preset release
	@cmake --build --preset release
	@scripts/tidy

cleanroom: ## run make demo and make test on a new minimal Debian 12
	@$(need) cleanroom
	@scripts/cleanroom

clean: ## remove what was built; downloads stay
	@rm -rf $(addprefix build/,release debug asan tsan fuzz bench armhf demo tidy)
