# `make run` and `make test` are all a new machine needs: each installs what is
# missing, configures, builds and runs.
JOBS ?= $(shell nproc)
BUILD ?= build
CMAKE_FLAGS ?=

.PHONY: all deps build run test test-main test-asan test-tsan test-fuzz bench screenshots install package format clean

all: build

deps:
	@bash scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_FLAGS) > /dev/null
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@bash scripts/run.sh $(BUILD)

# Every test: the main build, the parser and the window's load tests under
# ASan+UBSan, the model and its worker under TSan, then a short libFuzzer run
# of the decoders.
test: deps
	@bash scripts/test.sh

test-main test-asan test-tsan test-fuzz: deps
	@bash scripts/test.sh $(subst test-,,$@)

bench: build
	@bash scripts/bench.sh $(BUILD)

# PREFIX=/usr/local unless given; DESTDIR for a staged install.
PREFIX ?= /usr/local
install: build
	@cmake --install $(BUILD) --prefix $(PREFIX)

# A .deb of the installed tree in $(BUILD), its dependencies declared.
package: build
	@cd $(BUILD) && cpack -G DEB

screenshots: build
	@bash scripts/screenshots.sh $(BUILD)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build build-asan build-asan-gui build-tsan build-fuzz
