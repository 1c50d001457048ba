// feature.cpp - one feature of one module of the camera SDK
#include "sdk/feature.h"

#include "sdk/answer_size.h"
#include "sdk/malloc_array.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <cstring>

namespace pyxen {

namespace {

/// Reads what takes two calls: `ask` for the number of elements, `fill` for these.
template <typename T, typename Ask, typename Fill>
PxnError ReadAll(std::vector<T>& elements, FeatureStep& step, Ask ask, Fill fill) {
    std::uint32_t count = 0;
    step = FeatureStep::kLength;
    PxnError result = ask(&count);
    if (result != PxnErrSuccess) {
        return result;
    }
    step = FeatureStep::kMemory;
    result = NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
        if (!IsAnswerSize<T>(count)) {
            return PxnErrOther;
        }
        // No elements have an address as well: without one, the number would be asked again.
        elements.resize(std::max(count, 1u));
        return PxnErrSuccess;
    });
    if (result != PxnErrSuccess) {
        return result;
    }
    step = FeatureStep::kContent;
    std::uint32_t found = 0;
    result = fill(elements.data(), count, &found);
    // There may be fewer than were counted.
    elements.resize(std::min(count, found));
    return result;
}

} // namespace

bool FeatureRange::Contains(const FeatureValue& value) const {
    return value.Visit(
        Overloaded{[this](std::int64_t number) { return integers.Contain(number); },
                   [this](double number) { return floats.Contain(number); },
                   [this](const EnumEntry& wanted) {
                       return std::any_of(entries.begin(), entries.end(), [&](const char* entry) {
                           return entry && wanted.name && std::strcmp(entry, wanted.name) == 0;
                       });
                   },
                   [this](const std::string& text) { return text.size() <= longestText; },
                   [](const auto&) {
                       return true;
                   }});
}

PxnError Feature::Access(bool& readable, bool& writable) const {
    PxnBool canRead = 0;
    PxnBool canWrite = 0;
    const PxnError result = api->PxnFeatureAccessQuery(handle, name, &canRead, &canWrite);
    readable = result == PxnErrSuccess && canRead != 0;
    writable = result == PxnErrSuccess && canWrite != 0;
    return result;
}

PxnError Feature::Range(FeatureRange& range, FeatureStep* failed) const {
    FeatureStep step = FeatureStep::kContent;
    FeatureRange read;
    PxnError result = PxnErrSuccess;
    switch (type) {
    case FeatureType::kInteger:
        result =
            api->PxnFeatureIntRangeQuery(handle, name, &read.integers.least, &read.integers.most);
        break;
    case FeatureType::kFloat:
        result =
            api->PxnFeatureFloatRangeQuery(handle, name, &read.floats.least, &read.floats.most);
        break;
    case FeatureType::kEnumeration:
        result = ReadAll(
            read.entries, step,
            [this](std::uint32_t* count) {
                return api->PxnFeatureEnumRangeQuery(handle, name, nullptr, 0, count);
            },
            [this](const char** entries, std::uint32_t count, std::uint32_t* found) {
                return api->PxnFeatureEnumRangeQuery(handle, name, entries, count, found);
            });
        break;
    case FeatureType::kText:
        result = api->PxnFeatureStringMaxlengthQuery(handle, name, &read.longestText);
        break;
    default:
        break;
    }
    if (result == PxnErrSuccess) {
        range = std::move(read);
    } else if (failed) {
        *failed = step;
    }
    return result;
}

PxnError Feature::Increment(std::int64_t& increment) const {
    return api->PxnFeatureIntIncrementQuery(handle, name, &increment);
}

PxnError Feature::IsAvailable(const char* entry, bool& available) const {
    PxnBool read = 0;
    const PxnError result = api->PxnFeatureEnumIsAvailable(handle, name, entry, &read);
    available = result == PxnErrSuccess && read != 0;
    return result;
}

PxnError Feature::EntryNumber(const char* entry, std::int64_t& number) const {
    return api->PxnFeatureEnumAsInt(handle, name, entry, &number);
}

