// Lines per second through the program's time-stamped sink against spdlog's
// own basic_file_sink_mt, writing the same 1,000,000 info lines in one run,
// plus the cost of the size query that the time-stamped sink makes per line.
#include "logging/timestamp_file_sink.h"

#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {

constexpr int lineCount = 1000000;
std::string folder;

void writeLines(benchmark::State &state, const std::shared_ptr<spdlog::sinks::sink> &sink)
{
    spdlog::logger logger("app", sink);
    int line = 0;
    for (auto _ : state)
        logger.info("Creating link from {} to {}", "C:/Orv/bin/Tintara 5.exe", ++line);
    logger.flush();
    state.SetItemsProcessed(state.iterations());
}

void timestampFileSink(benchmark::State &state)
{
    writeLines(state, std::make_shared<kelp::logging::timestamp_file_sink<std::mutex>>(folder + "/SuiteDeployer.log", 5,
                                                                                       104857600));
}

void basicFileSink(benchmark::State &state)
{
    writeLines(state, std::make_shared<spdlog::sinks::basic_file_sink_mt>(folder + "/basic.log", true));
}

void sizeQuery(benchmark::State &state)
{
    spdlog::details::file_helper file;
    file.open(folder + "/size.log");
    for (auto _ : state)
        benchmark::DoNotOptimize(file.size());
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(basicFileSink)->Iterations(lineCount)->Unit(benchmark::kNanosecond);
BENCHMARK(timestampFileSink)->Iterations(lineCount)->Unit(benchmark::kNanosecond);
BENCHMARK(sizeQuery)->Iterations(lineCount)->Unit(benchmark::kNanosecond);

class RateReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            rates[run.benchmark_name()] = run.counters.at("items_per_second");
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> rates;
};

} // namespace

int main(int argc, char **argv)
{
    char pattern[] = "/tmp/sink-benchmark.XXXXXX";
    folder = mkdtemp(pattern);
    benchmark::Initialize(&argc, argv);
    RateReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double basic = reporter.rates["basicFileSink/iterations:1000000"];
    const double stamped = reporter.rates["timestampFileSink/iterations:1000000"];
    const double sizes = reporter.rates["sizeQuery/iterations:1000000"];
    std::printf("\nlines per second: basic_file_sink_mt %.0f, timestamp_file_sink %.0f\n", basic, stamped);
    std::printf("timestamp_file_sink / basic_file_sink_mt = %.2f\n", stamped / basic);
    std::printf("size query alone: %.0f per second, %.0f ns each\n", sizes, 1e9 / sizes);
    std::system(("rm -rf '" + folder + "'").c_str());
    return 0;
}
