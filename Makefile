# For those who expect a Makefile, engine-testing frameworks among them; CMake does the work, and
# cmake/install.cmake lists what is installed. The engine alone wants a compiler and CMake.
EXE := zar-x3
PREFIX := /usr/local
BUILD := build/make-$(notdir $(CXX))
MAKEFLAGS += --no-print-directory

engine: configure
	+cmake --build $(BUILD) --target zar-x3
	cmake -E copy $(BUILD)/zar-x3 $(EXE)

install: configure
	+cmake --build $(BUILD)
	cmake --install $(BUILD) --prefix $(PREFIX)

uninstall:
	cmake -D manifest=$(BUILD)/install_manifest.txt -D prefix=$(PREFIX) -P cmake/uninstall.cmake

# It keeps the list of what was installed.
clean:
	[ ! -e $(BUILD)/Makefile ] || cmake --build $(BUILD) --target clean
	rm -f $(EXE)

help:
	@echo 'make [engine]   builds ./$(EXE); EXE=name names it, CXX=compiler builds it by another'
	@echo 'make install    installs below $(PREFIX); PREFIX=folder, and DESTDIR=folder before that'
	@echo 'make uninstall  removes that again, with the same PREFIX and DESTDIR'
	@echo 'make clean      removes what was built'

configure:
	cmake -S . -B $(BUILD) -G "Unix Makefiles" -D CMAKE_CXX_COMPILER=$(CXX) \
		-D CMAKE_BUILD_TYPE=Release -D CMAKE_INTERPROCEDURAL_OPTIMIZATION=ON -D BUILD_TESTING=OFF

.PHONY: engine install uninstall clean help configure
