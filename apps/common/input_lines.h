// input_lines.h - standard input, line by line
#pragma once

#include <functional>
#include <string>

/// Reads lines as they arrive. One thread, the only reader of standard input.
class InputLines {
public:
    /// `whileWaiting` is called repeatedly while there is no input; returning false ends the input.
    explicit InputLines(std::function<bool()> whileWaiting) : idle(std::move(whileWaiting)) {}

    /// Reads the next line without its line end, which the last line may lack. False at the end of
    /// the input or after an interrupt.
    bool Next(std::string& line);

    /// Reads whatever has arrived, unchanged. False as for Next.
    bool NextPiece(std::string& piece);

private:
    bool ReadMore();

    std::function<bool()> idle;
    std::string pending;
    bool ended = false;
};
