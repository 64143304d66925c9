# make run   : install what is missing, build, start the program (under Xvfb with a
#              screenshot when there is no display)
# make test  : install what is missing, build, run every test through ctest
# make demo  : build, start every page against larksim (the board simulator) and
#              save screenshots of each in both skins (under Xvfb without a display)
# make bench : build and run the benchmarks (and, beside the editor page's, time
#              Okteta and GHex opening the same file size)
BUILD ?= build
JOBS ?= 2

DEBS = cmake g++ make pkg-config ccache \
       qtbase5-dev qtbase5-private-dev libqt5serialport5-dev qttranslations5-l10n \
       libqcustomplot-dev okteta-dev libbenchmark-dev \
       fonts-wqy-microhei fonts-font-awesome python3-fontforge \
       xvfb xauth imagemagick socat
# only the benchmarks need these: two desktop hex editors timed for comparison
BENCH_DEBS = okteta ghex xdotool

.PHONY: all deps build run test bench demo clean

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

bench: EXTRA_DEBS = $(BENCH_DEBS)
bench: build
	scripts/bench.sh $(BUILD)

demo: build
	scripts/demo.sh $(BUILD)

clean:
	rm -rf $(BUILD)
