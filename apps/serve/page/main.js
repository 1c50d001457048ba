// main.js - starts every part of the page

import { startAcquisition } from './acquisition.js';
import { startCameras } from './cameras.js';
import { follow } from './events.js';
import { startFeatures } from './feature_panel.js';
import { startHistogram } from './histogram.js';
import { startLiveView } from './live_view.js';
import { startLog } from './log.js';
import { startProfile } from './profile.js';
import { startRates } from './rates.js';
import { startReadout } from './readout.js';
import { startRecording } from './recording.js';
import { startScriptBox } from './script_box.js';
import { startSettings } from './settings.js';
import { startTabs } from './tabs.js';

startTabs();
startCameras();
startAcquisition();
startLiveView();
startReadout();
startHistogram();
startProfile();
startRates();
startFeatures();
startRecording();
startSettings();
startScriptBox();
startLog();
follow();
