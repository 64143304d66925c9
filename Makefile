# make run   : install what is missing, build, start the program (under Xvfb with a
#              screenshot when there is no display)
# make test  : install what is missing, build, run every test through ctest
# make demo  : build, start every page against larksim (the board simulator) and
#              save screenshots of each in both skins (under Xvfb without a display)
# make test-asan : the same suite built with AddressSanitizer and UndefinedBehavior-
#              Sanitizer in a build folder of its own
# make fuzz  : every fuzz target for FUZZ_SECONDS (default 60) each, or FUZZ_RUNS
#              executions if that comes first, with ASan and UBSan; fails on any finding
# make bench : build and run the benchmarks (and time the desktop peers: start-up, idle,
#              Okteta and GHex opening the same file size, PuTTY on the same streams)
# make package : the Debian package (build-pkg/larktools_*.deb), checked with
#              desktop-file-validate, appstreamcli and lintian
# make dist  : the portable release zip and the update server's version reply
#              (dist/), from a build stamped VERSION (default 1.0.1.5)
# make update-e2e : a 1.0.1.5 portable copy updates itself to a 1.0.1.6 release
#              served by nginx on loopback, restarts, and finds itself up to date
BUILD ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
FUZZ_RUNS ?=
JOBS ?= 2
PKG_BUILD ?= build-pkg
DIST_BUILD ?= build-dist
DIST_DIR ?= dist
E2E_BUILD ?= build-e2e
E2E_PORT ?= 18188
VERSION ?= 1.0.1.5

DEBS = cmake g++ make pkg-config ccache \
       qtbase5-dev qtbase5-private-dev libqt5serialport5-dev qttranslations5-l10n \
       libqt5x11extras5-dev libxcb1-dev \
       libqcustomplot-dev okteta-dev libbenchmark-dev qtdeclarative5-dev libpcre2-dev \
       fonts-wqy-microhei fonts-font-awesome python3-fontforge \
       xvfb xauth imagemagick socat nginx-light zlib1g-dev \
       ser2net
# only the benchmarks need these: the desktop peers timed for comparison (two hex
# editors, serial terminals, a network tool) and the X tools that watch them
BENCH_DEBS = okteta ghex xdotool putty cutecom gtkterm packetsender x11-utils
# only the fuzz targets need these: libFuzzer comes with clang
FUZZ_DEBS = clang-14 libfuzzer-14-dev
# only the package needs these: its checkers and dpkg-shlibdeps
PACKAGE_DEBS = desktop-file-utils appstream lintian dpkg-dev file
# only the long-session measurement draws its curve with this
SOAK_DEBS = python3-matplotlib
# make soak: the serial page through a long session (SOAK_ARGS="--hex-mb 270 --text-mb 30"
# for a shorter one); figures, soak.csv and soak.png into $(BUILD)/soak
SOAK_ARGS ?=

.PHONY: all deps build run test test-asan fuzz bench demo package dist update-e2e clean soak hostile

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

# the package is built for /usr without tests, benchmarks or debugging information
package: EXTRA_DEBS = $(PACKAGE_DEBS)
package: deps
	cmake -S . -B $(PKG_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_INSTALL_PREFIX=/usr \
	  -DLARK_BUILD_TESTS=OFF -DLARK_BUILD_BENCH=OFF -DLARK_VERSION=$(VERSION)
	cmake --build $(PKG_BUILD) -j$(JOBS)
	cd $(PKG_BUILD) && cpack -G DEB
	desktop-file-validate packaging/io.github.larktools.LarkTools.desktop
	appstreamcli validate --no-net packaging/io.github.larktools.LarkTools.metainfo.xml
	lintian --fail-on error $(PKG_BUILD)/larktools_$(VERSION)_*.deb

dist: deps
	cmake -S . -B $(DIST_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLARK_BUILD_TESTS=OFF \
	  -DLARK_BUILD_BENCH=OFF -DLARK_VERSION=$(VERSION)
	cmake --build $(DIST_BUILD) -j$(JOBS) --target larkTools larksim
	python3 scripts/make_dist.py $(DIST_BUILD) $(VERSION) $(DIST_DIR)

update-e2e: deps
	JOBS=$(JOBS) scripts/update_e2e.sh $(E2E_BUILD) $(E2E_PORT)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) $(PKG_BUILD) $(DIST_BUILD) $(DIST_DIR) $(E2E_BUILD)-*
