"""A headless browser, driven over pipes in its own protocol: JSON texts that end in a NUL byte."""

import itertools
import json
import shutil
import subprocess
import tempfile

CHROMIUM = ("chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
            "--no-first-run", "--disable-background-networking", "--disable-component-update",
            "--disable-sync", "--remote-debugging-pipe")
KEY_CODES = {"Tab": 9, "Enter": 13, "Escape": 27, " ": 32}


class Browser:
    """One page. What its console or its security policy has to say is kept in `complaints`."""

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="qln_browser_")
        # The protocol is spoken over the descriptors 3 and 4.
        self.process = subprocess.Popen(
            ["sh", "-c", 'exec "$@" 3<&0 4>&1 </dev/null >/dev/null', "sh", *CHROMIUM,
             f"--user-data-dir={self.profile}"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.numbers = itertools.count(1)
        self.session = {}
        self.complaints = []
        self.events = set()
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = {"sessionId": self.call("Target.attachToTarget", targetId=target,
                                               flatten=True)["sessionId"]}
        for domain in "Page", "Runtime", "Log":
            self.call(domain + ".enable")

    def close(self):
        self.process.stdin.close()  # Which ends it.
        self.process.wait(timeout=60)
        self.process.stdout.close()
        shutil.rmtree(self.profile, ignore_errors=True)

    def read(self):
        text = bytearray()
        while (byte := self.process.stdout.read(1)) != b"\0":
            if not byte:
                raise RuntimeError("the browser has ended")
            text += byte
        message = json.loads(text)
        if message.get("method") in ("Runtime.exceptionThrown", "Runtime.consoleAPICalled",
                                     "Log.entryAdded"):
            self.complaints.append(message["params"])
        self.events.add(message.get("method"))
        return message

    def call(self, method, **parameters):
        number = next(self.numbers)
        message = {"id": number, "method": method, "params": parameters, **self.session}
        self.process.stdin.write(json.dumps(message).encode() + b"\0")
        self.process.stdin.flush()
        while (answer := self.read()).get("id") != number:
            pass
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']}")
        return answer["result"]

    def open(self, path, address=""):
        self.load("Page.navigate", url=path.as_uri() + address)

    def load(self, method, **parameters):
        self.events.clear()
        answer = self.call(method, **parameters)
        is_loading = method == "Page.reload" or "loaderId" in answer  # Not if the fragment alone is new.
        while is_loading and "Page.loadEventFired" not in self.events:
            self.read()

    def look(self, width=1280, height=800, media="screen", **features):
        """How the page is looked at: how large, and with which preferences."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=width < 500)
        self.call("Emulation.setEmulatedMedia", media=media, features=[
            {"name": name.replace("_", "-"), "value": value} for name, value in features.items()])

    def evaluate(self, expression):
        """The value of an expression in the page."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True,
                           awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"])
        return result["result"].get("value")

    def press(self, key):
        code = KEY_CODES.get(key) or ord(key.upper())
        text = "\r" if key == "Enter" else key if len(key) == 1 else ""
        self.call("Input.dispatchKeyEvent", type="keyDown", key=key, windowsVirtualKeyCode=code,
                  text=text)
        self.call("Input.dispatchKeyEvent", type="keyUp", key=key, windowsVirtualKeyCode=code)
