# browser.py - `mivora serve` and a browser that looks at its page, both started and ended here
import os
import queue
import shutil
import signal
import subprocess
import tempfile
import threading
import time

from selenium import webdriver
from selenium.common.exceptions import ElementClickInterceptedException, StaleElementReferenceException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

LONGEST = 30  # seconds that anything may take


def wait(what, condition, seconds=LONGEST):
    """The first value of `condition` that counts as true."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds} s in vain: {what}")
        time.sleep(0.02)


class Server:
    """The program on the simulator, with a directory of its own."""

    def __init__(self, program, files=None, token=None):
        """`files`: names and texts of a configuration directory, whose mivora.ini is used."""
        self.directory = tempfile.mkdtemp(prefix="mivora-browser-")
        self.recordings = os.path.join(self.directory, "recordings")
        os.mkdir(self.recordings)
        self.arguments = [program, "--sdk", "simulator", "serve", "--recordings", self.recordings]
        for name, text in (files or {}).items():
            with open(os.path.join(self.directory, name), "w", encoding="utf-8") as file:
                file.write(text)
        if files:
            self.arguments += ["--config", os.path.join(self.directory, "mivora.ini")]
        if token:
            path = os.path.join(self.directory, "token")
            with open(path, "w", encoding="utf-8") as file:
                file.write(token + "\n")
            self.arguments += ["--token-file", path]
        self.address = None
        self.process = None
        self.start()

    def start(self, port=0):
        environment = {key: value for key, value in os.environ.items() if key != "PYXEN_HOME"}
        self.process = subprocess.Popen(
            self.arguments + ["--port", str(port)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env=environment)
        lines = queue.Queue()
        threading.Thread(target=lambda: lines.put(self.process.stdout.readline()), daemon=True).start()
        self.address = lines.get(timeout=LONGEST).strip()
        if not self.address.startswith("http://127.0.0.1:"):
            self.process.kill()
            raise AssertionError(f"the program printed {self.address!r}: {self.process.communicate()[1]}")

    @property
    def port(self):
        return int(self.address.split("/")[2].split(":")[1])

    def stop(self):
        """Ends the program as Ctrl-C does; its status and what it wrote to standard error."""
        self.process.send_signal(signal.SIGINT)
        try:
            _, errors = self.process.communicate(timeout=LONGEST)
        except subprocess.TimeoutExpired:
            self.process.kill()
            _, errors = self.process.communicate()
            errors += "(it had to be killed)"
        return self.process.returncode, errors

    def remove(self):
        if self.process.poll() is None:
            self.stop()
        shutil.rmtree(self.directory)


class Page:
    """Chromium without a window, with a profile of its own."""

    def __init__(self):
        self.directory = tempfile.mkdtemp(prefix="mivora-chromium-")
        self.downloads = os.path.join(self.directory, "downloads")
        os.mkdir(self.downloads)
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        arguments = [
            "--headless=new", "--disable-gpu", "--hide-scrollbars", "--window-size=1440,900", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
            f"--user-data-dir={self.directory}/profile",
        ]
        if os.geteuid() == 0:
            arguments.append("--no-sandbox")
        for argument in arguments:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        self.driver.execute_cdp_cmd("Browser.setDownloadBehavior",
                                    {"behavior": "allow", "downloadPath": self.downloads})

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.directory, ignore_errors=True)

    def size(self, width, height, mobile=False):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": mobile})

    def theme(self, name):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": name}]})

    def script(self, text, *arguments):
        return self.driver.execute_script(text, *arguments)

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.script("return document.querySelector(arguments[0])?.textContent ?? ''", selector)

    def data(self, selector, name):
        return self.script("return document.querySelector(arguments[0])?.dataset[arguments[1]]", selector, name)

    def wait_text(self, selector, wanted):
        """Waits until an element has this text, or one that contains it."""
        wait(f'{selector} shows "{wanted}"', lambda: wanted in self.text(selector))

    def click(self, selector):
        """As a user does: only what is there, enabled and not covered."""
        def clicked():
            try:
                for found in self.driver.find_elements(By.CSS_SELECTOR, selector):
                    if found.is_displayed() and found.is_enabled():
                        found.click()
                        return True
            except (ElementClickInterceptedException, StaleElementReferenceException):
                pass  # the page is just drawing it anew, or something else before it
            return False
        wait(f"{selector} can be used", clicked)

    def type(self, selector, text):
        element = self.find(selector)
        self.script("arguments[0].focus(); arguments[0].select()", element)
        element.send_keys(text)

    def console(self):
        """Messages since the last call, without those of refused requests, which the page shows itself."""
        return [entry["message"] for entry in self.driver.get_log("browser")
                if entry["level"] in ("SEVERE", "WARNING") and entry["source"] != "network"]
