# The doors of the project. Each one installs what is missing, so that a fresh Debian 12 with git and
# make is enough.
PRESET ?= release
BIN    := build/$(PRESET)/bin

.PHONY: windows windows-test windows-package all packages build test check sanitize tidy format format-check demo run bench package package-test soak inbox-test farm-test fuzz clean

all: build

packages:
	@scripts/install-packages

build: packages
	@cmake --preset $(PRESET) --log-level=WARNING
	@cmake --build --preset $(PRESET)

test: build
	@cmake --build --preset $(PRESET) --target folivex_tests
	@ctest --preset $(PRESET)

# What can be seen without building.
check:
	@scripts/check-circles

sanitize:
	@$(MAKE) --no-print-directory test PRESET=sanitize

tidy: packages
	@scripts/tidy

format:
	@scripts/format

format-check:
	@scripts/format --check

demo: build
	@scripts/demo $(BIN)

run: build
	@$(BIN)/folivex

bench: build
	@bench/run $(BIN)

# The Debian package, in build/package, out of what git tracks.
package: packages
	@scripts/install-packages packages-package.txt
	@scripts/package

# Installs it in a clean Debian 12, uses it, upgrades it to a second build, removes it. FOLIVEX_DEBIAN_BASE may name a
# packed Debian 12 to begin with; else it is fetched once.
package-test: package
	@scripts/install-packages packages-package-test.txt
	@scripts/package --again "$$(dpkg-deb -f build/package/folivex_*.deb Version)+again"
	@scripts/package-test build/package/folivex_*[0-9]_*.deb build/package/folivex_*+again_*.deb

# Bad days for an hour: runs beside each other, kills, full disks, sources that change. It prints a table.
soak: build
	@soak/run $(BIN)

# A night of the inbox under a systemd of its own, by root. FOLIVEX_DEBIAN_BASE may name a packed Debian 12 to begin with.
inbox-test: build
	@scripts/install-packages packages-inbox.txt
	@/usr/bin/python3 -B tests/inbox/night build/$(PRESET) --place build/inbox-test

# A night of the farm under a Slurm of three nodes on this machine, by root: one node dies, one is believed dead.
farm-test: build
	@scripts/install-packages packages-farm.txt
	@cd tests && /usr/bin/python3 -B farm/night ../$(BIN)/folivex --place ../build/farm-test

# Searches for bytes that break what reads them, FUZZ_SECONDS in each target, and goes on where the last search ended.
FUZZ_SECONDS ?= 60
fuzz: packages
	@scripts/install-packages packages-fuzz.txt
	@fuzz/build-parts build/fuzz/parts
	@cmake --preset fuzz --log-level=WARNING
	@cmake --build --preset fuzz
	@fuzz/run build/fuzz/bin --seconds $(FUZZ_SECONDS)

# Everything for Windows, in build/windows/bin. What it takes of others is built of Debian's sources the first time and
# kept outside the tree (FOLIVEX_WINDOWS_KEPT).
windows: packages
	@scripts/install-packages packages-windows.txt
	@cmake/windows/build-parts build/windows/parts
	@cmake --preset windows --log-level=WARNING
	@cmake --build --preset windows

# Its tests under Wine, without a display. It prints a table.
windows-test: windows
	@cmake --build --preset windows --target folivex_tests
	@tests/windows/run build/windows

# The installer and the zip, in build/windows/package.
windows-package: windows
	@scripts/install-packages packages-windows-package.txt
	@rm -rf build/windows/stage
	@cmake --install build/windows --prefix build/windows/stage --strip >build/windows/stage.log
	@desktop/windows/make-installer build/windows/stage \
	  "$$(sed -n 's/^project(Folivex VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)" build/windows/package

clean:
	@rm -rf build demo-output
