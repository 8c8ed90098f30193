# What a newcomer types. Underneath are the CMake presets dev, release, asan and fuzz.

PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 30

BUILD_PACKAGES = g++ cmake ninja-build lld qt6-base-dev qt6-serialport-dev \
  libqcustomplot-dev libqcustomplot2.1-qt6 libcli11-dev libgtest-dev libgl-dev libxcb1-dev pkgconf
RUN_PACKAGES = $(BUILD_PACKAGES) fonts-dejavu-core
CHECK_PACKAGES = $(BUILD_PACKAGES) clang libclang-rt-dev clang-format clang-tidy xvfb

# Installs what is missing of $(1); where everything is there nothing needs root.
define install_missing
  @missing=$$(dpkg-query -W -f='$${db:Status-Status} $${Package}\n' $(1) 2>/dev/null \
      | awk '$$1 == "installed" {print $$2}' | sort -u | comm -13 - <(printf '%s\n' $(1) | sort -u)); \
  if [ -n "$$missing" ]; then \
    echo "installing:" $$missing; \
    sudo=$$([ "$$(id -u)" = 0 ] || echo sudo); \
    $$sudo apt-get update -qq && $$sudo env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends $$missing > /dev/null; \
  fi
endef

SHELL = /bin/bash
.PHONY: all run test bench install clean packages-build packages-run packages-check release asan fuzz \
  pictures
.DEFAULT_GOAL := all
# One step after the other, whatever -j says: two steps would install packages at once.
.NOTPARALLEL:

all: packages-build
	cmake --preset dev > /dev/null
	cmake --build --preset dev -j $(JOBS)

run: packages-run all
	build/dev/bin/ostrel-service --connection Simulator --station AA

test: all
	ctest --preset dev -j $(JOBS)

asan: packages-build
	cmake --preset asan > /dev/null
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

# All at once. What they learn stays in build/fuzz/corpus; an input that fails is kept beside it.
fuzz: packages-check
	cmake --preset fuzz > /dev/null
	cmake --build --preset fuzz -j $(JOBS)
	@printf '%s\n' request_reader reply_framer server_news language | xargs -P 4 -I NAME sh -c ' \
	  mkdir -p build/fuzz/corpus/NAME && \
	  echo "fuzzing NAME for $(FUZZ_SECONDS) s, log in build/fuzz/NAME.log" && \
	  ASAN_OPTIONS=quarantine_size_mb=16 build/fuzz/bin/NAME_fuzz \
	    -max_total_time=$(FUZZ_SECONDS) -timeout=10 -artifact_prefix=build/fuzz/NAME- \
	    build/fuzz/corpus/NAME tests/fuzz/corpus/NAME \
	    > build/fuzz/NAME.log 2>&1 || { tail -n 40 build/fuzz/NAME.log; exit 1; }'
	@grep -H "^Done" build/fuzz/*.log

# The pictures of docs/, which show the forms as they are now.
pictures: packages-check packages-run all
	docs/pictures/make.sh

release: packages-build
	cmake --preset release > /dev/null
	cmake --build --preset release -j $(JOBS)

bench: release packages-check
	build/release/bin/bench_exchange
	build/release/bin/bench_waiting
	build/release/bin/bench_server_start
	build/release/bin/bench_script
	build/release/bin/bench_startup

install: release
	DESTDIR="$(DESTDIR)" cmake --install build/release --prefix "$(PREFIX)"

clean:
	rm -rf build

packages-build:
	$(call install_missing,$(BUILD_PACKAGES))

packages-run:
	$(call install_missing,$(RUN_PACKAGES))

packages-check:
	$(call install_missing,$(CHECK_PACKAGES))
