#!/usr/bin/env python3
"""A small ACS that does what it is told: a list of requests, which it sends when a device comes.

    acs.py [--port PORT] [--sessions N] REQUEST...    serves them to the next device, prints what it answers, and
                                                      ends after N sessions

REQUEST is get=PATH, set=PATH=VALUE[:TYPE], names=PATH, add=OBJECT., delete=OBJECT.N. or reboot.
"""
import argparse
import base64
import gzip
import hashlib
import http.server
import re
import ssl
import threading
import time
import xml.etree.ElementTree as ET
from xml.sax.saxutils import escape

SOAP = "http://schemas.xmlsoap.org/soap/envelope/"
ENVELOPE = (
    '<?xml version="1.0"?><e:Envelope xmlns:e="%s" xmlns:enc="http://schemas.xmlsoap.org/soap/encoding/" '
    'xmlns:xsd="http://www.w3.org/2001/XMLSchema" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" '
    'xmlns:cwmp="urn:dslforum-org:cwmp-%%s">%%s<e:Body>%%s</e:Body></e:Envelope>' % SOAP)


def array(name, kind, items):
    return f'<{name} enc:arrayType="{kind}[{len(items)}]">{"".join(items)}</{name}>'


def call(method, *arguments, **named):
    """A request; its arguments are fragments, or name=value in their order."""
    fields = "".join(f"<{name}>{escape(str(value))}</{name}>" for name, value in named.items())
    return f"<cwmp:{method}>{''.join(arguments)}{fields}</cwmp:{method}>"


def names(*paths):
    return array("ParameterNames", "xsd:string", [f"<string>{escape(path)}</string>" for path in paths])


def get(*paths):
    return call("GetParameterValues", names(*paths))


def typed(value):
    """(value, type) or a text."""
    text, kind = value if isinstance(value, tuple) else (value, "string")
    return f'<Value xsi:type="xsd:{kind}">{escape(text)}</Value>'


def assign(values, key=""):
    structs = [f"<ParameterValueStruct><Name>{name}</Name>{typed(value)}</ParameterValueStruct>"
               for name, value in values.items()]
    return call("SetParameterValues", array("ParameterList", "cwmp:ParameterValueStruct", structs), ParameterKey=key)


def attributes(name, notification=None, access_list=None):
    struct = (f"<SetParameterAttributesStruct><Name>{name}</Name>"
              f"<NotificationChange>{int(notification is not None)}</NotificationChange>"
              f"<Notification>{notification or 0}</Notification>"
              f"<AccessListChange>{int(access_list is not None)}</AccessListChange>"
              + array("AccessList", "xsd:string", [f"<string>{e}</string>" for e in access_list or []])
              + "</SetParameterAttributesStruct>")
    return call("SetParameterAttributes", array("ParameterList", "cwmp:SetParameterAttributesStruct", [struct]))


def download(kind, url, key="fetch", size=0, user="", password="", delay=0, target=""):
    return call("Download", CommandKey=key, FileType=kind, URL=url, Username=user, Password=password, FileSize=size,
                TargetFileName=target, DelaySeconds=delay, SuccessURL="", FailureURL="")


def upload(kind, url, key="send", user="", password="", delay=0):
    return call("Upload", CommandKey=key, FileType=kind, URL=url, Username=user, Password=password, DelaySeconds=delay)


def local(tag):
    return tag.rsplit("}", 1)[-1]


class Message:
    """What a device has sent."""

    def __init__(self, text):
        self.text = text
        envelope = ET.fromstring(text)
        self.id = next((e.text for e in envelope.iter() if local(e.tag) == "ID"), None)
        self.content = envelope.find(f"{{{SOAP}}}Body")[0]
        self.name = local(self.content.tag)
        self.version = envelope.find(f"{{{SOAP}}}Body")[0].tag.split("cwmp-")[-1].split("}")[0]

    def texts(self, name):
        return [e.text or "" for e in self.content.iter() if local(e.tag) == name]

    def values(self):
        pairs = zip(self.texts("Name"), (e for e in self.content.iter() if local(e.tag) == "Value"))
        return {name: value.text or "" for name, value in pairs}

    def types(self):
        kind = "{http://www.w3.org/2001/XMLSchema-instance}type"
        return dict(zip(self.texts("Name"), (e.get(kind) for e in self.content.iter() if local(e.tag) == "Value")))

    def fault(self):
        """(code, {parameter: code}), or None."""
        codes = self.texts("FaultCode")
        if self.name != "Fault":
            return None
        return int(codes[0]), dict(zip(self.texts("ParameterName"), map(int, codes[1:])))


class Session:
    def __init__(self, inform):
        self.inform = inform
        self.events = inform.texts("EventCode")
        self.keys = dict(zip(self.events, inform.texts("CommandKey")))
        self.reports = []  # TransferComplete
        self.answers = []
        self.ended = False


