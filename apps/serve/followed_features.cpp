// followed_features.cpp - which features follow which
#include "apps/serve/followed_features.h"

#include "mivora/log_sink.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string_view>

namespace {

constexpr std::string_view kEntryBegin = "FeatureSyncher::Init: ";
constexpr std::string_view kEntryEnd = " will be synched with ";
constexpr std::string_view kFollowerBegin = "  ";

/// "Module::Feature".
std::optional<FollowedFeatures::Name> NameIn(std::string_view text) {
    const std::size_t colons = text.find("::");
    if (colons == std::string_view::npos) {
        return std::nullopt;
    }
    return FollowedFeatures::Name(text.substr(0, colons), text.substr(colons + 2));
}

bool IsSameModule(const std::string& left, const std::string& right) {
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

} // namespace

void FollowedFeatures::Clear() {
    const platform::MutexLock lock(mutex);
    entries.clear();
    isInEntry = false;
}

void FollowedFeatures::TakeLine(int level, const std::string& text) {
    std::string_view rest = text;
    const platform::MutexLock lock(mutex);
    if (level == kMvLogInformation && rest.starts_with(kEntryBegin) && rest.ends_with(kEntryEnd)) {
        rest.remove_prefix(kEntryBegin.size());
        rest.remove_suffix(kEntryEnd.size());
        const auto watched = NameIn(rest);
        isInEntry = watched.has_value();
        if (watched) {
            entries.push_back({*watched, {}});
        }
        return;
    }
    const auto follower = isInEntry && rest.starts_with(kFollowerBegin)
                              ? NameIn(rest.substr(kFollowerBegin.size()))
                              : std::nullopt;
    isInEntry = follower.has_value();
    if (follower) {
        entries.back().followers.push_back(*follower);
    }
}

std::vector<FollowedFeatures::Name>
FollowedFeatures::FollowersOf(const std::string& module, const std::string& feature) const {
    const platform::MutexLock lock(mutex);
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return IsSameModule(entry.watched.first, module) && entry.watched.second == feature;
    });
    return found == entries.end() ? std::vector<Name>() : found->followers;
}
