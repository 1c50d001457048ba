// services_fixture.h - the services of a grabber with the scripted SDK behind it
#pragma once

#include "mivora/module_services.h"
#include "tests/module/grabber_fixture.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A value as a receiver got it.
struct ReceivedValue {
    explicit ReceivedValue(const MV_FEATURE_VALUE& value)
        : type(value.type),
          integer(value.integer),
          real(value.real),
          text(value.text, value.textBytes) {
        EXPECT_EQ(value.size, sizeof value);
    }

    uint32_t type;
    int64_t integer;
    double real;
    std::string text;
};

inline MV_FEATURE_VALUE ServiceValue(MV_FEATURE_TYPE type) {
    MV_FEATURE_VALUE value{};
    value.size = sizeof value;
    value.type = type;
    return value;
}
inline MV_FEATURE_VALUE IntegerValue(int64_t number) {
    MV_FEATURE_VALUE value = ServiceValue(MV_FEATURE_INTEGER);
    value.integer = number;
    return value;
}
inline MV_FEATURE_VALUE FloatValue(double number) {
    MV_FEATURE_VALUE value = ServiceValue(MV_FEATURE_FLOAT);
    value.real = number;
    return value;
}
inline MV_FEATURE_VALUE EntryValue(const char* name) {
    MV_FEATURE_VALUE value = ServiceValue(MV_FEATURE_ENUMERATION);
    value.text = name;
    return value;
}
inline MV_FEATURE_VALUE TextValue(const char* text) {
    MV_FEATURE_VALUE value = ServiceValue(MV_FEATURE_STRING);
    value.text = text;
    return value;
}

/// Calls a std::function as a receiver, with its address as context.
template <typename... Arguments>
struct ReceiverOf {
    std::function<void(Arguments...)> call;

    static void Receive(Arguments... arguments, void* context) {
        static_cast<ReceiverOf*>(context)->call(arguments...);
    }
};

class ServicesFixture : public GrabberFixture {
protected:
    IMivoraModuleServices& Services() { return Grabber().Services(); }

    /// The reason of the last service, which is forgotten.
    std::string Reason() {
        const std::string text = reason.text;
        reason.text[0] = '\0';
        return text;
    }

    MV_SERVICE_RESULT ListModules(Texts& names) {
        names.clear();
        ReceiverOf<const char*> receiver{[&](const char* name) {
            names.emplace_back(name);
        }};
        return Services().ListModules(receiver.Receive, &receiver, &reason);
    }
    MV_SERVICE_RESULT Read(const char* module, const char* feature,
                           std::vector<ReceivedValue>& values) {
        ReceiverOf<const MV_FEATURE_VALUE*> receiver{[&](const MV_FEATURE_VALUE* value) {
            values.emplace_back(*value);
        }};
        return Services().ReadFeature(module, feature, receiver.Receive, &receiver, &reason);
    }
    /// The result alone.
    MV_SERVICE_RESULT Read(const char* module, const char* feature) {
        std::vector<ReceivedValue> values;
        return Read(module, feature, values);
    }
    MV_SERVICE_RESULT Write(const char* module, const char* feature,
                            const MV_FEATURE_VALUE& value) {
        written.clear();
        ReceiverOf<const MV_FEATURE_VALUE*> receiver{[&](const MV_FEATURE_VALUE* held) {
            written.emplace_back(*held);
        }};
        return Services().WriteFeature(module, feature, &value, receiver.Receive, &receiver,
                                       &reason);
    }
    MV_SERVICE_RESULT Run(const char* module, const char* feature, uint32_t timeoutMs) {
        return Services().RunCommand(module, feature, timeoutMs, &reason);
    }

    MV_SERVICE_REASON reason{sizeof(MV_SERVICE_REASON), {}};
    std::vector<ReceivedValue> written; ///< what the last Write handed out
};
