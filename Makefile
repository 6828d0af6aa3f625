# What a newcomer types. Everything else is CMake: see CMakePresets.json.
.PHONY: demo test lib install tools clean

BUILD := build
JOBS := $(shell nproc)

lib: $(BUILD)/build.ninja
	cmake --build $(BUILD) --target vorx -j $(JOBS)

test: packages $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)
	$(BUILD)/list_catalogue count
	ctest --preset default

install: lib
	cmake --install $(BUILD)

.PHONY: packages
packages:
	./tools/install-packages

$(BUILD)/build.ninja:
	cmake --preset default

clean:
	rm -rf $(BUILD)
