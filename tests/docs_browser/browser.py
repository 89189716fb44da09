"""A headless browser, driven over the WebDriver protocol."""
import json
import os
import subprocess
import tempfile
import urllib.request

DRIVER = 'chromedriver'
ELEMENT = 'element-6066-11e4-a52e-4f735466cecf'


class Browser:
    """Usable in `with`, which ends the browser."""

    def __init__(self):
        self.profile = tempfile.TemporaryDirectory()
        self.driver = subprocess.Popen([DRIVER, '--port=0'], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                       stdin=subprocess.DEVNULL, text=True, env=dict(os.environ, HOME=self.profile.name))
        self.address = f'http://127.0.0.1:{self.port()}/session'
        arguments = ['--headless=new', '--no-sandbox', '--disable-gpu', f'--user-data-dir={self.profile.name}/profile']
        started = self.ask('POST', '', {'capabilities': {'alwaysMatch': {
            'browserName': 'chrome', 'goog:chromeOptions': {'args': arguments},
            'goog:loggingPrefs': {'browser': 'ALL'}}}})
        self.address += f'/{started["sessionId"]}'

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.ask('DELETE', '')
        finally:
            self.driver.terminate()
            self.driver.wait()
            self.driver.stdout.close()
            self.profile.cleanup()

    def port(self):
        for line in self.driver.stdout:
            if 'on port' in line and line.rstrip().endswith('.') and not line.startswith('Starting'):
                return int(line.rstrip().rstrip('.').split()[-1])
        raise RuntimeError('the driver of the browser did not start')

    def ask(self, method, path, body=None):
        data = None if method != 'POST' else json.dumps(body or {}).encode()
        request = urllib.request.Request(self.address + path, data, {'Content-Type': 'application/json'}, method=method)
        # A proxy of the environment has nothing to do with this machine's own ports.
        with urllib.request.build_opener(urllib.request.ProxyHandler({})).open(request, timeout=60) as answer:
            return json.load(answer)['value']

    def open(self, url):
        self.ask('POST', '/url', {'url': url})

    @property
    def url(self):
        return self.ask('GET', '/url')

    def run(self, code, *arguments):
        """What a script returns."""
        return self.ask('POST', '/execute/sync', {'script': code, 'args': list(arguments)})

    def type(self, keys, selector='body'):
        element = self.ask('POST', '/element', {'using': 'css selector', 'value': selector})[ELEMENT]
        self.ask('POST', f'/element/{element}/value', {'text': keys})

    def resize(self, width, height):
        """The window's content; narrower than a window may be, so the device is a phone's."""
        self.ask('POST', '/goog/cdp/execute', {'cmd': 'Emulation.setDeviceMetricsOverride', 'params': {
            'width': width, 'height': height, 'deviceScaleFactor': 1, 'mobile': width < 600}})

    def prefer(self, scheme):
        """Light or dark."""
        self.ask('POST', '/goog/cdp/execute', {'cmd': 'Emulation.setEmulatedMedia', 'params': {
            'features': [{'name': 'prefers-color-scheme', 'value': scheme}]}})

    def complaints(self):
        """What the browser's console has said since the last call."""
        return [entry['message'] for entry in self.ask('POST', '/se/log', {'type': 'browser'})]
