// Lines per second through the program's time-stamped sink against its floor,
// writing the same 1,000,000 info lines in one run: spdlog's own file sink
// with the one size query of the open file that the time-stamped sink makes
// for every line. spdlog's basic_file_sink_mt and the size query alone are
// shown for reference. The last line is the figure for bench/all.sh:
//   figure|baseline|ratio|goal
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

// spdlog's basic_file_sink with one size query per line: the least that a
// sink which asks the file's size for every line can cost.
class sized_file_sink final : public spdlog::sinks::base_sink<std::mutex>
{
public:
    explicit sized_file_sink(const std::string &filename) { file_helper_.open(filename, true); }

protected:
    void sink_it_(const spdlog::details::log_msg &msg) override
    {
        benchmark::DoNotOptimize(file_helper_.size());
        spdlog::memory_buf_t formatted;
        formatter_->format(msg, formatted);
        file_helper_.write(formatted);
    }
    void flush_() override { file_helper_.flush(); }

private:
    spdlog::details::file_helper file_helper_;
};

void sizedFileSink(benchmark::State &state)
{
    writeLines(state, std::make_shared<sized_file_sink>(folder + "/sized.log"));
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
BENCHMARK(sizedFileSink)->Iterations(lineCount)->Unit(benchmark::kNanosecond);
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
    const double sized = reporter.rates["sizedFileSink/iterations:1000000"];
    const double stamped = reporter.rates["timestampFileSink/iterations:1000000"];
    const double sizes = reporter.rates["sizeQuery/iterations:1000000"];
    std::printf("\nns per line: basic_file_sink_mt %.0f, with a size query %.0f, timestamp_file_sink %.0f\n",
                1e9 / basic, 1e9 / sized, 1e9 / stamped);
    std::printf("size query alone: %.0f ns\n", 1e9 / sizes);
    std::printf("log sink lines per second|spdlog file sink + size query|%.2f|>= 0.95\n", stamped / sized);
    std::system(("rm -rf '" + folder + "'").c_str());
    return 0;
}
