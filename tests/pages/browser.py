"""A headless browser, driven over WebDriver, with the standard library alone."""

import base64
import json
import re
import shutil
import subprocess
import tempfile
import time
import urllib.request

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync"]


def is_there():
    return bool(shutil.which("chromium") and shutil.which("chromedriver"))


class Browser:
    def __init__(self, width=1400, height=1000):
        self.profile = tempfile.TemporaryDirectory()
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, text=True)
        self.url = None
        for line in self.driver.stdout:
            port = re.search(r"started successfully on port (\d+)", line)
            if port:
                self.url = f"http://127.0.0.1:{port[1]}/session"
                break
        options = {"args": FLAGS + [f"--user-data-dir={self.profile.name}",
                                    f"--window-size={width},{height}"]}
        wanted = {"browserName": "chrome", "goog:chromeOptions": options,
                  "goog:loggingPrefs": {"performance": "ALL", "browser": "ALL"}}
        session = self.call("POST", "", {"capabilities": {"alwaysMatch": wanted}})
        self.url += "/" + session["sessionId"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.call("DELETE", "")
        finally:
            self.driver.terminate()
            self.driver.wait()
            self.driver.stdout.close()
            self.profile.cleanup()

    def call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.url + path, data, method=method,
                                         headers={"Content-Type": "application/json"})
        with urllib.request.urlopen(request, timeout=60) as answer:
            return json.load(answer)["value"]

    def open(self, page):
        """Opens the file and waits until its traces are drawn. Returns the seconds it took."""
        began = time.monotonic()
        self.call("POST", "/url", {"url": f"file://{page}"})
        while self.run("return document.body.dataset.state") != "drawn":
            if time.monotonic() > began + 30:
                raise TimeoutError(f"{page} is not drawn: {self.log('browser')}")
            time.sleep(0.02)
        return time.monotonic() - began

    def run(self, script, *arguments):
        return self.call("POST", "/execute/sync", {"script": script, "args": arguments})

    def log(self, kind):
        return [entry["message"] for entry in self.call("POST", "/se/log", {"type": kind})]

    def requests(self):
        """The addresses that the browser asked for since the last call."""
        events = [json.loads(message)["message"] for message in self.log("performance")]
        return [event["params"]["request"]["url"] for event in events
                if event["method"] == "Network.requestWillBeSent"]

    def drag(self, selector, begin, end):
        """Drags from one to the other part (0 to 1) of the width of an element."""
        x, y, width, height = self.run(
            "const e = document.querySelector(arguments[0]); e.scrollIntoView({block: 'center'});"
            "const r = e.getBoundingClientRect(); return [r.x, r.y, r.width, r.height]", selector)
        moves = [{"type": "pointerMove", "duration": 0, "x": round(x + part * width),
                  "y": round(y + height / 2)} for part in (begin, (begin + end) / 2, end)]
        actions = [moves[0], {"type": "pointerDown", "button": 0}, *moves[1:],
                   {"type": "pointerUp", "button": 0}]
        self.call("POST", "/actions", {"actions": [{"type": "pointer", "id": "mouse",
                                                    "actions": actions}]})

    def screenshot(self):
        return base64.b64decode(self.call("GET", "/screenshot"))

    def pdf(self):
        return base64.b64decode(self.call("POST", "/print", {"background": True}))
