// feature_text.cpp - whole texts out of the SDK
#include "sdk/feature.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"

using namespace pyxen;

namespace {

PxnError TakeText(const Feature& feature, std::string& out, FeatureStep& failed) {
    FeatureValue text;
    const PxnError result = feature.Read(text, &failed);
    if (result == PxnErrSuccess) {
        out = std::move(text.Get<std::string>());
    }
    return result;
}

} // namespace

PxnError CPyxenAPIAccess::GetStringFeature(PxnHandle handle, const char* name, std::string& out) {
    FeatureStep failed{};
    return TakeText({*this, handle, name, FeatureType::kText}, out, failed);
}

PxnError CPyxenAPIAccess::GetFeatureAsText(PxnHandle handle, const char* name, std::string& out) {
    FeatureStep failed{};
    PxnError result = TakeText({*this, handle, name, FeatureType::kText}, out, failed);
    // Only the first call tells the type: a later one that returns the same code has failed.
    if (result != PxnErrWrongType || failed != FeatureStep::kLength) {
        return result;
    }
    FeatureValue value;
    result = Feature(*this, handle, name, FeatureType::kEnumeration).Read(value);
    if (result != PxnErrSuccess) {
        return result;
    }
    return NoThrow<PxnError>(PxnErrOther, [&]() -> PxnError {
        const char* const entry = value.Get<EnumEntry>().name;
        out = entry ? entry : "";
        return PxnErrSuccess;
    });
}
