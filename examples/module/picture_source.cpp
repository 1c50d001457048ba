// picture_source.cpp - the camera of this module: a thread that makes pictures
#include "picture_source.h"

#include <utility>

void DrawPicture(std::uint64_t number, std::vector<std::uint8_t>& pixels) {
    std::size_t at = 0;
    for (std::uint32_t y = 0; y < kPictureHeight; ++y) {
        for (std::uint32_t x = 0; x < kPictureWidth; ++x) {
            pixels[at++] = static_cast<std::uint8_t>(x + y + number);
        }
    }
}

void PictureSource::Start(std::chrono::microseconds interval, std::function<bool()> deliver) {
    Stop();
    isEnding = false;
    thread =
        std::thread([this, interval, function = std::move(deliver)] { Run(interval, function); });
}

void PictureSource::Stop() {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isEnding = true;
    }
    changed.notify_all();
    // Inside the function the thread cannot wait for itself: the next Start or Stop does.
    if (thread.joinable() && !IsCurrent()) {
        thread.join();
    }
}

void PictureSource::Run(std::chrono::microseconds interval, const std::function<bool()>& deliver) {
    auto due = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(mutex);
    bool goesOn = true;
    while (goesOn) {
        due += interval;
        if (changed.wait_until(lock, due, [this] { return isEnding; })) {
            return;
        }
        lock.unlock(); // a receiver of the host may stop the acquisition
        goesOn = deliver();
        lock.lock();
    }
}
