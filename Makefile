# What a newcomer types. Underneath are the CMake presets dev, release and asan.

PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc)

BUILD_PACKAGES = g++ cmake ninja-build lld qt6-base-dev qt6-serialport-dev \
  libqcustomplot-dev libqcustomplot2.1-qt6 libcli11-dev libgtest-dev libgl-dev
RUN_PACKAGES = $(BUILD_PACKAGES) fonts-dejavu-core
CHECK_PACKAGES = $(BUILD_PACKAGES) clang-format clang-tidy xvfb

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
.PHONY: all run test bench install clean packages-build packages-run packages-check release asan
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

release: packages-build
	cmake --preset release > /dev/null
	cmake --build --preset release -j $(JOBS)

bench: release packages-check
	build/release/bin/bench_exchange
	build/release/bin/bench_waiting
	build/release/bin/bench_server_start
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
