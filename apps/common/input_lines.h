// input_lines.h - standard input, line by line
#pragma once

#include <functional>
#include <string>

/// Reads lines as they come. One thread, the only one that reads standard input.
class InputLines {
public:
    /// `whileWaiting` is called again and again until something has come; false ends the input.
    explicit InputLines(std::function<bool()> whileWaiting) : idle(std::move(whileWaiting)) {}

    /// The next line without its line end; the last one need not have any. False at the end of the
    /// input, or when the user wants the program to stop.
    bool Next(std::string& line);

    /// What has come, as it is. False as above.
    bool NextPiece(std::string& piece);

private:
    bool ReadMore();

    std::function<bool()> idle;
    std::string pending;
    bool ended = false;
};
