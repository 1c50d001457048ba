// typed_features.h - the seven types of feature
#pragma once

#include "pxnc/simulator/enum_feature.h"
#include "pxnc/simulator/number_features.h"
#include "pxnc/simulator/value_feature.h"

namespace pxsim {

/// Text of limited length, UTF-8.
class StringFeature : public ValueFeature<StringFeature, std::string> {
public:
    StringFeature(Module& module, const char* category, const FeatureRow& row, const String& type);

    PxnError GetString(std::string& value) override;
    PxnError SetString(const char* value) override;
    PxnError GetStringMaxLength(std::uint32_t& bytes) override;

    bool PutText(const std::string& text) override;

private:
    const std::uint32_t maxLength;
};

class BoolFeature : public ValueFeature<BoolFeature, bool> {
public:
    BoolFeature(Module& module, const char* category, const FeatureRow& row, const Bool& type);

    PxnError GetBool(bool& value) override;
    PxnError SetBool(bool value) override;

    std::int64_t SelectorValue() const override { return Get() ? 1 : 0; }
    bool PutText(const std::string& text) override;
};

class CommandFeature : public Feature {
public:
    CommandFeature(Module& module, const char* category, const FeatureRow& row,
                   const Command& type);

    CommandFeature& Runs(std::function<PxnError()> action);

    PxnError Run() override;
    bool IsStartOrStop() const override { return startsOrStops; }
    /// A command is done as soon as it has run.
    PxnError IsDone(bool& isDone) override;

private:
    std::function<PxnError()> action;
    const bool startsOrStops;
};

/// Bytes of a fixed length.
class RawFeature : public ValueFeature<RawFeature, std::string> {
public:
    RawFeature(Module& module, const char* category, const FeatureRow& row, const Raw& type);

    /// Checks the access and the length, then writes.
    PxnError Set(std::string value);

    PxnError GetRaw(std::vector<char>& bytes) override;
    PxnError SetRaw(const char* bytes, std::uint32_t size) override;
    PxnError GetRawLength(std::uint32_t& length) override;

    bool PutText(const std::string& text) override;
};

} // namespace pxsim
