// recording_bench.cpp - what recording costs, beside copying and writing the same bytes
#include "apps/common/frame_stamp.h"
#include "apps/recording/frame_store.h"
#include "apps/recording/recorder.h"
#include "bench/support/baseline.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/output_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

namespace {

constexpr unsigned kRuns = 11;
constexpr unsigned kWarmUp = 4; // frames, until all buffers have been used
constexpr unsigned kFrames = 12;
constexpr unsigned kSources = 4;
constexpr unsigned kBuffers = 3;
constexpr unsigned kPngFrames = 100;
constexpr unsigned kPngRuns = 5;
constexpr std::uint32_t kPngThreads = 2;
constexpr double kMostOfCopying = 1.3;
constexpr double kLeastPngRate = 300;

using Image = std::vector<std::uint8_t>;

/// A new directory in memory, removed at the end.
class MemoryDirectory {
public:
    MemoryDirectory() : path("/dev/shm/recording_bench") {
        platform::RemoveDirectoryTree(path);
        if (!platform::CreateDirectories(path)) {
            std::fprintf(stderr, "cannot make %s\n", path.c_str());
            std::exit(2);
        }
    }
    ~MemoryDirectory() { platform::RemoveDirectoryTree(path); }
    MemoryDirectory(const MemoryDirectory&) = delete;
    MemoryDirectory& operator=(const MemoryDirectory&) = delete;

    std::string PathOf(const std::string& name) const { return platform::JoinPath(path, name); }

    const std::string path;
};

/// A smooth picture with the noise of a sensor.
Image Scene(const ImageLayout& layout, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0, 2);
    Image image(static_cast<std::size_t>(layout.Size()));
    const std::size_t pixels = std::size_t{layout.width} * layout.height;
    const double scale = static_cast<double>(1u << (layout.bits - 8));
    std::vector<double> noises(4096); // repeated: drawing each takes long
    std::generate(noises.begin(), noises.end(), [&] { return noise(random); });
    for (std::size_t at = 0; at < pixels; ++at) {
        const auto x = static_cast<double>(at % layout.width);
        const auto y = static_cast<double>(at / layout.width);
        const double value = 128 + 60 * std::sin(x / 40) * std::cos(y / 50) +
                             noises[(at * 2654435761u >> 7) % noises.size()];
        const auto sample = static_cast<std::uint16_t>(std::clamp(value, 0.0, 255.0) * scale);
        std::memcpy(image.data() + at * layout.allocatedBits / 8, &sample,
                    layout.allocatedBits / 8);
    }
    return image;
}

