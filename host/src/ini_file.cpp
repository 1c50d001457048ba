// ini_file.cpp - the host's configuration file
#include "mivora/ini_file.h"

#include "copy_text.h"
#include "guarded.h"
#include "ini_document.h"
#include "parse_number.h"
#include "platform/file_lock.h"
#include "platform/file_system.h"
#include "platform/mutex.h"

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

// A plain array needs no destructor when a thread ends.
thread_local char lastError[1024] = "";

void SetLastErrorText(const char* operation, const std::string& path, const std::string& reason) {
    std::snprintf(lastError, sizeof lastError, "%s \"%s\": %s", operation, path.c_str(),
                  reason.c_str());
}

/// Runs an operation of the file; returns false, with an error text, when out of memory.
template <typename Body>
bool Attempt(const char* operation, const Body& body) {
    try {
        return body();
    } catch (...) {
        std::snprintf(lastError, sizeof lastError, "%s: out of memory", operation);
        return false;
    }
}

// Time for other processes to finish their writes of the same file. One write takes milliseconds.
constexpr std::uint32_t kLockTimeoutMs = 5000;

bool IsUtf16(const std::string& bytes) {
    return bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0;
}

bool ReadFile(const std::string& path, std::string& bytes, std::string& error) {
    if (platform::IsDirectory(path)) {
        error = "is a directory";
        return false;
    }
    if (!platform::ReadWholeFile(path, bytes, &error)) {
        return false;
    }
    if (IsUtf16(bytes)) {
        error = "is UTF-16 text; save it as UTF-8";
        return false;
    }
    return true;
}

} // namespace

struct CIniFile::Impl {
    /// The new value of a key; without a value the key is removed.
    struct Change {
        std::string section;
        std::string key;
        std::optional<std::string> value;

        void ApplyTo(IniDocument& target) const;
    };

    struct Batch {
        std::thread::id thread;
        IniDocument before; // content of the file without the batch
        std::vector<Change> changes;
    };

    /// A file with changes applied to its present content.
    struct Merge {
        IniDocument onDisk;
        IniDocument inMemory; // with the open batch of another thread
        bool changesFile;
    };

    /// Writes the change to disk, or adds it to the batch of the calling thread.
    bool Write(Change change);
    /// Applies one change, or for null the batch of the calling thread, to the current file and
    /// replaces it. Waits for other writers of the file without holding the mutex.
    bool WriteToDisk(const Change* single);
    /// Reads the file and applies the changes to it.
    std::optional<Merge> MergeWithFile(const std::vector<Change>& changes) const REQUIRES(mutex);
    bool IsBatchOfThisThread() const REQUIRES(mutex) {
        return batch && batch->thread == std::this_thread::get_id();
    }

    mutable platform::Mutex mutex;
    std::string path GUARDED_BY(mutex);
    IniDocument document GUARDED_BY(mutex);
    std::optional<Batch> batch GUARDED_BY(mutex);
};

void CIniFile::Impl::Change::ApplyTo(IniDocument& target) const {
    if (value) {
        target.Set(section, key, *value);
    } else {
        target.Remove(section, key);
    }
}

bool CIniFile::Impl::Write(Change change) {
    {
        const platform::MutexLock lock(mutex);
        if (IsBatchOfThisThread()) {
            IniDocument changed = document;
            change.ApplyTo(changed);
            batch->changes.push_back(std::move(change));
            document = std::move(changed);
            return true;
        }
    }
    return WriteToDisk(&change);
}

bool CIniFile::Impl::WriteToDisk(const Change* single) {
    platform::FileLock fileLock;
    std::string error;
    std::string lockedPath;
    for (;;) {
        {
            const platform::MutexLock lock(mutex);
            if (!single && !IsBatchOfThisThread()) {
                SetLastErrorText("Cannot write", path, "no batch was begun");
                return false;
            }
            if (!single && batch->changes.empty()) {
                batch.reset();
                return true;
            }
            if (path.empty()) {
                SetLastErrorText("Cannot write", path, "no file was opened");
                return false;
            }
            std::optional<Merge> merge =
                MergeWithFile(single ? std::vector<Change>{*single} : batch->changes);
            if (!merge) {
                return false;
            }
            // What changes nothing leaves the disk alone. Otherwise the file is read again under
            // its lock; the path may have changed meanwhile, too.
            if (!merge->changesFile || lockedPath == path) {
                if (merge->changesFile &&
                    !platform::ReplaceWholeFile(path, merge->onDisk.Bytes(), &error)) {
                    SetLastErrorText("Cannot write", path, error);
                    return false;
                }
                if (!single) {
                    batch.reset();
                } else if (batch) {
                    batch->before = std::move(merge->onDisk);
                }
                document = std::move(merge->inMemory);
                return true;
            }
            lockedPath = path;
        }
        if (!fileLock.Acquire(lockedPath, kLockTimeoutMs, &error)) {
            SetLastErrorText("Cannot write", lockedPath, error);
            return false;
        }
    }
}

