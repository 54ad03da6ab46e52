"""Chromium without a window, driven over its debugging pipe."""
import base64
import json
import os
import pathlib
import subprocess
import tempfile
import time
import typing

COMPLAINTS = ("Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded")
CONTROL, SHIFT = 2, 8  # modifiers of keys
VIRTUAL_KEYS = {"Tab": 9, "Enter": 13}  # that elements of the page wait for


class Browser:
    """One page. Calls wait for their answer; a browser that ends, which it does after ten minutes, is an error."""

    def __init__(self, *flags: str) -> None:
        self._folder = tempfile.TemporaryDirectory()
        self.downloads = pathlib.Path(self._folder.name, "downloads")
        self._events: list[dict] = []
        self._rest = b""
        self._count = 0
        self.pressed = 0  # keys
        self._session = None
        commands, self._commands = os.pipe()
        self._answers, answers = os.pipe()
        command = ["timeout", "600", "chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                   "--remote-debugging-pipe", f"--user-data-dir={self._folder.name}/profile", *flags]
        # Its descriptors 3 and 4, whichever those are here.
        script = f'exec 3<&{commands} 4>&{answers}; exec "$@"'
        self._process = subprocess.Popen(["bash", "-c", script, "-", *command], pass_fds=(commands, answers),
                                         stderr=subprocess.DEVNULL)
        os.close(commands)
        os.close(answers)
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log"):
            self.call(domain + ".enable")
        self.call("Browser.setDownloadBehavior", behavior="allow", downloadPath=str(self.downloads), eventsEnabled=True)

    def __enter__(self) -> "Browser":
        return self

    def __exit__(self, *_: object) -> None:
        self._process.terminate()
        self._process.wait()
        os.close(self._commands)
        os.close(self._answers)
        self._folder.cleanup()

    def call(self, method: str, **params: object) -> dict:
        self._count += 1
        message = {"id": self._count, "method": method, "params": params}
        if self._session is not None and not method.startswith("Browser."):
            message["sessionId"] = self._session
        os.write(self._commands, json.dumps(message).encode() + b"\0")
        while (answer := self._read()).get("id") != self._count:
            self._events.append(answer)
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']}")
        return answer["result"]

    def _read(self) -> dict:
        while b"\0" not in self._rest:
            part = os.read(self._answers, 1 << 16)
            if not part:
                raise RuntimeError("the browser has ended")
            self._rest += part
        message, self._rest = self._rest.split(b"\0", 1)
        return json.loads(message)

    def wait(self, event: str, **wanted: object) -> dict:
        """The first such event that was not waited for yet."""
        while True:
            for each in self._events:
                if each["method"] == event and wanted.items() <= each["params"].items():
                    self._events.remove(each)
                    return each["params"]
            self._events.append(self._read())

    def open(self, file: pathlib.Path) -> None:
        self.call("Page.navigate", url=file.as_uri())
        self.wait("Page.loadEventFired")

    def run(self, script: str) -> typing.Any:
        """The value of an expression of the page, or of its promise."""
        told = self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in told:
            raise RuntimeError(f"{script}: {told['exceptionDetails']}")
        return told["result"].get("value")

    def press(self, *keys: str, modifiers: int = 0) -> None:
        self.pressed += len(keys)
        for key in keys:
            text = {"Enter": "\r"}.get(key, key if len(key) == 1 else "") if not modifiers & CONTROL else ""
            for kind in ("keyDown", "keyUp"):
                extra = {"text": text} if text and kind == "keyDown" else {}
                self.call("Input.dispatchKeyEvent", type=kind, key=key, modifiers=modifiers,
                          windowsVirtualKeyCode=VIRTUAL_KEYS.get(key, 0), **extra)

    def click(self, x: float, y: float, *, to: float | None = None, count: int = 1) -> None:
        """With `to` the mouse is held from one place to the other."""
        for number in range(1, count + 1):
            for kind, place in (("mousePressed", x), ("mouseMoved", to or x), ("mouseReleased", to or x)):
                self.call("Input.dispatchMouseEvent", type=kind, x=place, y=y, button="left", buttons=1, clickCount=number)

    def download(self, button: str = "") -> bytes:
        """What the click on a button brings; without one, what is under way."""
        if button:
            self.run(f"document.querySelector({json.dumps(button)}).click()")
        name = self.wait("Browser.downloadWillBegin")["suggestedFilename"]
        self.wait("Browser.downloadProgress", state="completed")
        file = self.downloads / name
        data = file.read_bytes()
        file.unlink()
        time.sleep(0.11)  # of more than ten in a second Chromium drops the rest without a word
        return data

    def look(self, width: int, scheme: str) -> None:
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self) -> bytes:
        return base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"])

    def complaints(self) -> list[dict]:
        """What the page has written to the console."""
        self.call("Runtime.evaluate", expression="0")
        return [each for each in self._events if each["method"] in COMPLAINTS]
