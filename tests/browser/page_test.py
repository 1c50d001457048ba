# page_test.py - the page of `mivora serve` in a real browser, with the simulator
#
# page_test.py PROGRAM PICTURES [--gtest_filter=PATTERNS]: PICTURES is a directory for screenshots.
import json
import os
import sys
import unittest

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

from browser import Page, Server, wait
from suite import run

GIGE = "DEV_000F31024A10"
PROGRAM = sys.argv[1]
PICTURES = sys.argv[2]

# Texts whose contrast with what is behind them is below that of WCAG's level AA; disabled controls are exempt.
POOR_CONTRAST = """
const channels = (text) => {
  const [r, g, b, a] = text.match(/[\\d.]+/g).map(Number);
  return { r, g, b, a: a ?? 1 };
};
const luminance = ({ r, g, b }) => {
  const linear = [r, g, b].map((v) => v / 255).map((v) => v <= 0.03928 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4);
  return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
};
const behind = (element) => {
  for (let at = element; at; at = at.parentElement) {
    const colour = channels(getComputedStyle(at).backgroundColor);
    if (colour.a > 0) return colour;
  }
  return { r: 255, g: 255, b: 255 };
};
const poor = [];
let count = 0;
for (const element of document.querySelectorAll('body *')) {
  const own = [...element.childNodes].some((node) => node.nodeType === 3 && node.textContent.trim());
  const valued = element.matches('input:not([type=range]):not([type=checkbox]), select, textarea');
  if (!(own || valued) || !element.checkVisibility() || element.closest(':disabled, noscript, .unseen')) continue;
  count += 1;
  const style = getComputedStyle(element);
  const [a, b] = [luminance(channels(style.color)), luminance(behind(element))].sort((x, y) => y - x);
  const ratio = (a + 0.05) / (b + 0.05);
  const large = parseFloat(style.fontSize) >= 24;
  if (ratio < (large ? 3 : 4.5)) poor.push(`${element.tagName}.${element.className} ${ratio.toFixed(2)} "${element.textContent.trim().slice(0, 30)}"`);
}
return { poor, count };
"""

