// Any bytes as a UCI session.

#include "fuzz_session.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zar::fuzz::start_sessions();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    zar::fuzz::run_session(zar::fuzz::text_of(data, size));
    return 0;
}
