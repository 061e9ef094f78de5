# ZAR_SANITIZE=address,undefined or thread: every finding ends the program, none is only printed.
if(ZAR_SANITIZE)
    add_compile_options(
        -fsanitize=${ZAR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=${ZAR_SANITIZE})
endif()

# Under a fuzzer, the engine records the branches that an input takes. To record the operands of
# comparisons too would more than halve the speed.
if(ZAR_BUILD_FUZZERS)
    add_compile_options(
        -fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp
        -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/tests/fuzz/unchecked.txt)
endif()
