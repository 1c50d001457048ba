// recording_facts.h - describes what a session's camera is about to record
#pragma once

#include "apps/recording/recording_description.h"

class Session;

/// What can be read of the open camera's identity.
RecordedCamera DescribeCamera(Session& session);

/// What can be read from the open camera and its module; the rest stays empty.
RecordingDescription DescribeRecording(Session& session);
