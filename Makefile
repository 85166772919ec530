BUILD ?= build
JOBS ?= $(shell nproc)
# CI sets WERROR=ON: its compiler must build without a warning.
WERROR ?= OFF
SANITIZE_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
CLANG ?= clang-14

# Leaks in the project's own code fail the sanitizer run; only third-party ones are suppressed.
SANITIZER_ENV = ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:detect_stack_use_after_return=1 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp:print_suppressions=0 \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1

.PHONY: deps build run test test-sanitize fuzz fuzz-run package bench screenshot clean format format-check

deps:
	@scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLORA_WERROR=$(WERROR) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/src/quillora

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 300

package: build
	cmake --build $(BUILD) --target package

test-sanitize: deps
	@cmake -S . -B $(SANITIZE_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLORA_SANITIZE=ON -DQUILLORA_BENCH=OFF \
		-DQUILLORA_WERROR=$(WERROR) >/dev/null
	@cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	# The package checks inspect files, not code: the plain run covers them.
	cd $(SANITIZE_BUILD) && $(SANITIZER_ENV) ctest --output-on-failure -j $(JOBS) --timeout 600 -LE package

fuzz: deps
	@cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLORA_FUZZ=ON -DQUILLORA_BENCH=OFF \
		-DCMAKE_C_COMPILER=$(CLANG) -DCMAKE_CXX_COMPILER=$(subst clang,clang++,$(CLANG)) >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz

# make fuzz-run [FUZZ_SECONDS=600] [TARGETS="response_json text_decode"]
fuzz-run: fuzz
	scripts/run-fuzz.sh $(FUZZ_BUILD) $(FUZZ_SECONDS) $(TARGETS)

bench: build
	scripts/run-benchmarks.sh $(BUILD)

screenshot: build
	scripts/screenshot.sh $(BUILD)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

format-check:
	@git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

clean:
	rm -rf $(BUILD) $(SANITIZE_BUILD) $(FUZZ_BUILD)
