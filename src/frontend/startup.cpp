#include "frontend/startup.h"

#include "book/book.h"
#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/uci.h"
#include "platform/clock.h"
#include "platform/fatal.h"
#include "platform/memory.h"
#include "platform/random.h"
#include "search/hash.h"
#include "search/parameters.h"

namespace zar {

void startup_tables() {
    memory_install_handler();
    random_seed(clock_seed());
    option_defaults();
    reductions_init();
    hash_init(hash_table);
    book_reset(opening_book);
}

void startup_engine(bool strict) {
    console_init();
    uci_state.strict = strict;
    if (strict) {
        // Between the lines of UCI a warning must be one of them.
        failure_set_handler([](Failure failure, const char* text) {
            if (failure == Failure::warning) {
                send_line("info string %s", text);
            }
        });
    } else {
        send_text("ZAR-X3 64Bit\n\n");
    }
    startup_tables();
    announce_ready();
}

void announce_ready() {
    if (!uci_state.strict) {
        send_text("Engine Ready\n");
    }
}

}  // namespace zar
