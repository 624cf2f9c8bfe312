# The short front for people; CMakePresets.json has the whole story.
.PHONY: help deps build demo test faults fuzz lint bench bench-vergleich pictures coverage install package clean

STUFE ?= release
SEKUNDEN ?= 600
PREFIX ?= /usr/local
export CMAKE_BUILD_PARALLEL_LEVEL ?= $(shell nproc 2>/dev/null || echo 2)
# Half as many again as there are processors: many tests wait for most of their time.
TESTS_ZUGLEICH = $(shell expr $(CMAKE_BUILD_PARALLEL_LEVEL) \* 3 / 2)

build: deps ## the program and the demo, in build/release
	@tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro kalvaro-democloud kalvaro-demorekordbox

deps: ## the Debian packages that building needs
	@tools/sperre.sh tools/pakete.sh bauen

demo: build ## kalvaro with a demo cloud; without a display a picture (BILD=PATH)
	@BILD="$(BILD)" tools/demo.sh build/$(STUFE)

test: ## all tests
	@tools/sperre.sh tools/pakete.sh testen
	@tools/sperre.sh tools/bauen.sh $(STUFE) all
	@ctest --preset $(STUFE) -j $(TESTS_ZUGLEICH)

faults: ## what may go wrong around the program: hostile servers, broken files, kills
	@tools/sperre.sh tools/pakete.sh testen
	@tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro faults_sichern
	@ctest --preset $(STUFE) -L faults -j $(TESTS_ZUGLEICH)

fuzz: ## each reader of what comes from outside, SEKUNDEN=600 each (ZIELE="plist konto")
	@tools/sperre.sh tools/pakete.sh pruefen
	@tools/sperre.sh tools/bauen.sh fuzz fuzzziele
	@tests/fuzz/laufen.sh $(SEKUNDEN) $(ZIELE)

lint: ## format, warnings of clang, clang-tidy, and what is meant for macOS
	@tools/sperre.sh tools/pakete.sh pruefen
	@tools/sperre.sh tools/pruefen.sh

pictures: ## the pictures of docs/bilder anew, and those of tests/bilder that differ
	@tools/sperre.sh tools/pakete.sh testen
	@tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro-bilder tests_bilder
	@tools/bilder.sh build/$(STUFE)
	@tests/bilder/erneuern.sh build/$(STUFE)

bench: ## what kalvaro costs, against a bare window (NUR=start, JSON=1, BAU=1)
	@tools/sperre.sh tools/pakete.sh messen
	@tools/sperre.sh tools/bauen.sh bench kalvaro-bench
	@tests/eigene-prozesse.sh /usr/bin/python3 -B bench/tafel.py build/bench $(if $(NUR),--nur $(NUR)) \
		$(if $(JSON),--json) $(if $(BAU),--bau)

bench-vergleich: ## start and memory beside other tray programs that are installed here
	@tools/sperre.sh tools/pakete.sh messen
	@tools/sperre.sh tools/bauen.sh bench kalvaro-bench
	@tests/eigene-prozesse.sh /usr/bin/python3 -B bench/vergleich.py build/bench

coverage: ## which lines of the rooms below the windows the tests reach
	@tools/sperre.sh tools/pakete.sh pruefen
	@tools/sperre.sh tools/abdeckung.sh

install: build ## kalvaro below PREFIX (/usr/local), in DESTDIR if that is set
	@umask 022 && DESTDIR="$(DESTDIR)" cmake --install build/$(STUFE) --prefix "$(PREFIX)" >build/$(STUFE)/einbau.log

package: ## the Debian package, in build/paket
	@tools/sperre.sh tools/pakete.sh paket
	@tools/sperre.sh tools/paket.sh

clean: ## away with build/
	rm -rf build

help: ## this list
	@sed -n 's/^\([a-z-]*\):.*## \(.*\)/  make \1\t\2/p' $(MAKEFILE_LIST) | expand -t 24
