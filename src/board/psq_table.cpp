#include "board/psq_table.h"

namespace zar {

PsqTable psq_table{};

}  // namespace zar
