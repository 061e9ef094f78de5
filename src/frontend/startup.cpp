#include "frontend/startup.h"

#include "book/book.h"
#include "frontend/console.h"
#include "frontend/option.h"
#include "platform/clock.h"
#include "platform/memory.h"
#include "platform/random.h"
#include "search/hash.h"
#include "search/parameters.h"

namespace zar {

namespace {

// Nothing sets this: the engine always announces itself.
constexpr bool quiet_start = false;

}  // namespace

void startup_tables() {
    memory_install_handler();
    random_seed(clock_seed());
    option_defaults();
    reductions_init();
    hash_init(hash_table);
    book_reset(opening_book);
}

void startup_engine() {
    console_init();
    send_text("ZAR-X3 64Bit\n\n");
    startup_tables();
    announce_ready();
}

void announce_ready() {
    if (!quiet_start) {
        send_text("Engine Ready\n");
    }
}

}  // namespace zar