std::optional<CIniFile::Impl::Merge>
CIniFile::Impl::MergeWithFile(const std::vector<Change>& changes) const {
    // A deleted file is recreated from the last known content.
    IniDocument onDisk = batch ? batch->before : document;
    if (platform::PathExists(path)) {
        std::string bytes;
        std::string error;
        if (!ReadFile(path, bytes, error)) {
            SetLastErrorText("Cannot read", path, error);
            return std::nullopt;
        }
        onDisk = IniDocument(std::move(bytes));
    }
    const std::string before = onDisk.Bytes();
    for (const Change& change : changes) {
        change.ApplyTo(onDisk);
    }
    IniDocument inMemory = onDisk;
    if (batch) {
        for (const Change& change : batch->changes) {
            change.ApplyTo(inMemory);
        }
    }
    const bool changesFile = onDisk.Bytes() != before;
    return Merge{std::move(onDisk), std::move(inMemory), changesFile};
}

CIniFile::CIniFile() : impl(new Impl) {}

CIniFile::~CIniFile() {
    delete impl;
}

bool CIniFile::Open(const char* path) {
    return Attempt("Cannot open an ini file", [&] {
        if (!path || *path == '\0') {
            SetLastErrorText("Cannot open", "", "no path was given");
            return false;
        }
        std::string name = path;
        std::string bytes;
        std::string error;
        if (platform::PathExists(name) && !ReadFile(name, bytes, error)) {
            SetLastErrorText("Cannot read", name, error);
            return false;
        }
        IniDocument read(std::move(bytes));
        const platform::MutexLock lock(impl->mutex);
        impl->batch.reset();
        impl->path = std::move(name);
        impl->document = std::move(read);
        return true;
    });
}

const char* CIniFile::GetPath() const {
    const platform::MutexLock lock(impl->mutex);
    return impl->path.c_str();
}

bool CIniFile::HasSection(const char* section) const {
    return Guarded(false, [&] {
        const platform::MutexLock lock(impl->mutex);
        return section && impl->document.HasSection(section);
    });
}

bool CIniFile::HasKey(const char* section, const char* key) const {
    return Guarded(false, [&] {
        const platform::MutexLock lock(impl->mutex);
        return section && key && impl->document.Find(section, key).has_value();
    });
}

std::uint32_t CIniFile::GetText(const char* section, const char* key, const char* defaultValue,
                                char* buffer, std::uint32_t capacity) const {
    const std::string_view otherwise = defaultValue ? defaultValue : "";
    const std::uint32_t failed = CopyText(otherwise, buffer, capacity);
    return Guarded(failed, [&] {
        const platform::MutexLock lock(impl->mutex);
        const auto value = section && key ? impl->document.Find(section, key) : std::nullopt;
        return value ? CopyText(*value, buffer, capacity) : failed;
    });
}

std::int32_t CIniFile::GetInt32(const char* section, const char* key,
                                std::int32_t defaultValue) const {
    return Guarded(defaultValue, [&] {
        const platform::MutexLock lock(impl->mutex);
        const auto value = section && key ? impl->document.Find(section, key) : std::nullopt;
        return value ? ParseInt32(*value).value_or(defaultValue) : defaultValue;
    });
}

bool CIniFile::WriteText(const char* section, const char* key, const char* value) {
    return Attempt("Cannot write an ini file", [&] {
        if (!section || !key || !value || !IniDocument::IsWritable(section, key, value)) {
            SetLastErrorText("Cannot write", GetPath(),
                             "section, key or value has no form that an ini file can hold");
            return false;
        }
        return impl->Write({section, key, value});
    });
}

bool CIniFile::WriteInt32(const char* section, const char* key, std::int32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", value);
    return WriteText(section, key, text);
}

bool CIniFile::WriteHex32(const char* section, const char* key, std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return WriteText(section, key, text);
}

bool CIniFile::RemoveKey(const char* section, const char* key) {
    return Attempt("Cannot write an ini file", [&] {
        return section && key && impl->Write({section, key, std::nullopt});
    });
}

bool CIniFile::BeginBatch() {
    return Attempt("Cannot write an ini file", [&] {
        const platform::MutexLock lock(impl->mutex);
        if (impl->path.empty() || impl->batch) {
            SetLastErrorText("Cannot write", impl->path,
                             impl->batch ? "others are writing to it" : "no file was opened");
            return false;
        }
        impl->batch = Impl::Batch{std::this_thread::get_id(), impl->document, {}};
        return true;
    });
}

bool CIniFile::EndBatch() {
    const bool written =
        Attempt("Cannot write an ini file", [&] { return impl->WriteToDisk(nullptr); });
    DropBatch(); // left over only if writing failed
    return written;
}

void CIniFile::DropBatch() {
    const platform::MutexLock lock(impl->mutex);
    if (impl->IsBatchOfThisThread()) {
        impl->document = std::move(impl->batch->before);
        impl->batch.reset();
    }
}

std::uint32_t CIniFile::GetNumSections() const {
    const platform::MutexLock lock(impl->mutex);
    return static_cast<std::uint32_t>(impl->document.SectionNames().size());
}

const char* CIniFile::GetSectionName(std::uint32_t index) const {
    const platform::MutexLock lock(impl->mutex);
    const auto& names = impl->document.SectionNames();
    return index < names.size() ? names[index].c_str() : nullptr;
}

const char* CIniFile::GetLastErrorText() const {
    return lastError;
}
