# What a newcomer types. Everything else is CMake: see CMakePresets.json.
.PHONY: demo test lib install bench ulp docs packages clean

BUILD := build
JOBS := $(shell nproc)
COMMIT = $(shell git describe --always --dirty --exclude '*')

lib: $(BUILD)/build.ninja
	cmake --build $(BUILD) --target vorx -j $(JOBS)

demo: packages $(BUILD)/build.ninja
	cmake --build $(BUILD) --target galaxy -j $(JOBS)
	$(BUILD)/examples/galaxy

test: packages $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)
	$(BUILD)/list_catalogue count
	ctest --preset default

# Speed of every entry point; ARGS="--filter=exp.*4 --quick" and so on.
bench: $(BUILD)/build.ninja
	cmake --build $(BUILD) --target bench -j $(JOBS)
	$(BUILD)/bench --commit=$(COMMIT) $(ARGS)

# Accuracy of kernels; ARGS="exp --type f32 --exhaustive" and so on, --help says what there is.
ulp: $(BUILD)/build.ninja
	cmake --build $(BUILD) --target ulp -j $(JOBS)
	$(BUILD)/ulp $(or $(ARGS),--all --brief)

# docs/*.md and plots, from what the tools measure; the numbers are kept in docs/data.
# EXHAUSTIVE=1 also runs kernels over all 2^32 inputs where docs/data/exhaustive.csv has no valid result: minutes for each.
docs: docs/speed.md docs/accuracy.md

.PHONY: docs/accuracy.md
docs/accuracy.md:
	cmake --build $(BUILD) --target ulp generated -j $(JOBS)
	python3 tools/ulp/accuracy_page.py $(BUILD)/ulp docs $(COMMIT) $(if $(EXHAUSTIVE),--exhaustive)

.PHONY: docs/speed.md
docs/speed.md:
	mkdir -p docs/data
	$(MAKE) bench ARGS=--csv=docs/data/speed.csv
	python3 tools/bench/speed_page.py docs/data/speed.csv docs

# Into /usr/local, or PREFIX=/opt/vorx; DESTDIR is honoured.
install: lib
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

packages:
	./tools/install-packages

$(BUILD)/build.ninja:
	cmake --preset default

clean:
	rm -rf $(BUILD)
