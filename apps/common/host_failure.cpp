// host_failure.cpp - messages for operations of the host's classes that failed
//
// Apart from the exception, which is thrown without the host's library as well.
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
