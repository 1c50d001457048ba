// ini_file.cpp - the host's configuration file
#include "mivora/ini_file.h"

#include "copy_text.h"
#include "guarded.h"
#include "ini_document.h"
#include "parse_number.h"
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

// Several grabbers may share one file. Each write reads, changes and replaces the file under this
// mutex.
platform::Mutex& WriteMutex() {
    static platform::Mutex mutex;
    return mutex;
}

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

    /// Writes the change to disk, or adds it to the batch of the calling thread.
    bool Write(Change change);
    /// Applies the changes to the current file and replaces it. `known` is the last known content,
    /// used if the file no longer exists.
    bool WriteToDisk(const std::vector<Change>& changes, const IniDocument& known) REQUIRES(mutex);
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
    const platform::MutexLock writing(WriteMutex());
    const platform::MutexLock lock(mutex);
    if (!IsBatchOfThisThread()) {
        return WriteToDisk({std::move(change)}, batch ? batch->before : document);
    }
    IniDocument changed = document;
    change.ApplyTo(changed);
    batch->changes.push_back(std::move(change));
    document = std::move(changed);
    return true;
}

bool CIniFile::Impl::WriteToDisk(const std::vector<Change>& changes, const IniDocument& known) {
    std::string error;
    if (path.empty()) {
        SetLastErrorText("Cannot write", path, "no file was opened");
        return false;
    }
    // A deleted file is recreated from the last known content.
    IniDocument changed = known;
    if (platform::PathExists(path)) {
        std::string bytes;
        if (!ReadFile(path, bytes, error)) {
            SetLastErrorText("Cannot read", path, error);
            return false;
        }
        changed = IniDocument(std::move(bytes));
    }
    const std::string before = changed.Bytes();
    for (const Change& change : changes) {
        change.ApplyTo(changed);
    }
    IniDocument onDisk = changed;
    if (batch) {
        for (const Change& change : batch->changes) {
            change.ApplyTo(changed);
        }
    }
    if (onDisk.Bytes() != before && !platform::ReplaceWholeFile(path, onDisk.Bytes(), &error)) {
        SetLastErrorText("Cannot write", path, error);
        return false;
    }
    if (batch) {
        batch->before = std::move(onDisk);
    }
    document = std::move(changed);
    return true;
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
    const bool written = Attempt("Cannot write an ini file", [&] {
        const platform::MutexLock writing(WriteMutex());
        const platform::MutexLock lock(impl->mutex);
        if (!impl->IsBatchOfThisThread()) {
            SetLastErrorText("Cannot write", impl->path, "no batch was begun");
            return false;
        }
        const Impl::Batch batch = *impl->batch;
        if (!batch.changes.empty() && !impl->WriteToDisk(batch.changes, batch.before)) {
            return false;
        }
        impl->batch.reset();
        return true;
    });
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
