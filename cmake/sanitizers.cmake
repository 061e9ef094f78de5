# ZAR_SANITIZE=address,undefined or thread: every finding ends the program, none is only printed.
if(ZAR_SANITIZE)
    add_compile_options(
        -fsanitize=${ZAR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=${ZAR_SANITIZE})
endif()
