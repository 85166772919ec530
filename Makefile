BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: deps build run test package bench screenshot clean format

deps:
	@scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/src/quillora

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 300

package: build
	cmake --build $(BUILD) --target package

bench: build
	scripts/run-benchmarks.sh $(BUILD)

screenshot: build
	scripts/screenshot.sh $(BUILD)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD)
