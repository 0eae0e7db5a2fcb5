"""A browser without a window, driven by WebDriver (W3C) and, where that has no word for it, by Chromium's own
protocol. Everything that it starts ends with it."""
import base64
import json
import shutil
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # WebDriver, section 12.1
KEYS = {"Down": "\ue015", "Up": "\ue013", "End": "\ue010", "Home": "\ue011", "PageDown": "\ue00f", "Enter": "\ue007",
        "Escape": "\ue00c", "Tab": "\ue004", "Left": "\ue012", "Right": "\ue014"}


class Browser:
    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="quillbox-browser-")
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, text=True,
                                       env={"HOME": self.profile, "PATH": "/usr/bin:/bin", "TZ": "UTC", "LANG": "C.UTF-8"})
        port = None
        while port is None:
            line = self.driver.stdout.readline()
            assert line, "chromedriver has not started"
            if "started successfully on port" in line:
                port = line.strip().rstrip(".").split()[-1]
        self.root = f"http://127.0.0.1:{port}/session"
        options = {"args": ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                            "--force-device-scale-factor=1", f"--user-data-dir={self.profile}/data"]}
        capabilities = {"alwaysMatch": {"browserName": "chrome", "goog:chromeOptions": options}}
        self.session = None
        self.session = self.ask("", {"capabilities": capabilities})["sessionId"]
        self.resize(1100, 720)

    def ask(self, what, body=None, method=None):
        data = None if body is None else json.dumps(body).encode()
        place = f"{self.root}/{self.session}" if self.session else self.root
        request = urllib.request.Request(place + what, data, {"Content-Type": "application/json"},
                                         method=method or ("GET" if body is None else "POST"))
        try:
            with urllib.request.urlopen(request, timeout=120) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(f"{what}: {error.read().decode()[:600]}") from None

    def open(self, url):
        self.ask("/url", {"url": url})

    def run(self, script, *args):
        return self.ask("/execute/sync", {"script": script, "args": list(args)})

    def chromium(self, command, **params):
        return self.ask("/goog/cdp/execute", {"cmd": command, "params": params})

    def find(self, css):
        return self.ask("/element", {"using": "css selector", "value": css})[ELEMENT]

    def click(self, css):
        self.ask(f"/element/{self.find(css)}/click", {})

    def press(self, *keys):  # one after the other, wherever the focus is
        actions = []
        for key in keys:
            for character in [KEYS[key]] if key in KEYS else key:
                actions += [{"type": "keyDown", "value": character}, {"type": "keyUp", "value": character}]
        self.ask("/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})
        self.ask("/actions", method="DELETE")

    def resize(self, width, height, phone=False):
        self.chromium("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=phone)

    def scheme(self, name):
        self.chromium("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": name}])

    def picture(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.ask("/screenshot")))

    def pages(self):  # of the page in view, printed
        return base64.b64decode(self.ask("/print", {"shrinkToFit": True})).count(b"/Type /Page\n")

    def eventually(self, script, *args):
        for _ in range(100):
            if self.run(script, *args):
                return True
            time.sleep(0.1)
        return False

    def close(self):
        try:
            if self.session:
                self.ask("", method="DELETE")
        finally:
            self.driver.terminate()
            self.driver.wait(20)
            shutil.rmtree(self.profile, ignore_errors=True)
