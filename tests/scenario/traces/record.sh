#!/usr/bin/env bash
# Records the traces in this directory anew, when sessions of the module have changed on purpose:
# record.sh BUILD, a build directory for Linux. kept_traces_test.cpp says what must be in them.
set -euo pipefail
bin=$(realpath "$1")/bin
cd "$(dirname "$0")"
work=$(mktemp -d)
camera=
trap '[ -z "$camera" ] || kill "$camera" 2>/dev/null || true; rm -r "$work"' EXIT
export ASAN_OPTIONS=intercept_tls_get_addr=0
: >"$work/host.ini"

# session NAME STATUS OPTIONS...: the trace NAME.trace of a session that ends with STATUS.
session() {
  local name=$1 expected=$2 status=0
  shift 2
  "$bin/mivora" --config "$work/host.ini" --trace-sdk "$name.trace" "$@" || status=$?
  [ "$status" -eq "$expected" ] || { echo "$name ended with $status"; exit 1; }
}

start_camera() {
  arv-fake-gv-camera-0.8 -i 127.0.0.1 -s kept 8>&- &
  camera=$!
  sleep 1
}

# There is one fake camera at a time on the loopback interface; the tests take turns likewise.
exec 8>>/tmp/pyxen-fake-camera.lock
flock -w 600 8
start_camera
session gige-grab 0 --sdk genicam grab --frames 5
(sleep 2; kill -9 "$camera") &
session gige-camera-lost 1 --sdk genicam grab --frames 0 --timeout 1000
wait "$camera" || true
camera=
exec 8>&-

cat >"$work/PxnC.xml" <<'XML'
<PxnC>
<camera kind="gige" id="A" extendedId="Eth0|A" model="Camera A" interface="Eth0" sensorWidth="64" sensorHeight="64">
<feature name="Height" value="48"/>
<feature name="ExposureTime" value="1000"/>
<feature name="AcquisitionFrameRate" value="50"/>
</camera>
</PxnC>
XML
echo 'frame incomplete 2,4,5' >"$work/incomplete"
session incomplete-frames 0 --sdk simulator --sdk-script "$work/incomplete" grab --frames 10
echo 'fail PxnCameraOpen 1 -6' >"$work/refused"
session refused-open 1 --sdk simulator --sdk-script "$work/refused" grab --frames 3
