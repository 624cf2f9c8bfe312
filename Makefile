# The short front for people; CMakePresets.json has the whole story.
.PHONY: deps build demo test lint bench pictures coverage clean

STUFE ?= release
export CMAKE_BUILD_PARALLEL_LEVEL ?= $(shell nproc 2>/dev/null || echo 2)

build: deps
	@tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro kalvaro-democloud kalvaro-demorekordbox

deps:
	@tools/sperre.sh tools/pakete.sh bauen

demo: build
	@BILD="$(BILD)" tools/demo.sh build/$(STUFE)

test:
	@tools/sperre.sh tools/pakete.sh testen
	@tools/sperre.sh tools/bauen.sh $(STUFE) all
	@ctest --preset $(STUFE) -j $(CMAKE_BUILD_PARALLEL_LEVEL)

lint:
	@tools/sperre.sh tools/pakete.sh pruefen
	@tools/sperre.sh tools/pruefen.sh

pictures: deps
	@tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro-bilder
	@tools/bilder.sh build/$(STUFE)

bench:
	@tools/sperre.sh tools/pakete.sh testen
	@KALVARO_CMAKE=-DKALVARO_BENCH=ON tools/sperre.sh tools/bauen.sh $(STUFE) kalvaro-bench kalvaro-demorekordbox
	@tools/bench.sh build/$(STUFE)

coverage:
	@tools/sperre.sh tools/pakete.sh pruefen
	@tools/sperre.sh tools/abdeckung.sh

clean:
	rm -rf build