CONTROLS = {"button", "checkbox", "combobox", "link", "listbox", "radio", "searchbox", "slider", "spinbutton",
            "switch", "tab", "textbox", "tree", "treeitem", "application", "progressbar", "tabpanel"}


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server = Server(PROGRAM)
        cls.page = Page()

    @classmethod
    def tearDownClass(cls):
        cls.page.close()
        cls.server.remove()

    def setUp(self):
        self.page.size(1280, 800)
        self.page.theme("dark")
        self.page.driver.get(self.server.address)
        self.page.wait_text("#link", "connected")
        self.page.console()

    def on_failure(self):
        self.picture(self.id().rsplit(".", 1)[1])

    def tearDown(self):
        # A camera keeps its values from one opening to the next.
        self.api("POST", "/api/camera/stop")
        self.api("POST", "/api/features/Camera/UserSetLoad/execute")
        self.api("POST", "/api/camera/close")
        self.assertEqual(self.page.console(), [])

    # ---- what tests are made of ----

    def api(self, method, path, value=None):
        """A request of the page's own origin; its JSON."""
        return self.page.driver.execute_async_script("""
            const [method, path, value, done] = arguments;
            const body = method === 'GET' ? {} : { body: JSON.stringify(value ?? {}), headers: { 'Content-Type': 'application/json' } };
            fetch(path, { method, ...body }).then((answer) => answer.json()).then(done, (error) => done({ error: String(error) }));
        """, method, path, value)

    def picture(self, name):
        self.page.driver.save_screenshot(os.path.join(PICTURES, f"{name}.png"))

    def open(self, name="G-130"):
        self.page.click(f'.cameras button[aria-label^="Open {name}"]')
        self.page.wait_text("#camera-state", "open")
        self.page.wait_text("#feature-count", "features")
        self.send_frames(20)  # drawing without a graphics card takes most of the time

    def send_frames(self, rate):
        self.api("PUT", "/api/features/Camera/AcquisitionFrameRate", {"value": float(rate)})

    def start(self):
        self.page.click("#start")
        self.page.wait_text("#camera-state", "live")
        wait("a frame is shown", self.frame)

    def snap(self):
        before = self.frame()
        self.page.click("#snap")
        wait("the image", lambda: self.frame() > before)

    def stop(self):
        self.page.click("#start")
        self.page.wait_text("#camera-state", "open")

    def frame(self):
        """Number of the frame that is drawn; 0 without one."""
        return int(self.page.data("#live", "frame") or 0)

    def select(self, key):
        """Looks a feature up as a user does."""
        name = key.split("/")[1]
        self.page.type("#feature-search", name)
        self.page.click(f'[data-path="{key}"]')
        self.page.wait_text("#feature-title", name)

    def give(self, text):
        self.page.type("#feature-value", text)
        self.page.click("#feature-apply")

    def point(self, x, y):
        """Moves the mouse to a pixel of the image, when that is shown whole."""
        left, top, scale = self.page.script("""
            const canvas = document.getElementById('live');
            const [width, height] = canvas.dataset.size.split('x').map(Number);
            const scale = Math.min(canvas.clientWidth / width, canvas.clientHeight / height);
            return [(canvas.clientWidth - width * scale) / 2 - canvas.clientWidth / 2,
                    (canvas.clientHeight - height * scale) / 2 - canvas.clientHeight / 2, scale];
        """)
        ActionChains(self.page.driver, duration=0).move_to_element_with_offset(
            self.page.find("#live"), round(left + (x + 0.5) * scale), round(top + (y + 0.5) * scale)).perform()

    def drawn(self, x, y, count):
        """Red, green and blue of so many pixels of the screen in a row, from the middle of the live image."""
        return self.page.script("""
            const [x, y, count] = arguments;
            const canvas = document.getElementById('live');
            const context = new OffscreenCanvas(count, 1).getContext('2d', { willReadFrequently: true });
            context.drawImage(canvas, -(Math.floor(canvas.width / 2) + x), -(Math.floor(canvas.height / 2) + y));
            const data = context.getImageData(0, 0, count, 1).data;
            return Array.from({ length: count }, (_, index) => [...data.slice(4 * index, 4 * index + 3)]);
        """, x, y, count)

    def read_pixel(self):
        """Column, line and value that the page shows."""
        words = wait("the value of a pixel", lambda: (
            lambda shown: shown if "value" in shown else None)(self.page.text("#pixel"))).split()
        return int(words[1]), int(words[3]), int(words[5])

    def script_box(self, lines):
        self.page.click("#tab-simulator")
        self.page.type("#script", lines)
        self.page.click("#script-run")
        self.page.wait_text("#script-result", "Done")

    # ---- cameras and images ----

    def test_cameras_are_listed_and_opened(self):
        for place, name in enumerate(("G-130", "U-510c", "L-400"), 1):
            self.page.wait_text(f".cameras li:nth-child({place}) strong", name)
        self.open("L-400")
        self.assertEqual(self.page.text("#camera-name"), "L-400")
        self.page.click('.cameras button[aria-label^="Close L-400"]')
        self.page.wait_text("#camera-state", "closed")
        self.assertEqual(self.page.text("#camera-name"), "No camera")

    def test_frames_change(self):
        self.open()
        self.start()
        draw = "return document.getElementById('live').toDataURL()"
        first, before = self.frame(), self.page.script(draw)
        wait("ten frames more", lambda: self.frame() >= first + 10)
        self.assertNotEqual(before, self.page.script(draw))
        self.assertEqual(self.page.data("#live", "size"), "640x480")
        wait("the rate", lambda: self.page.text("#reading-rate") not in ("–", "0.0"))
        self.stop()
        self.assertIn("Start", self.page.text("#start"))

    def test_pixel_under_the_pointer(self):
        self.open()
        self.snap()  # the first frame of an acquisition: the picture has not moved yet
        for x, y in ((10, 20), (320, 240), (600, 470)):
            self.point(x, y)
            wait("the value of another pixel", lambda: abs(self.read_pixel()[0] - x) <= 1)
            column, line, value = self.read_pixel()
            self.assertLessEqual(abs(line - y), 1)
            self.assertEqual(value, (column + line) % 256)

    def test_pixels_of_twelve_bits(self):
        self.open()
        self.select("Camera/PixelFormat")
        self.page.find("#feature-value").send_keys("Mono12", Keys.ENTER)
        self.page.wait_text('[data-path="Camera/PixelFormat"] .value', "Mono12")
        self.snap()
        self.page.wait_text("#live-size", "Mono12")
        self.point(100, 101)
        column, line, value = self.read_pixel()
        self.assertEqual(value, (column + line) % 256 * 257 >> 4)
        self.page.wait_text("#pixel", "of 4095")
        self.page.wait_text("#histogram-note", "0 to 4095")

    def test_exact_pixels(self):
        self.open()
        self.start()
        self.page.click("#one-to-one")
        self.page.wait_text("#zoom", "100 %")
        before = self.frame()
        wait("a frame without loss", lambda: self.frame() > before)
        # From one column to the next the value is one more: everywhere only without loss.
        row = [pixel[0] for pixel in self.drawn(-300, 0, 600)]
        self.assertEqual([b for a, b in zip(row, row[1:]) if b != (a + 1) % 256], [])

    def test_crosshair_by_keyboard(self):
        self.open()
        self.snap()
        self.page.script("document.getElementById('live').focus()")
        keys = ActionChains(self.page.driver)
        keys.key_down(Keys.SHIFT).send_keys(Keys.ARROW_RIGHT * 3 + Keys.ARROW_DOWN * 2).key_up(Keys.SHIFT)
        keys.send_keys(Keys.ARROW_RIGHT * 4 + Keys.ARROW_DOWN).perform()
        # From the middle of what is seen.
        wait("the pixel", lambda: self.read_pixel() == (354, 261, (354 + 261) % 256))
        self.assertEqual(self.page.find("#crosshair").get_attribute("aria-pressed"), "true")
        zoom = self.page.text("#zoom")
        self.page.find("#live").send_keys("+")
        wait("the zoom", lambda: self.page.text("#zoom") != zoom)
        self.page.find("#live").send_keys("0")
        wait("the whole image", lambda: self.page.text("#zoom") == zoom)

    def test_zoom_and_pan_by_the_mouse(self):
        self.open()
        self.snap()
        self.point(200, 100)
        column, line, _ = self.read_pixel()
        before = self.page.text("#zoom")
        self.page.script("""
            const canvas = document.getElementById('live');
            const [x, y] = arguments;
            const box = canvas.getBoundingClientRect();
            const scale = Math.min(box.width / 640, box.height / 480);
            canvas.dispatchEvent(new WheelEvent('wheel', { deltaY: -600, cancelable: true,
              clientX: box.left + (box.width - 640 * scale) / 2 + (x + 0.5) * scale,
              clientY: box.top + (box.height - 480 * scale) / 2 + (y + 0.5) * scale }));
        """, column, line)
        wait("the zoom", lambda: self.page.text("#zoom") != before)
        mouse = ActionChains(self.page.driver, duration=0)
        mouse.move_by_offset(0, 1).perform()
        self.assertLessEqual(abs(self.read_pixel()[0] - column), 1)  # the pixel has stayed under the pointer
        mouse.click_and_hold().move_by_offset(90, 60).release().move_by_offset(-90, -60).perform()
        wait("the image has moved", lambda: self.read_pixel()[0] < column - 10)
        self.assertLess(self.read_pixel()[1], line)
        self.page.click("#fit")
        self.page.wait_text("#zoom", before)

    def test_saturation_is_marked(self):
        self.open()
        self.api("PUT", "/api/features/Camera/TestPattern", {"value": "White"})
        self.snap()
        self.page.wait_text("#histogram-note", "307200 saturated (100.00 %)")
        wait("the white image", lambda: self.drawn(0, 0, 1) == [[255, 255, 255]])
        self.page.click("#saturation")
        wait("its marks", lambda: self.drawn(0, 0, 1) == [[255, 32, 64]])

    def test_profile_and_histogram(self):
        self.open()
        self.start()
        self.page.wait_text("#profile-note", "640 pixels · 0 to 255")
        self.page.type("#profile-x2", "99" + Keys.TAB)
        self.page.wait_text("#profile-note", "100 pixels")
        self.stop()
        self.snap()  # a picture that has not moved
        saturated = sum((x + y) % 256 == 255 for x in range(640) for y in range(480))
        self.page.wait_text("#histogram-note", f"{saturated} saturated")

    # ---- features ----

    def test_width_by_the_editor(self):
        self.open()
        self.select("Camera/Width")
        self.give("320")
        self.page.wait_text('[data-path="Camera/Width"] .value', "320 px")
        self.start()
        wait("the image's size", lambda: self.page.data("#live", "size") == "320x480")
        self.page.wait_text("#profile-note", "320 pixels")
        self.page.wait_text("#live-size", "320 × 480 Mono8")
        # The camera locks it while it runs, and says so at once; writing it stops the camera for a moment.
        self.page.wait_text("#feature-facts", "read only at present")
        self.page.wait_text("#feature-detail .hint", "Locked while images come")
        self.give("160")
        wait("the image's size", lambda: self.page.data("#live", "size") == "160x480")
        before = self.frame()
        wait("frames of that size", lambda: self.frame() > before + 3)
        self.assertEqual(self.page.text("#camera-state"), "live")

    def test_bad_values_are_refused_with_the_reason(self):
        self.open()
        self.select("Camera/Width")
        self.give("641")
        self.page.wait_text("#feature-refusal", "Camera/Width takes 16 to 1280 in steps of 4, not 641")
        self.assertEqual(self.page.find("#feature-value").get_attribute("aria-invalid"), "true")
        self.give("wide")
        self.page.wait_text("#feature-refusal", '"wide" is no whole number')
        self.page.click("#feature-revert")
        self.assertEqual(self.page.text("#feature-refusal"), "")
        self.assertEqual(self.page.find("#feature-value").get_attribute("value"), "640")

    def test_integers_of_64_bits_stay_exact(self):
        exact = self.page.driver.execute_async_script("""
            const done = arguments[0];
            Promise.all([import('/page/api.js'), import('/page/feature_text.js')]).then(([api, text]) => done([
              String(api.parse('{"max":9223372036854775807}').max),
              text.typedJson({ type: 'integer' }, '-9223372036854775807'),
              text.typedJson({ type: 'integer' }, '0xFFFFFFFFFFFFFFFF'),
              text.typedJson({ type: 'integer' }, '192.168.0.10'),
              text.valueText({ type: 'integer', representation: 'IPV4Address', value: 3232235530 }),
              text.valueText({ type: 'integer', representation: 'HexNumber', value: -1 }),
            ]), (error) => done(String(error)));
        """)
        self.assertEqual(exact, ["9223372036854775807", "-9223372036854775807", "-1", "3232235530",
                                 "192.168.0.10", "0xFFFFFFFFFFFFFFFF"])

    def test_every_kind_of_editor(self):
        self.open()
        self.select("Camera/PixelFormat")
        self.page.find("#feature-value").send_keys("Mono10")
        self.page.click("#feature-apply")
        self.page.wait_text('[data-path="Camera/PixelFormat"] .value', "Mono10")
        self.select("Camera/ReverseX")
        self.page.click("#feature-value")
        self.page.wait_text('[data-path="Camera/ReverseX"] .value', "On")
        self.page.click("#feature-value")
        self.page.wait_text('[data-path="Camera/ReverseX"] .value', "Off")
        self.select("Camera/ExposureTime")
        self.give("2500.5")
        self.page.wait_text('[data-path="Camera/ExposureTime"] .value', "2500.5")
        self.select("Camera/DeviceUserID")
        self.give("left of the door")
        self.page.wait_text('[data-path="Camera/DeviceUserID"] .value', "left of the door")
        self.select("Camera/TimestampLatch")
        self.page.click("#feature-execute")
        wait("the command", lambda: not self.page.script("return document.querySelector('.busy')"))
        self.assertEqual(self.page.text("#feature-refusal"), "")

    def test_slider_by_keyboard(self):
        self.open()
        self.select("Camera/Height")
        slider = self.page.find('#feature-detail input[type="range"]')
        slider.send_keys(Keys.ARROW_LEFT)
        step = int(self.api("GET", "/api/features/Camera/Height")["increment"])
        self.page.wait_text('[data-path="Camera/Height"] .value', f"{480 - step} px")
        slider.send_keys(Keys.ARROW_RIGHT)
        self.page.wait_text('[data-path="Camera/Height"] .value', "480 px")
        # Over six powers of ten a step is a part of the value.
        self.select("Camera/ExposureTime")
        slider = self.page.find('#feature-detail input[type="range"]')
        slider.send_keys(Keys.ARROW_RIGHT)
        wait("the exposure", lambda: 5000 < self.api("GET", "/api/features/Camera/ExposureTime")["value"] < 5200)
        wait("its name", lambda: slider.get_attribute("aria-valuetext").endswith(" µs"))
        slider.send_keys(Keys.HOME)
        self.page.wait_text('[data-path="Camera/ExposureTime"] .value', "10 µs")

    def test_tree_by_keyboard(self):
        self.open()
        tree = self.page.find("#tree")
        tree.send_keys(Keys.HOME + Keys.ARROW_RIGHT)
        active = "document.getElementById(document.getElementById('tree').getAttribute('aria-activedescendant'))"
        wait("the module is open", lambda: self.page.script(f"return {active}.getAttribute('aria-expanded')") == "true")
        tree.send_keys(Keys.ARROW_DOWN + Keys.ARROW_RIGHT + Keys.ARROW_DOWN)
        name = self.page.script(f"return {active}.querySelector('.label').textContent")
        self.page.wait_text("#feature-title", name)
        tree.send_keys(Keys.ARROW_LEFT + Keys.ARROW_LEFT)
        wait("the category is closed", lambda: self.page.script(f"return {active}.getAttribute('aria-expanded')") == "false")

    def test_changes_of_the_camera_appear(self):
        self.open()
        self.select("Camera/Gain")
        self.script_box(f"set {GIGE} Gain 3.5")
        self.page.click("#tab-features")
        self.page.wait_text('[data-path="Camera/Gain"] .value', "3.5")
        wait("the editor", lambda: self.page.find("#feature-value").get_attribute("value") == "3.5")

    def test_followers_are_shown(self):
        followed = {"ModuleName": "Camera", "FeatureName": "Width",
                    "Dependencies": [{"ModuleName": "Localdevice", "FeatureName": "InputWidth"}]}
        other = Server(PROGRAM, {
            "mivora.ini": "[TLSpecificConfig_0]\nTLType=CL\nFeatureSyncFile=board.sync\n",
            "board.sync": json.dumps({"SyncFeatures": [followed]})})
        try:
            self.page.driver.get(other.address)
            self.open("L-400")
            self.select("Camera/Width")
            self.page.wait_text(".follows", "Followed by Localdevice/InputWidth.")
            self.page.type("#feature-value", "512")
            self.page.wait_text(".follows", "Localdevice/InputWidth640512")
            self.page.type("#feature-value", "99999")
            self.page.wait_text(".follows", "not 99999")
            self.give("512")
            self.page.wait_text('[data-path="Camera/Width"] .value', "512 px")
            self.select("Localdevice/InputWidth")
            self.page.wait_text('[data-path="Localdevice/InputWidth"] .value', "512")
        finally:
            self.page.driver.get(self.server.address)
            other.remove()

    # ---- unplugging, recording, settings ----

    def test_unplugged_and_replugged(self):
        self.open()
        self.start()
        self.script_box(f"unplug {GIGE}")
        self.page.wait_text("#camera-state", "unplugged")
        self.page.wait_text("#stage-note", "unplugged")
        self.script_box(f"plug {GIGE}")
        self.page.wait_text("#camera-state", "live")
        before = self.frame()
        wait("frames again", lambda: self.frame() > before)
        self.assertEqual(self.page.text("#stage-note"), "")

    def test_recording_and_download(self):
        self.open()
        self.send_frames(50)
        self.start()
        self.page.click("#record")
        self.page.type("#recording-name", "run-1")
        self.page.type("#recording-frames", "100")
        self.page.click("#recording-start")
        self.page.wait_text("#recording-text", "100 of 100 frames written, 0 lost. Done.")
        self.page.click('[data-recording="run-1"] summary')
        for name in ("recording.json", "frame-000100.png"):
            link = self.page.find(f'[data-recording="run-1"] a[download="{name}"]')
            self.page.script("arguments[0].scrollIntoView({ block: 'center' })", link)
            link.click()
            path = os.path.join(self.page.downloads, name)
            wait(f"{name} is downloaded", lambda: os.path.exists(path))
            with open(path, "rb") as file, open(os.path.join(self.server.recordings, "run-1", name), "rb") as kept:
                self.assertEqual(file.read(), kept.read())
        with open(os.path.join(self.page.downloads, "recording.json"), encoding="utf-8") as file:
            recording = json.load(file)
        self.assertEqual(recording["frames"], {"wanted": 100, "recorded": 100, "missing": 0})
        self.assertTrue(recording["complete"])

    def test_settings(self):
        self.open()
        self.page.click("#tab-settings")
        self.page.click("#settings-save")
        path = os.path.join(self.page.downloads, "G-130-settings.json")
        wait("the settings are saved", lambda: os.path.exists(path))
        self.api("PUT", "/api/features/Camera/ExposureTime", {"value": 1234.0})
        self.page.find("#settings-file").send_keys(path)
        self.page.click("#settings-compare")
        self.page.wait_text("#settings-result", "Camera/ExposureTime")
        self.page.click("#settings-load")
        self.page.wait_text("#settings-result", "0 refused")
        self.page.click("#settings-compare")
        self.page.wait_text("#settings-result", "The camera has all settings as the file has them.")

    def test_log(self):
        self.open()
        self.page.click("#tab-log")
        self.page.wait_text("#log", "CMivoraKVNPyxenClass::OpenActCamera")
        wait("the newest line", lambda: self.page.script(
            "const log = document.getElementById('log'); return log.scrollHeight - log.scrollTop - log.clientHeight < 2"))
        self.page.type("#log-filter", "no line has this")
        wait("the filter", lambda: self.page.text("#log") == "")
        self.page.type("#log-filter", Keys.DELETE)
        self.page.wait_text("#log", "OpenActCamera")
        self.page.click("#log-clear")
        wait("an empty log", lambda: self.page.text("#log") == "")

    def test_snapped_image_is_saved(self):
        self.open()
        self.page.click("#save-tiff")
        wait("the image is saved", lambda: [n for n in os.listdir(self.page.downloads) if n.endswith(".tiff")])

    # ---- for everybody ----

    def test_controls_have_names(self):
        self.open()
        self.start()
        self.select("Camera/Width")
        nameless = []
        count = 0
        for tab in ("features", "recording", "settings", "simulator", "log"):
            self.page.click(f"#tab-{tab}")
            nodes = self.page.driver.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
            for node in nodes:
                if node.get("ignored") or node["role"]["value"] not in CONTROLS:
                    continue
                count += 1
                if not node.get("name", {}).get("value"):
                    nameless.append((tab, node["role"]["value"]))
        self.assertEqual(nameless, [])
        self.assertGreater(count, 100)

    def test_contrast(self):
        self.open()
        self.start()
        self.select("Camera/Width")
        for theme in ("dark", "light"):
            self.page.theme(theme)
            for tab in ("features", "recording", "settings", "simulator", "log"):
                self.page.click(f"#tab-{tab}")
                found = self.page.script(POOR_CONTRAST)
                self.assertEqual(found["poor"], [], (theme, tab))
                self.assertGreater(found["count"], 40)
            self.picture(theme)

    def test_phone(self):
        self.open()
        self.start()
        self.page.size(360, 740, mobile=True)
        for tab in ("features", "recording", "settings", "simulator", "log"):
            self.page.click(f"#tab-{tab}")
            self.assertEqual(self.page.script("return document.documentElement.scrollWidth"), 360, tab)
        cut = self.page.script("""
            return [...document.querySelectorAll('button, input, select')].filter((element) => element.checkVisibility())
              .filter((element) => element.getBoundingClientRect().right > 360.5).map((element) => element.id);
        """)
        self.assertEqual(cut, [])
        self.picture("phone")

    def test_usual_widths(self):
        self.open()
        for width in (1024, 1280, 1366, 1920):
            self.page.size(width, 800)
            lines = self.page.script("""
                return ['.bar button', '.view-tools button', '.tabs button'].map((selector) => new Set(
                  [...document.querySelectorAll(selector)].map((button) => Math.round(button.getBoundingClientRect().top))).size);
            """)
            self.assertEqual(lines, [1, 1, 1], width)
            self.assertEqual(self.page.script("return document.documentElement.scrollWidth"), width)

    def test_no_request_elsewhere(self):
        self.page.driver.get_log("performance")
        self.page.driver.get(self.server.address)
        self.open()
        self.start()
        messages = [json.loads(entry["message"])["message"] for entry in self.page.driver.get_log("performance")]
        asked = {message["params"]["request"]["url"] for message in messages
                 if message["method"] == "Network.requestWillBeSent"}
        elsewhere = [url for url in asked if not url.startswith((self.server.address, "blob:" + self.server.address))]
        self.assertEqual(elsewhere, [])
        self.assertGreater(len(asked), 10)

    def test_token(self):
        token = "a-token-of-many-letters"
        other = Server(PROGRAM, token=token)
        try:
            self.page.driver.get(f"http://127.0.0.1:{other.port}/")
            self.assertIn("the token is missing or wrong", self.page.text("body"))
            self.assertEqual(other.address, f"http://127.0.0.1:{other.port}/?token={token}")
            self.page.driver.get(other.address)
            self.page.wait_text("#link", "connected")
            self.assertNotIn("token", self.page.driver.current_url)
            self.open()
            self.start()
            self.assertNotIn(token, self.page.script("return document.cookie"))
        finally:
            self.page.driver.get(self.server.address)
            other.remove()

    def test_server_lost_and_back(self):
        other = Server(PROGRAM)
        try:
            self.page.driver.get(other.address)
            self.page.wait_text("#link", "connected")
            self.open()
            self.assertEqual(other.stop(), (0, ""))
            self.page.wait_text("#link", "connection lost")
            self.page.wait_text("#stage-note", "cannot be reached")
            other.start(other.port)
            self.page.wait_text("#link", "connected")
            self.page.wait_text("#camera-state", "closed")
            self.open()
        finally:
            other.remove()
            self.page.driver.get(self.server.address)


if __name__ == "__main__":
    os.makedirs(PICTURES, exist_ok=True)
    run(PageTest, sys.argv[3:])
