// control.cpp - the simulator's control interface, beside the 55 entry points of the SDK
#include "pxnc/simulator/control.h"

#include "pxnc/simulator/commands.h"

#include <cstring>
#include <exception>

std::int32_t PxnControl(const char* command, char* answer, std::uint32_t answerSize) {
    std::int32_t result = PxnErrInternalFault;
    std::string text;
    try {
        result = pxsim::RunCommand(command ? command : "", text);
    } catch (const std::exception& failure) {
        text = failure.what();
    }
    if (answer && answerSize > 0) {
        const std::size_t length = std::min<std::size_t>(text.size(), answerSize - 1);
        std::memcpy(answer, text.data(), length);
        answer[length] = 0;
    }
    return result;
}
