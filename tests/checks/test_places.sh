#!/usr/bin/env bash
# A test stands where its source does: tests/x/y_test.cpp, y_posix_test.cpp or y_windows_test.cpp
# tests x/y.cpp, a source of that name in x/posix or x/win32, or a header. Tests of more than one
# source, and tests of one source that fill several files, are listed here.
set -euo pipefail
cd "$1"

whole='
tests/apps/common/every_format_test.cpp
tests/apps/serve/serve_features_test.cpp
tests/apps/view/windows/viewer_menu_test.cpp
tests/apps/view/windows/viewer_program_test.cpp
tests/host/ini_file_processes_test.cpp
tests/host/out_of_memory_posix_test.cpp
tests/host/power_loss_posix_test.cpp
tests/host/slots_test.cpp
tests/module/acquisition/acquisition_events_test.cpp
tests/module/acquisition/acquisition_threads_test.cpp
tests/module/acquisition/callback_allocations_posix_test.cpp
tests/module/acquisition/calls_from_inside_test.cpp
tests/module/acquisition/conversion_threads_test.cpp
tests/module/acquisition/failure_sweep_test.cpp
tests/module/acquisition/frame_information_test.cpp
tests/module/acquisition/memory_of_frames_test.cpp
tests/module/acquisition/memory_on_simulator_test.cpp
tests/module/acquisition/out_of_memory_posix_test.cpp
tests/module/acquisition/snap_asynchronous_test.cpp
tests/module/acquisition/snap_checks_test.cpp
tests/module/acquisition/snap_continuous_test.cpp
tests/module/acquisition/snap_order_test.cpp
tests/module/acquisition/snap_synchronous_test.cpp
tests/module/acquisition/stop_on_simulator_test.cpp
tests/module/grabber/base_calls_posix_test.cpp
tests/module/grabber/hostile_sdk_test.cpp
tests/module/grabber/initialisation_on_simulator_test.cpp
tests/module/grabber/out_of_memory_posix_test.cpp
tests/module/grabber/parameters_alone_test.cpp
tests/module/grabber/slots_out_of_memory_posix_test.cpp
tests/module/grabber/time_base_test.cpp
tests/module/imaging/touched_buffers_posix_test.cpp
tests/module/imaging/yuv_exactness_test.cpp
tests/module/sdk/out_of_memory_posix_test.cpp
tests/module/serial/channel_config_test.cpp
tests/module/serial/port_list_test.cpp
tests/module/serial/serial_soak_test.cpp
tests/module/serial/serial_threads_test.cpp
tests/module/serial/serial_transfer_test.cpp
tests/module/services/out_of_memory_posix_test.cpp
tests/module/services/services_on_simulator_test.cpp
tests/module/services/services_threads_test.cpp
tests/module/sync/sync_grammar_test.cpp
tests/module/ui/dialog_state_test.cpp
tests/module/ui/invalidation_test.cpp
tests/module/ui/out_of_memory_posix_test.cpp
tests/platform/failing_calls_posix_test.cpp
tests/platform/out_of_memory_posix_test.cpp
tests/pxnc/conformance/genicam_conformance_test.cpp
tests/pxnc/conformance/recording_conformance_test.cpp
tests/pxnc/conformance/scripted_conformance_test.cpp
tests/pxnc/conformance/simulator_conformance_test.cpp
tests/pxnc/genicam/growth_test.cpp
tests/pxnc/conformance/traced_conformance_test.cpp
tests/pxnc/genicam/packet_test.cpp
tests/pxnc/include/record_layout_test.cpp
tests/pxnc/simulator/clock_test.cpp
'

status=0
while read -r test; do
  source=${test#tests/}
  directory=$(dirname "$source")
  [[ $test != tests/support/* ]] || directory=tests/support
  name=$(basename "$source" _test.cpp)
  name=${name%_posix}
  name=${name%_windows}
  grep -qxF "$test" <<<"$whole" && continue
  for candidate in "$directory"/{,support/,posix/,win32/,windows/}"$name".{cpp,h} \
    "${directory%/src}"/{win32/,posix/,include/,include/mivora/}"$name".{cpp,h}; do
    [ ! -e "$candidate" ] || continue 2
  done
  echo "$test has no source $directory/$name"
  status=1
done < <(git ls-files -co --exclude-standard 'tests/host/*_test.cpp' 'tests/platform/*_test.cpp' \
  'tests/afx/*_test.cpp' 'tests/apps/*_test.cpp' 'tests/bench/*_test.cpp' 'tests/module/*_test.cpp' \
  'tests/pxnc/*_test.cpp' 'tests/support/*_test.cpp')
for test in $whole; do
  [ -e "$test" ] || { echo "$test is listed in $0 and is not there"; status=1; }
done
exit "$status"