PxnError Feature::Selected(std::vector<const char*>& names, FeatureStep* failed) const {
    FeatureStep step{};
    std::vector<PxnFeatureInfo> records;
    PxnError result = ReadAll(
        records, step,
        [this](std::uint32_t* count) {
            return api->PxnFeatureListSelected(handle, name, nullptr, 0, count,
                                               sizeof(PxnFeatureInfo));
        },
        [this](PxnFeatureInfo* infos, std::uint32_t count, std::uint32_t* found) {
            return api->PxnFeatureListSelected(handle, name, infos, count, found,
                                               sizeof(PxnFeatureInfo));
        });
    if (result == PxnErrSuccess) {
        step = FeatureStep::kMemory;
        result = NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
            std::vector<const char*> read;
            read.reserve(records.size());
            for (const PxnFeatureInfo& record : records) {
                read.push_back(record.name);
            }
            names = std::move(read);
            return PxnErrSuccess;
        });
    }
    if (result != PxnErrSuccess && failed) {
        *failed = step;
    }
    return result;
}

PxnError Feature::Read(FeatureValue& value, FeatureStep* failed) const {
    FeatureStep step = FeatureStep::kContent;
    FeatureValue read;
    PxnError result = PxnErrWrongType;
    switch (type) {
    case FeatureType::kInteger:
        result = api->PxnFeatureIntGet(handle, name, &read.Get<std::int64_t>());
        break;
    case FeatureType::kFloat:
        read = 0.0;
        result = api->PxnFeatureFloatGet(handle, name, &read.Get<double>());
        break;
    case FeatureType::kEnumeration:
        read = EnumEntry{};
        result = api->PxnFeatureEnumGet(handle, name, &read.Get<EnumEntry>().name);
        break;
    case FeatureType::kText:
        result = ReadText(read, step);
        break;
    case FeatureType::kBoolean: {
        PxnBool state = 0;
        result = api->PxnFeatureBoolGet(handle, name, &state);
        read = state != 0;
        break;
    }
    case FeatureType::kBytes:
        read = FeatureBytes();
        result = ReadAll(
            read.Get<FeatureBytes>(), step,
            [this](std::uint32_t* length) {
                return api->PxnFeatureRawLengthQuery(handle, name, length);
            },
            [this](std::uint8_t* bytes, std::uint32_t length, std::uint32_t* filled) {
                return api->PxnFeatureRawGet(handle, name, reinterpret_cast<char*>(bytes), length,
                                             filled);
            });
        break;
    default:
        break;
    }
    if (result == PxnErrSuccess) {
        value = std::move(read);
    } else if (failed) {
        *failed = step;
    }
    return result;
}

PxnError Feature::ReadText(FeatureValue& value, FeatureStep& step) const {
    std::uint32_t size = 0;
    step = FeatureStep::kLength;
    PxnError result = api->PxnFeatureStringGet(handle, name, nullptr, 0, &size);
    if (result != PxnErrSuccess) {
        return result;
    }
    // One byte more than asked for, so that what comes back always ends.
    step = FeatureStep::kMemory;
    MallocArray<char> text;
    if (!IsAnswerSize<char>(size) || !text.Resize(std::size_t{size} + 1)) {
        return PxnErrOther;
    }
    text[0] = '\0';
    text[size] = '\0';
    step = FeatureStep::kContent;
    result = api->PxnFeatureStringGet(handle, name, text.Get(), size, &size);
    if (result != PxnErrSuccess) {
        return result;
    }
    step = FeatureStep::kMemory;
    return NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
        value = std::string(text.Get());
        return PxnErrSuccess;
    });
}

PxnError Feature::Write(const FeatureValue& value) const {
    return value.Visit(Overloaded{
        [this](std::int64_t number) { return api->PxnFeatureIntSet(handle, name, number); },
        [this](double number) { return api->PxnFeatureFloatSet(handle, name, number); },
        [this](const EnumEntry& entry) { return api->PxnFeatureEnumSet(handle, name, entry.name); },
        [this](const std::string& text) {
            return api->PxnFeatureStringSet(handle, name, text.c_str());
        },
        [this](bool state) { return api->PxnFeatureBoolSet(handle, name, state ? 1 : 0); },
        [this](const FeatureBytes& bytes) {
            return api->PxnFeatureRawSet(handle, name, reinterpret_cast<const char*>(bytes.data()),
                                         static_cast<std::uint32_t>(bytes.size()));
        }});
}

PxnError Feature::Run() const {
    return api->PxnFeatureCommandRun(handle, name);
}

PxnError Feature::IsDone(bool& done) const {
    PxnBool read = 0;
    const PxnError result = api->PxnFeatureCommandIsDone(handle, name, &read);
    done = result == PxnErrSuccess && read != 0;
    return result;
}

} // namespace pyxen
