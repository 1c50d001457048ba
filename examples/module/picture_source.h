// picture_source.h - the camera of this module: a thread that makes pictures
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

constexpr std::uint32_t kPictureWidth = 640;
constexpr std::uint32_t kPictureHeight = 480;

/// 8 bits of grey, a slope that moves on by one with each picture.
void DrawPicture(std::uint64_t number, std::vector<std::uint8_t>& pixels);

/// Calls a function again and again on a thread of its own. One thread at a time calls Start and
/// Stop; the function itself may call Stop, but not Start.
class PictureSource {
public:
    ~PictureSource() { Stop(); }

    /// `deliver` returns false to end the calls. Throws std::system_error without a thread.
    void Start(std::chrono::microseconds interval, std::function<bool()> deliver);
    /// Waits until the function has returned, except inside it.
    void Stop();
    /// True inside the function.
    bool IsCurrent() const { return thread.get_id() == std::this_thread::get_id(); }

private:
    void Run(std::chrono::microseconds interval, const std::function<bool()>& deliver);

    std::thread thread;
    std::mutex mutex;
    std::condition_variable changed;
    bool isEnding = false; // guarded by `mutex`
};