class Acs:
    """Answers Informs, then sends the requests of `script`. A request that is a function is called with the handler
    and answers by itself, so that an ACS can be as wrong as it likes."""

    def __init__(self, port=0, version="1-2", user=None, password=None, scheme="Digest", certificate=None):
        self.version, self.user, self.password, self.scheme = version, user, password, scheme
        self.script, self.sessions, self.messages, self.heads = [], [], [], []
        self.files, self.uploads = {}, {}
        self.on_inform = None  # in place of the answer to an Inform
        self.hold = False
        self.changed = threading.Condition()
        acs = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"
            disable_nagle_algorithm = True

            def do_POST(self):
                acs.post(self)

            def do_GET(self):
                body = acs.files.get(self.path)
                self.answer(404 if body is None else 200, body or b"")

            def do_PUT(self):
                acs.uploads[self.path] = self.body()
                self.answer(201)
                acs.notify()

            def body(self):
                return self.rfile.read(int(self.headers.get("Content-Length") or 0))

            def answer(self, status, body=b"", **headers):
                self.send_response(status)
                for name, value in headers.items():
                    self.send_header(name.replace("_", "-"), value)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", port), Handler)
        self.server.handle_error = lambda *_: None  # a device may break off, or be killed
        self.server.daemon_threads = True
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self.server.socket = context.wrap_socket(self.server.socket, server_side=True)
        self.base = f"{'https' if certificate else 'http'}://127.0.0.1:{self.server.server_port}"
        self.url = self.base + "/acs"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()

    def notify(self):
        with self.changed:
            self.changed.notify_all()

    def wait(self, condition, what, seconds=60):
        deadline = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > deadline:
                raise AssertionError(f"did not happen: {what}; sessions: {[s.events for s in self.sessions]}")
            with self.changed:
                self.changed.wait(0.05)  # not everything is told by this ACS
        return condition()

    def session(self, *events, after=0):
        """The first whole session from number `after` on that reports these events."""
        return self.wait(lambda: next((s for s in self.sessions[after:] if s.ended and set(events) <= set(s.events)), None),
                         f"a session with {events}")

    def envelope(self, body, identity="7", header=""):
        hold = f"<cwmp:HoldRequests e:mustUnderstand=\"1\">1</cwmp:HoldRequests>" if self.hold else ""
        return (ENVELOPE % (self.version, f'<e:Header><cwmp:ID e:mustUnderstand="1">{identity}</cwmp:ID>{hold}{header}'
                            '</e:Header>', body)).encode()

    def is_authorized(self, handler):
        given = handler.headers.get("Authorization", "")
        if self.user is None:
            return True
        if self.scheme == "Basic":
            return given == "Basic " + base64.b64encode(f"{self.user}:{self.password}".encode()).decode()
        fields = dict(re.findall(r'(\w+)="?([^",]+)"?', given))
        md5 = lambda text: hashlib.md5(text.encode()).hexdigest()
        expected = md5(":".join([md5(f"{self.user}:acs:{self.password}"), fields.get("nonce", ""), fields.get("nc", ""),
                                 fields.get("cnonce", ""), "auth", md5(f"POST:{handler.path}")]))
        return given.startswith("Digest") and fields.get("response") == expected

    def post(self, handler):
        body = handler.body()
        if not self.is_authorized(handler):
            challenge = 'Basic realm="acs"' if self.scheme == "Basic" else 'Digest realm="acs", nonce="n0nce", qop="auth"'
            return handler.answer(401, WWW_Authenticate=challenge)
        self.heads.append(dict(handler.headers))
        message = Message(body) if body else None
        if message:
            self.messages.append(message)
        if message and message.name == "Inform":
            self.sessions.append(Session(message))
            if self.on_inform:
                answer, self.on_inform = self.on_inform, None
                answer(handler)
            else:
                handler.answer(200, self.envelope(call("InformResponse", MaxEnvelopes=1), message.id),
                               Set_Cookie="session=1")
            return self.notify()
        session = self.sessions[-1]
        if message and message.name == "TransferComplete":
            session.reports.append(message)
            handler.answer(200, self.envelope(call("TransferCompleteResponse"), message.id))
            return self.notify()
        if message:
            session.answers.append(message)
        if not self.script:
            # Before the answer: whoever waits for the end need not wait for the device to have read it.
            session.ended = True
            handler.answer(204)
        else:
            request = self.script.pop(0)
            if callable(request):
                request(handler)
            else:
                handler.answer(200, self.envelope(request))
        self.notify()


def parsed(words):
    kind, _, rest = words.partition("=")
    if kind == "get":
        return get(rest)
    if kind == "set":
        path, _, value = rest.partition("=")
        text, _, of_type = value.partition(":")
        return assign({path: (text, of_type or "string")}, "acs.py")
    if kind == "names":
        return call("GetParameterNames", ParameterPath=rest, NextLevel=1)
    if kind in ("add", "delete"):
        return call(kind.title() + "Object", ObjectName=rest, ParameterKey="acs.py")
    if kind == "reboot":
        return call("Reboot", CommandKey="acs.py")
    raise SystemExit(f"acs.py: {words}: no such request")


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--port", type=int, default=7547)
    options.add_argument("--sessions", type=int, default=1)
    options.add_argument("requests", nargs="+", metavar="REQUEST")
    given = options.parse_args()
    acs = Acs(given.port)
    acs.script = [parsed(words) for words in given.requests]
    print(f"waiting for a device at {acs.url}", flush=True)
    for number in range(given.sessions):
        acs.wait(lambda: len(acs.sessions) > number and acs.sessions[number].ended, "a session", 3600)
        tell(acs.sessions[number], given.requests if number == 0 else [])


def tell(session, requests):
    print(f"{session.inform.texts('SerialNumber')[0]} reports {', '.join(session.events)}", flush=True)
    for words, answer in zip(requests, session.answers):
        print(words)
        if answer.fault():
            print("   fault", *(f"{text}" for text in answer.texts("FaultString")), sep="\n      ")
        for name, value in answer.values().items():
            print(f"   {name} = {value}")
        if answer.name == "GetParameterNamesResponse":
            print(*("   " + name for name in answer.texts("Name")), sep="\n")
        for number in answer.texts("InstanceNumber"):
            print(f"   instance {number}", flush=True)


if __name__ == "__main__":
    main()
