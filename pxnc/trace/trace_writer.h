// trace_writer.h - the file that a session is traced to
#pragma once

#include "platform/mapped_file.h"
#include "platform/mutex.h"
#include "pxnc/trace/entry_table.h"
#include "pxnc/trace/trace_layout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sdktrace {

using LibraryVersion = std::array<std::uint16_t, 4>;

struct WriterOptions {
    std::string path;
    std::size_t megabytes = 64; ///< the file never gets bigger
    LibraryVersion libraryVersion{};
};

/// Appends records to a trace; when the file is full, the newest replace the oldest.
class TraceWriter {
public:
    /// Creates the file. False with a message in `error` when that is impossible.
    bool Create(const WriterOptions& options, std::string& error);

    /// Any thread.
    void Append(RecordType type, Entry entry, std::uint64_t call, std::uint32_t thread,
                std::int32_t result, std::string_view content) noexcept EXCLUDES(mutex);
    /// Ends the trace and shortens the file to what is used. Nothing is appended afterwards.
    /// Returns at once when another thread holds the trace and does not let go.
    void Finish() noexcept;
    /// The longest content that a record may have.
    std::size_t MostContent() const { return blockCount * kBlockContent / 4; }

private:
    BlockHeader* Block() const REQUIRES(mutex);
    void NextBlock() REQUIRES(mutex);
    void Copy(const void* bytes, std::size_t length) REQUIRES(mutex);

    platform::Mutex mutex;
    platform::MappedFile file GUARDED_BY(mutex);
    std::size_t blockCount = 0;
    std::uint64_t blocksBegun GUARDED_BY(mutex) = 0;
    std::uint64_t beginning = 0;
};

} // namespace sdktrace
