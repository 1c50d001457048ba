// undo_lists.h - what is undone when a step of starting an acquisition fails
#pragma once

#include <initializer_list>

namespace pyxen {

/// A step of undoing a start that failed.
enum class UndoStep { kEndCapture, kFlush, kRevokeAll };

using UndoList = std::initializer_list<UndoStep>;

/// Compatibility: the lists differ from mode to mode, leave steps out and do not run backwards.
/// Cameras and their drivers are in the field with exactly these.
namespace undo {

inline constexpr UndoList kContinuousWithoutSink = {UndoStep::kRevokeAll};
inline constexpr UndoList kContinuousQueueFirst = {UndoStep::kFlush, UndoStep::kRevokeAll};
inline constexpr UndoList kContinuousCaptureStart = {UndoStep::kFlush, UndoStep::kRevokeAll};
inline constexpr UndoList kContinuousQueueLast = {UndoStep::kEndCapture, UndoStep::kFlush,
                                                  UndoStep::kRevokeAll};

inline constexpr UndoList kAsynchronousQueueFirst = {UndoStep::kRevokeAll};
inline constexpr UndoList kAsynchronousCaptureStart = {UndoStep::kFlush, UndoStep::kRevokeAll};
inline constexpr UndoList kAsynchronousQueueLast = {UndoStep::kEndCapture, UndoStep::kRevokeAll};

/// AcquisitionStart in both of them.
inline constexpr UndoList kStartCommand = {UndoStep::kEndCapture, UndoStep::kFlush,
                                           UndoStep::kRevokeAll};

inline constexpr UndoList kSynchronousCaptureStart = {UndoStep::kFlush, UndoStep::kRevokeAll};
inline constexpr UndoList kSynchronousQueue = {UndoStep::kRevokeAll};
inline constexpr UndoList kSynchronousStartCommand = {UndoStep::kEndCapture};

} // namespace undo

} // namespace pyxen
