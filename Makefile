# For those who expect a Makefile, engine-testing frameworks among them; CMake does the work.
#   make EXE=name CXX=compiler            leaves ./name
#   make install PREFIX=dir DESTDIR=dir   installs what cmake/install.cmake lists
# It builds no tests, so a compiler and CMake are enough for the first of these.
EXE := zar-x3
PREFIX := /usr/local
BUILD := build/make-$(notdir $(CXX))

engine: configure
	+cmake --build $(BUILD) --target zar-x3
	cmake -E copy $(BUILD)/zar-x3 $(EXE)

install: configure
	+cmake --build $(BUILD)
	cmake --install $(BUILD) --prefix $(PREFIX)

configure:
	cmake -S . -B $(BUILD) -G "Unix Makefiles" -D CMAKE_CXX_COMPILER=$(CXX) \
		-D CMAKE_BUILD_TYPE=Release -D CMAKE_INTERPROCEDURAL_OPTIMIZATION=ON -D BUILD_TESTING=OFF

.PHONY: engine install configure
