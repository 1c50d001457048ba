// median_times.cpp - medians of interleaved repetitions
#include "bench/support/median_times.h"

#include "bench/support/upper_halves.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kRepetitions = 11;
constexpr double kSecondsEach = 0.01;

// Collects the time of every repetition and prints nothing.
class TimeCollector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                times[run.report_label].push_back(run.GetAdjustedCPUTime());
            }
        }
    }

    std::map<std::string, std::vector<double>> times;
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

std::map<std::string, double> MedianTimes(const std::string& name,
                                          const std::vector<Contestant>& contestants) {
    for (const Contestant& contestant : contestants) {
        const auto measure = [contestant](benchmark::State& state) {
            std::size_t turn = 0;
            ClearUpperHalves();
            for (auto _ : state) {
                contestant.run(turn++);
                benchmark::ClobberMemory();
            }
            state.SetLabel(contestant.name);
        };
        benchmark::RegisterBenchmark((name + "/" + contestant.name).c_str(), measure)
            ->Repetitions(kRepetitions)
            ->MinTime(kSecondsEach);
    }
    TimeCollector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    benchmark::ClearRegisteredBenchmarks();
    std::map<std::string, double> medians;
    for (auto& [contestant, times] : collector.times) {
        medians[contestant] = Median(std::move(times));
    }
    return medians;
}

void StartMeasuring(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    arguments.emplace_back("--benchmark_enable_random_interleaving=true");
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
}
