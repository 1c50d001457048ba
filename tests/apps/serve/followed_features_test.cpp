// followed_features_test.cpp - what the module's log says of features that follow
#include "apps/serve/followed_features.h"

#include "mivora/log_sink.h"

#include <gtest/gtest.h>

namespace {

using FollowerNames = std::vector<FollowedFeatures::Name>;

TEST(FollowedFeatures, AreLearntFromTheLog) {
    FollowedFeatures followed;
    for (const char* const line :
         {"FeatureSyncher::Init: Loading x...",
          "FeatureSyncher::Init: Camera::Width will be synched with ", "  Interface::InputWidth",
          "  Localdevice::InputWidth", "FeatureSyncher::Init: Camera::Gain will be synched with ",
          "other", "  Interface::Lost", "FeatureSyncher::Init: Camera::Width will be synched with ",
          "  Interface::Second"}) {
        followed.TakeLine(kMvLogInformation, line);
    }
    EXPECT_EQ(followed.FollowersOf("camera", "Width"),
              (FollowerNames{{"Interface", "InputWidth"}, {"Localdevice", "InputWidth"}}));
    EXPECT_EQ(followed.FollowersOf("Camera", "Gain"), FollowerNames());
    EXPECT_EQ(followed.FollowersOf("Camera", "width"), FollowerNames());
    followed.Clear();
    EXPECT_EQ(followed.FollowersOf("Camera", "Width"), FollowerNames());
}

TEST(FollowedFeatures, AreNotTakenFromErrors) {
    FollowedFeatures followed;
    followed.TakeLine(kMvLogError, "FeatureSyncher::Init: Camera::Width will be synched with ");
    followed.TakeLine(kMvLogInformation, "  Interface::InputWidth");
    EXPECT_EQ(followed.FollowersOf("Camera", "Width"), FollowerNames());
}

} // namespace