std::vector<Image> Scenes(const ImageLayout& layout) {
    std::vector<Image> scenes;
    for (unsigned seed = 0; seed < kSources; ++seed) {
        scenes.push_back(Scene(layout, seed));
    }
    return scenes;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Processor milliseconds a frame, all threads.
double CostOf(unsigned frames, const std::function<void()>& work) {
    const double before = platform::ProcessCpuSeconds();
    work();
    return (platform::ProcessCpuSeconds() - before) * 1000 / frames;
}

/// The least that recording has to do: the camera wants its buffer back, and the bytes into a file.
double CopyAndWrite(const std::vector<Image>& sources, bool isOneFile) {
    const MemoryDirectory directory;
    std::vector<Image> buffers(kBuffers, Image(sources[0].size()));
    platform::OutputFile file;
    const auto put = [&](unsigned number) {
        Image& buffer = buffers[number % kBuffers];
        std::memcpy(buffer.data(), sources[number % kSources].data(), buffer.size());
        if (!file.IsOpen()) {
            file.Create(directory.PathOf("frame-" + std::to_string(number)));
        }
        file.Append({{buffer.data(), buffer.size()}});
        if (!isOneFile) {
            file.Finish(false);
        }
    };
    for (unsigned number = 0; number < kWarmUp; ++number) {
        put(number);
    }
    return CostOf(kFrames, [&] {
        for (unsigned number = 0; number < kFrames; ++number) {
            put(kWarmUp + number);
        }
    });
}

/// Puts frames into a recorder as a grabbing program does.
void Record(Recorder& recorder, const ImageLayout& layout, const std::vector<Image>& sources,
            unsigned frames) {
    for (unsigned number = 0; number < frames; ++number) {
        const Image& source = sources[number % sources.size()];
        while (!recorder.HasRoom(source.size())) {
            recorder.WaitUntilWritten(1);
        }
        std::vector<std::uint8_t> buffer = recorder.TakeBuffer(source.size());
        std::memcpy(buffer.data(), source.data(), source.size());
        recorder.AddFrame(FrameStamp{}, layout, std::move(buffer));
    }
    while (!recorder.WaitUntilWritten(1000)) {
    }
}

void CloseWhole(Recorder& recorder, unsigned frames) {
    const std::string failure = recorder.Close("");
    if (!failure.empty() || recorder.Counts().recorded != frames) {
        std::fprintf(stderr, "recording failed: %s\n", failure.c_str());
        std::exit(2);
    }
}

RecorderOptions OptionsFor(const MemoryDirectory& directory, std::uint64_t queueBytes,
                           std::uint32_t threads) {
    RecorderOptions options;
    options.directory = directory.path;
    options.queueBytes = queueBytes;
    options.threads = threads;
    return options;
}

double RecordFrames(const std::string& format, const ImageLayout& layout,
                    const std::vector<Image>& sources) {
    const MemoryDirectory directory;
    FrameStoreOptions storeOptions;
    storeOptions.format = format;
    Recorder recorder(MakeFrameStore(storeOptions, directory.path),
                      OptionsFor(directory, kBuffers * layout.Size(), 0), RecordingDescription{});
    Record(recorder, layout, sources, kWarmUp);
    const double cost = CostOf(kFrames, [&] { Record(recorder, layout, sources, kFrames); });
    CloseWhole(recorder, kWarmUp + kFrames);
    return cost;
}

cv::Mat AsMat(const ImageLayout& layout, const Image& image) {
    return {static_cast<int>(layout.height), static_cast<int>(layout.width),
            layout.allocatedBits == 8 ? CV_8UC1 : CV_16UC1,
            const_cast<std::uint8_t*>(image.data())};
}

double WriteByOpenCv(const ImageLayout& layout, const std::vector<Image>& sources) {
    const MemoryDirectory directory;
    constexpr int kNoCompression = 1;
    std::vector<Image> buffers(kBuffers, Image(sources[0].size()));
    return CostOf(kFrames, [&] {
        for (unsigned number = 0; number < kFrames; ++number) {
            Image& buffer = buffers[number % kBuffers];
            std::memcpy(buffer.data(), sources[number % kSources].data(), buffer.size());
            cv::imwrite(directory.PathOf("frame-" + std::to_string(number) + ".tiff"),
                        AsMat(layout, buffer), {cv::IMWRITE_TIFF_COMPRESSION, kNoCompression});
        }
    });
}

/// Large images; the worst ratio to copying and writing.
double MeasureLargeImages() {
    struct Format {
        const char* name;
        ImageLayout layout;
    };
    const Format formats[] = {{"Mono8", {4096, 3000, 1, 8, 8, MVCC_MONO, 0, 0}},
                              {"Mono12p", {4096, 3000, 1, 16, 12, MVCC_MONO, 0, 0}}};
    double worst = 0;
    std::printf("| 4096x3000 | copying and writing | recorded | ratio | OpenCV | ours, of OpenCV's "
                "|\n|---|---|---|---|---|---|\n");
    for (const Format& format : formats) {
        const std::vector<Image> sources = Scenes(format.layout);
        std::map<std::string, std::vector<double>> costs;
        const std::vector<std::pair<std::string, std::function<double()>>> contestants = {
            {"one file",
             [&] {
                 return CopyAndWrite(sources, true);
             }},
            {"files",
             [&] {
                 return CopyAndWrite(sources, false);
             }},
            {"stack",
             [&] {
                 return RecordFrames("stack", format.layout, sources);
             }},
            {"tiff",
             [&] {
                 return RecordFrames("tiff", format.layout, sources);
             }},
            {"multi-tiff",
             [&] {
                 return RecordFrames("multi-tiff", format.layout, sources);
             }},
            {"OpenCV", [&] {
                 return WriteByOpenCv(format.layout, sources);
             }}};
        for (unsigned run = 0; run < kRuns; ++run) {
            for (std::size_t turn = 0; turn < contestants.size(); ++turn) {
                // Each follows each other one in turn.
                const auto& [name, measure] = contestants[(turn * 5 + run) % contestants.size()];
                costs[name].push_back(measure());
            }
        }
        const double peer = Median(costs["OpenCV"]);
        for (const auto& [name, reference] :
             {std::pair{"stack", "one file"}, {"tiff", "files"}, {"multi-tiff", "one file"}}) {
            const double least = Median(costs[reference]);
            const double ours = Median(costs[name]);
            std::printf("| %s, %s | %.2f | %.2f | %.2f |", format.name, name, least, ours,
                        ours / least);
            if (std::strcmp(name, "tiff") == 0) {
                std::printf(" %.2f | %.2f |\n", peer, ours / peer);
            } else {
                std::printf(" | |\n");
            }
            std::fflush(stdout);
            worst = std::max(worst, ours / least);
        }
    }
    return worst;
}

struct Rate {
    double framesPerSecond;
    double processorMs; ///< a frame
};

Rate RateOf(unsigned frames, const std::function<void()>& work) {
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    const double cost = CostOf(frames, work);
    return {frames * 1e9 / static_cast<double>(platform::MonotonicNanoseconds() - begin), cost};
}

Rate RecordPng(const ImageLayout& layout, const std::vector<Image>& sources) {
    const MemoryDirectory directory;
    FrameStoreOptions storeOptions;
    Recorder recorder(MakeFrameStore(storeOptions, directory.path),
                      OptionsFor(directory, 64 * layout.Size(), kPngThreads),
                      RecordingDescription{});
    const Rate rate = RateOf(kPngFrames, [&] { Record(recorder, layout, sources, kPngFrames); });
    CloseWhole(recorder, kPngFrames);
    return rate;
}

Rate WritePngByOpenCv(const ImageLayout& layout, const std::vector<Image>& sources) {
    const MemoryDirectory directory;
    const auto write = [&](unsigned first) {
        Image buffer(sources[0].size());
        for (unsigned number = first; number < kPngFrames; number += kPngThreads) {
            std::memcpy(buffer.data(), sources[number % kSources].data(), buffer.size());
            cv::imwrite(directory.PathOf("frame-" + std::to_string(number) + ".png"),
                        AsMat(layout, buffer), {cv::IMWRITE_PNG_COMPRESSION, 1});
        }
    };
    return RateOf(kPngFrames, [&] {
        std::thread other(write, 1u);
        write(0);
        other.join();
    });
}

/// Small PNG images; the frames of 8 bits a second of two processors that do nothing else, which
/// does not depend on other programs.
double MeasurePng(Ratios& ratios) {
    double rate = 0;
    std::printf("\n| 640x480 PNG, level 1, two threads | frames/s | processor ms a frame | OpenCV, "
                "frames/s | processor ms a frame |\n|---|---|---|---|---|\n");
    for (const ImageLayout& layout : {ImageLayout{640, 480, 1, 8, 8, MVCC_MONO, 0, 0},
                                      ImageLayout{640, 480, 1, 16, 12, MVCC_MONO, 0, 0}}) {
        const std::vector<Image> sources = Scenes(layout);
        std::vector<double> rates[2];
        std::vector<double> costs[2];
        for (unsigned run = 0; run < kPngRuns; ++run) {
            for (const unsigned which : {run % 2, 1 - run % 2}) {
                const Rate measured =
                    which == 0 ? RecordPng(layout, sources) : WritePngByOpenCv(layout, sources);
                rates[which].push_back(measured.framesPerSecond);
                costs[which].push_back(measured.processorMs);
            }
        }
        const std::string name = "Mono" + std::to_string(layout.bits);
        std::printf("| %s | %.0f | %.2f | %.0f | %.2f |\n", name.c_str(), Median(rates[0]),
                    Median(costs[0]), Median(rates[1]), Median(costs[1]));
        std::fflush(stdout);
        ratios["recording " + name + " as png, of OpenCV's frames per processor second"] = {
            Median(costs[1]) / Median(costs[0])};
        rate = layout.bits == 8 ? kPngThreads * 1000 / Median(costs[0]) : rate;
    }
    return rate;
}

} // namespace

// recording_bench [--save|--baseline FILE]
int main(int argc, char** argv) {
    cv::setNumThreads(1);
    std::printf("%s, processor milliseconds a frame\n\n", ProcessorName().c_str());
    Ratios ratios;
    const double worst = MeasureLargeImages();
    const double rate = MeasurePng(ratios);
    bool hasFallen = false;
    if (worst > kMostOfCopying) {
        std::printf("FELL: recording takes more than %.1f times copying and writing\n",
                    kMostOfCopying);
        hasFallen = true;
    }
    if (rate < kLeastPngRate) {
        std::printf("FELL: fewer than %.0f PNG files a second of two processors\n", kLeastPngRate);
        hasFallen = true;
    }
    const int status = FinishRatios(argc, argv, ratios);
    return status == EXIT_SUCCESS && hasFallen ? EXIT_FAILURE : status;
}
