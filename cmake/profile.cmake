# Profile-guided optimisation in two builds: "train" counts what the bench executes, "use" optimises
# for these counts. tools/build_pgo.sh does both.
set(profile_dir "${PROJECT_SOURCE_DIR}/build/profile")
if(ZAR_PROFILE STREQUAL "train")
    add_compile_options(-fprofile-generate -fprofile-update=single
                        "-fprofile-dir=${profile_dir}" "-fprofile-prefix-path=${PROJECT_BINARY_DIR}")
    add_link_options(-fprofile-generate)
elseif(ZAR_PROFILE STREQUAL "use")
    add_compile_options("-fprofile-use=${profile_dir}" -fprofile-correction
                        "-fprofile-prefix-path=${PROJECT_BINARY_DIR}" -Wno-missing-profile)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Passes that a profile switches on, too. They copy loops and paths for what is usual, and
        # the processor guesses wrong more often: 1.02 to 1.03 times the speed without them.
        add_compile_options(-fno-tracer -fno-vpt -fno-split-loops -fno-peel-loops
                            -fno-unroll-loops)
    endif()
elseif(ZAR_PROFILE)
    message(FATAL_ERROR "ZAR_PROFILE is neither \"train\" nor \"use\" nor empty: ${ZAR_PROFILE}")
endif()
