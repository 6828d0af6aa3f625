# What a newcomer types. Everything else is CMake: see CMakePresets.json, which also says where it builds.
.PHONY: demo test lib install uninstall bench ulp docs packages configure clean

# One target after the other, even with -j: speed is not measured while something else runs. Builds take all processors themselves.
.NOTPARALLEL:
JOBS := $(shell nproc)
COMMIT := $(shell git describe --always --dirty --exclude '*')

lib: build/build.ninja
	cmake --build build --target vorx -j $(JOBS)

demo: configure
	cmake --build build --target galaxy -j $(JOBS)
	build/examples/galaxy

test: configure
	cmake --build build -j $(JOBS)
	build/list_catalogue count
	ctest --preset default

# Speed of every entry point; ARGS="--filter=exp.*4 --quick" and so on.
bench: build/build.ninja
	cmake --build build --target bench -j $(JOBS)
	build/bench --commit=$(COMMIT) $(ARGS)

# Accuracy of kernels; ARGS="exp --type f32 --exhaustive" and so on, --help says what there is.
ulp: build/build.ninja
	cmake --build build --target ulp -j $(JOBS)
	build/ulp $(or $(ARGS),--all --brief)

# docs/*.md and plots, from what the tools measure; the numbers are kept in docs/data.
# LONG=1 also runs kernels over all 2^32 or 200 million inputs where docs/data/long_runs.csv has no valid result: minutes for each.
docs: docs/speed.md docs/accuracy.md
	python3 tools/functions_page.py build/catalogue.json tools/headers/functions.json docs
	python3 tools/readme_tables.py README.md docs/data

.PHONY: docs/accuracy.md
docs/accuracy.md: build/build.ninja
	cmake --build build --target ulp generated -j $(JOBS)
	python3 tools/ulp/accuracy_page.py build/ulp docs $(COMMIT) $(if $(LONG),--long)

.PHONY: docs/speed.md
docs/speed.md:
	mkdir -p docs/data build/passes
	for i in 1 2 3 4 5 6; do $(MAKE) bench COMMIT=$(COMMIT) ARGS=--csv=build/passes/$$i.csv || exit 1; done
	python3 tools/bench/quietest.py docs/data/speed.csv build/passes/*.csv
	python3 tools/bench/speed_page.py docs/data/speed.csv docs

# Into /usr/local, or PREFIX=/opt/vorx; DESTDIR is honoured.
install: lib
	cmake --install build $(if $(PREFIX),--prefix "$(PREFIX)")

# What the last `make install` in this tree has installed, with the same DESTDIR.
uninstall:
	sed 's|^|$(DESTDIR)|' build/install_manifest.txt | tr '\n' '\0' | xargs -0 rm -fv
	sed 's|^|$(DESTDIR)|; s|/[^/]*$$||' build/install_manifest.txt | sort -u | grep /vorx$$ | tr '\n' '\0' | xargs -0 -r rmdir

packages:
	./tools/install-packages

# Again, although it was done: what was not found then may have been installed since.
configure: packages
	cmake --preset default

build/build.ninja:
	cmake --preset default

clean:
	rm -rf build
