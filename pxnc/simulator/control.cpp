#include "pxnc/simulator/control.h"

#include "pxnc/simulator/commands.h"

#include <cstring>
#include <exception>

int32_t PxnControl(const char* command, char* answer, uint32_t answerSize) {
    int32_t result = PxnErrInternalFault;
    std::string text;
    try {
        result = pxsim::RunCommand(command == nullptr ? "" : command, text);
    } catch (const std::exception& failure) {
        text = failure.what();
    }
    if (answer != nullptr && answerSize > 0) {
        const std::size_t length = std::min<std::size_t>(text.size(), answerSize - 1);
        std::memcpy(answer, text.data(), length);
        answer[length] = 0;
    }
    return result;
}
