# readme_pictures.py - makes the pictures of the page that README.md and docs/live-page.md show
#
# readme_pictures.py PROGRAM DIRECTORY: a build that is optimised, and docs/images.
import os
import sys
import time

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

from browser import Page, Server, wait

WIDTH, HEIGHT = 1400, 860
PLOTTED = 25  # seconds, for plots that show something


def open_camera(page, name):
    page.wait_text("#link", "connected")
    page.click(f'.cameras button[aria-label^="Open {name}"]')
    page.wait_text("#feature-count", "features")


def start(page):
    page.click("#start")
    wait("a frame", lambda: page.data("#live", "frame"))


def select(page, key):
    page.type("#feature-search", "")
    page.click('[data-path="/Camera/%s"]' % key[0])
    page.click('[data-path="Camera/%s"]' % key[1])


def write(page, name, value):
    page.driver.execute_async_script("""
        const [name, value, done] = arguments;
        fetch(`/api/features/Camera/${name}`, { method: 'PUT', body: JSON.stringify({ value }),
          headers: { 'Content-Type': 'application/json' } }).then(done, done);
    """, name, value)


def main(program, directory):
    server = Server(program)
    page = Page()
    try:
        page.size(WIDTH, HEIGHT)
        page.theme("dark")
        page.driver.get(server.address)
        open_camera(page, "U-510c")
        for name, value in (("Width", 960), ("Height", 720), ("TestPattern", "ColorBar")):
            write(page, name, value)
        start(page)
        select(page, ("AcquisitionControl", "ExposureTime"))
        page.script("document.getElementById('live').focus()")
        keys = ActionChains(page.driver).key_down(Keys.SHIFT)
        keys.send_keys(Keys.ARROW_LEFT * 12 + Keys.ARROW_UP * 9).key_up(Keys.SHIFT).perform()
        time.sleep(PLOTTED)
        page.driver.save_screenshot(os.path.join(directory, "serve-dark.png"))

        page.theme("light")
        page.click('.cameras button[aria-label^="Open G-130"]')
        page.wait_text("#camera-name", "G-130")
        page.wait_text("#camera-state", "open")
        page.wait_text("#feature-count", "features")
        write(page, "TestPattern", "ResolutionChart")
        start(page)
        page.click("#record")
        page.type("#recording-name", "first-light")
        page.type("#recording-frames", "400")
        page.click("#crosshair")
        page.click("#profile-line")
        time.sleep(PLOTTED)
        page.click("#recording-start")
        wait("half of the recording", lambda: page.script(
            "return document.getElementById('recording-bar').value") >= 200)
        page.driver.save_screenshot(os.path.join(directory, "serve-light.png"))
    finally:
        page.close()
        server.remove()


if __name__ == "__main__":
    main(*sys.argv[1:])
