// camera_order.cpp - what one thread has another one do
#include "apps/serve/camera_order.h"

#include "apps/common/command_failure.h"
#include "apps/serve/request_failure.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

void CameraOrder::Run(const std::function<void()>& job) {
    try {
        job();
        Finish(nullptr);
    } catch (const RequestFailure& failure) {
        Finish([status = failure.Status(), reason = std::string(failure.what())] {
            throw RequestFailure(status, reason);
        });
    } catch (const CommandFailure& failure) {
        Finish([message = failure.Message(), details = failure.Details()] {
            throw CommandFailure(message, details);
        });
    } catch (const std::exception& failure) {
        Finish([reason = std::string(failure.what())] { throw std::runtime_error(reason); });
    }
}

void CameraOrder::Finish(std::function<void()> failure) {
    const platform::MutexLock lock(mutex);
    raise = std::move(failure);
    isFinished = true;
    finished.NotifyAll();
}

void CameraOrder::Await() {
    std::function<void()> failure;
    {
        const platform::MutexLock lock(mutex);
        while (!isFinished) {
            finished.Wait(mutex);
        }
        failure.swap(raise);
    }
    if (failure) {
        failure();
    }
}
