// Google Benchmark's main function, behind the start-up that the engine's functions rely on.

#include "benchmark/benchmark.h"
#include "eval/eval.h"
#include "frontend/startup.h"

int main(int count, char** arguments) {
    zar::startup_tables();
    zar::eval_tables_allocate(1);
    zar::eval_apply_weights();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
