# make run   : install what is missing, build, start the program (under Xvfb with a
#              screenshot when there is no display)
# make test  : install what is missing, build, run every test through ctest
# make demo  : build, start every page against larksim (the board simulator) and
#              save screenshots of each in both skins (under Xvfb without a display)
# make test-asan : the same suite built with AddressSanitizer and UndefinedBehavior-
#              Sanitizer in a build folder of its own
# make fuzz  : every fuzz target for FUZZ_SECONDS (default 60) each, or FUZZ_RUNS
#              executions if that comes first, with ASan and UBSan; fails on any finding
# make bench : build and run the benchmarks (and, beside the editor page's, time
#              Okteta and GHex opening the same file size)
BUILD ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
FUZZ_RUNS ?=
JOBS ?= 2

DEBS = cmake g++ make pkg-config ccache \
       qtbase5-dev qtbase5-private-dev libqt5serialport5-dev qttranslations5-l10n \
       libqt5x11extras5-dev libxcb1-dev \
       libqcustomplot-dev okteta-dev libbenchmark-dev \
       fonts-wqy-microhei fonts-font-awesome python3-fontforge \
       xvfb xauth imagemagick socat
# only the benchmarks need these: two desktop hex editors and a terminal timed for
# comparison
BENCH_DEBS = okteta ghex xdotool putty
# only the fuzz targets need these: libFuzzer comes with clang
FUZZ_DEBS = clang-14 libfuzzer-14-dev
# only the long-session measurement draws its curve with this
SOAK_DEBS = python3-matplotlib
# make soak: the serial page through a long session (SOAK_ARGS="--hex-mb 270 --text-mb 30"
# for a shorter one); figures, soak.csv and soak.png into $(BUILD)/soak
SOAK_ARGS ?=

.PHONY: all deps build run test test-asan fuzz bench demo clean soak hostile

all: build

deps:
	@missing=""; for p in $(DEBS) $(EXTRA_DEBS); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  apt-get update -q && DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $$missing; \
	fi

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j$(JOBS)

run: build
	scripts/run.sh $(BUILD)/larkTools

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j$(JOBS)

# -O1 keeps the instrumented suite quick enough; -g1 gives reports file:line
SAN_FLAGS = -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
# Full unwinding on malloc, because Qt's libraries have no frame pointers and the leak
# suppressions must see the whole stack. No dynamic TLS tracking: this LeakSanitizer
# misreads glibc 2.36's dynamic TLS blocks and crashes in its own tracer.
SAN_ENV = ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:fast_unwind_on_malloc=0:intercept_tls_get_addr=0 \
          UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
          LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0

test-asan: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" \
	  -DCMAKE_CXX_FLAGS="$(SAN_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(SAN_FLAGS)" -DLARK_BUILD_BENCH=OFF
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && $(SAN_ENV) QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j$(JOBS)

# the libraries get libFuzzer's coverage hooks, the targets its main()
FUZZ_FLAGS = -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
# fast unwinding keeps the executions per second up; leaks are still checked
FUZZ_ENV = ASAN_OPTIONS=detect_leaks=1:intercept_tls_get_addr=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

fuzz: EXTRA_DEBS = $(FUZZ_DEBS)
fuzz: deps
	CC=clang-14 CXX=clang++-14 cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=Debug \
	  -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" -DCMAKE_CXX_FLAGS="$(FUZZ_FLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS="$(FUZZ_FLAGS)" \
	  -DLARK_FUZZ=ON -DLARK_BUILD_TESTS=OFF -DLARK_BUILD_BENCH=OFF
	cmake --build $(FUZZ_BUILD) -j$(JOBS) --target fuzz_targets
	$(FUZZ_ENV) FUZZ_SECONDS=$(FUZZ_SECONDS) FUZZ_RUNS=$(FUZZ_RUNS) scripts/fuzz.sh $(FUZZ_BUILD)

bench: EXTRA_DEBS = $(BENCH_DEBS)
bench: build
	scripts/bench.sh $(BUILD)

# make hostile: floods, client waves and lying boards against the program, on loopback
# and ptys (HOSTILE_ARGS=--quick: 30 s for the long peers); figures into $(BUILD)/hostile.json
HOSTILE_ARGS ?=
hostile: build
	python3 scripts/hostile.py $(BUILD) --out $(BUILD)/hostile.json $(HOSTILE_ARGS)

soak: EXTRA_DEBS = $(SOAK_DEBS)
soak: build
	/usr/bin/python3 scripts/soak.py $(BUILD) $(BUILD)/soak $(SOAK_ARGS)

demo: build
	scripts/demo.sh $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
