// command_failure.cpp - exception and message for a failed operation
#include "apps/common/command_failure.h"

#include "mivora/grabber.h"

std::string FailureText(const std::string& operation, MV_ERRCODE code, const std::string& object) {
    std::string text = operation + " failed with " + std::to_string(static_cast<int>(code)) + " (" +
                       MivoraErrorText(code) + ")";
    if (!object.empty()) {
        text += " for " + object;
    }
    return text;
}

void Check(const std::string& operation, MV_ERRCODE code, const std::string& object) {
    if (code != MV_OK) {
        throw CommandFailure(FailureText(operation, code, object));
    }
}
