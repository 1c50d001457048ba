// request_failure.h - why a request cannot be done
#pragma once

#include <stdexcept>
#include <string>

/// Becomes an answer with this status, see ErrorAnswer.
class RequestFailure : public std::runtime_error {
public:
    RequestFailure(int httpStatus, const std::string& reason)
        : std::runtime_error(reason), status(httpStatus) {}

    int Status() const { return status; }

private:
    int status;
};

inline constexpr int kBadRequest = 400;
inline constexpr int kNotFound = 404;
inline constexpr int kConflict = 409; ///< not in the present state
inline constexpr int kUnsupportedMedia = 415;
inline constexpr int kRefusedValue = 422;
inline constexpr int kUnavailable = 503;
inline constexpr int kNoFrameInTime = 504;
