# The two everyday commands: `make run` and `make test`. Both install what is missing first.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
ARGS ?=

.PHONY: deps configure build run test bench clean

deps:
	@scripts/install-deps.sh

configure: deps
	@if [ ! -f $(BUILD)/build.ninja ]; then \
		cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE); fi

build: configure
	cmake --build $(BUILD)

run: build
	$(BUILD)/mirtex $(ARGS)

test: build
	cd $(BUILD) && ctest --output-on-failure

bench: build
	$(BUILD)/mirtex-bench

clean:
	rm -rf $(BUILD)
