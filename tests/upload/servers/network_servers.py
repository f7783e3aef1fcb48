#!/usr/bin/python3
"""network_servers.py FOLDER: the servers that the tests of the network talk to, all on 127.0.0.1 and on ports that the
system picks. Goes to the background once they listen and FOLDER/ports names them, a line each; ends when FOLDER/stop
appears, when FOLDER goes, and after five minutes. For the system's own Python, which has pyftpdlib. FOLDER/ftp receives what comes by FTP, FOLDER/ca.der is the authority
that signed the good certificate."""

import email.parser
import email.policy
import hashlib
import http.server
import os
import pathlib
import socket
import ssl
import subprocess
import sys
import threading
import time
import urllib.parse

FOLDER = pathlib.Path(sys.argv[1])
PORTS = {}
CHILDREN = []


def described(content_type, body):
    """The fields of a multipart body, as a parser that is not ours reads them: one line each."""
    head = b"Content-Type: " + content_type.encode("latin-1") + b"\r\n\r\n"
    message = email.parser.BytesParser(policy=email.policy.HTTP).parsebytes(head + body)
    lines = [f"parts {len(message.get_payload()) if message.is_multipart() else 0} defects {len(message.defects)}"]
    for part in message.iter_parts() if message.is_multipart() else ():
        payload = part.get_payload(decode=True)
        digest = hashlib.sha1(payload).hexdigest()
        disposition = part.get("Content-Disposition")
        name = disposition.params.get("name") if disposition else None
        lines.append(f"part {part.get('Content-Type')} name={name} file={part.get_filename()} "
                     f"size={len(payload)} sha1={digest}")
    return "\n".join(lines)


class Recorder(http.server.BaseHTTPRequestHandler):
    """Says what it was asked; or misbehaves, by the first word of the path."""

    def log_message(self, *arguments):
        pass

    def setup(self):
        super().setup()
        self.body = b""

    def answer(self, status, text, headers=()):
        data = text.encode("utf-8", "surrogateescape") if isinstance(text, str) else text
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Type", "text/plain")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def do_any(self):
        word, _, rest = self.path.lstrip("/").partition("/")
        if word != "early":
            self.body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        getattr(self, "on_" + word, self.on_echo)(rest)

    do_GET = do_POST = do_any

    def on_echo(self, _):
        lines = [self.requestline] + [f"{name}: {value}" for name, value in self.headers.items()]
        content_type = self.headers.get("Content-Type", "")
        if content_type.startswith("multipart/"):
            lines.append(described(content_type, self.body))
        elif self.body:
            lines.append("body " + self.body.decode("utf-8", "replace"))
        self.answer(200, "\n".join(lines) + "\n", [("Set-Cookie", "seen=1")])

    def on_quiet(self, _):
        self.answer(200, str(len(self.body)))

    def on_status(self, rest):
        self.answer(int(rest), f"<html>page of {rest}</html>")

    def on_early(self, _):
        self.answer(413, "too large")
        self.close_connection = True

    def on_to(self, rest):
        self.answer(302, "", [("Location", urllib.parse.unquote(rest))])

    def on_silent(self, _):
        time.sleep(30)

    def on_slowly(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\nContent-Length: 1000\r\n\r\n")
        self.drip(b"x")

    def on_slowhead(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\nX-Long: ")
        self.drip(b"x")

    def drip(self, piece):
        for _ in range(300):
            self.wfile.write(piece)
            self.wfile.flush()
            time.sleep(0.1)

    def on_half(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\nContent-Length: 100\r\n\r\nonly this")

    def on_longer(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\nContent-Length: 4\r\n\r\nfour and more")

    def on_nothing(self, _):
        pass

    def on_heads(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\n")
        line = b"X-Header: " + b"y" * 1000 + b"\r\n"
        for _ in range(10_000):
            self.wfile.write(line * 10)

    def on_huge(self, _):
        self.wfile.write(b"HTTP/1.0 200 OK\r\n\r\n")
        for _ in range(100):
            self.wfile.write(b"z" * 1_000_000)


class Server(http.server.ThreadingHTTPServer):
    def handle_error(self, *arguments):
        pass  # a client that goes away is what many tests want


def serve(name, context=None):
    server = Server(("127.0.0.1", 0), Recorder)
    if context:
        server.socket = context.wrap_socket(server.socket, server_side=True)
    PORTS[name] = server.server_address[1]
    threading.Thread(target=server.serve_forever, daemon=True).start()


def openssl(*arguments):
    subprocess.run(["openssl", *arguments], cwd=FOLDER, check=True, capture_output=True)


def authority(file):
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", file + ".key", "-out", file + ".pem", "-days",
            "2", "-subj", f"/CN=Glimmerpad test {file}")


def certificates():
    """Two authorities, of which the tests trust the first; what they signed, for "localhost" and for another name; and
    one that signed itself."""
    authority("ca")
    authority("stranger")
    openssl("x509", "-in", "ca.pem", "-outform", "der", "-out", "ca.der")
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "self.key", "-out", "self.pem", "-days", "2",
            "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost")
    for file, name, by in (("good", "localhost", "ca"), ("other", "elsewhere.example", "ca"),
                           ("unknown", "localhost", "stranger")):
        (FOLDER / "names").write_text(f"subjectAltName=DNS:{name}\n")
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-keyout", file + ".key", "-out", file + ".csr", "-subj",
                f"/CN={name}")
        openssl("x509", "-req", "-in", file + ".csr", "-CA", by + ".pem", "-CAkey", by + ".key", "-CAcreateserial",
                "-out", file + ".pem", "-days", "2", "-extfile", "names")
    for file in ("good", "other", "unknown", "self"):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(FOLDER / (file + ".pem"), FOLDER / (file + ".key"))
        serve("https-" + file, context)


def ftp():
    from pyftpdlib.authorizers import DummyAuthorizer
    from pyftpdlib.handlers import FTPHandler
    from pyftpdlib.log import config_logging
    from pyftpdlib.servers import FTPServer
    import logging
    config_logging(level=logging.CRITICAL)
    home = FOLDER / "ftp"
    (home / "up").mkdir(parents=True)
    (home / "full").mkdir()

    class Handler(FTPHandler):
        def ftp_STOR(self, file, mode="w"):
            # A server that takes the bytes and then says that it had no room for them.
            if "/full/" in file:
                self.on_file_received = lambda path: None
                self.refuse = True
            return super().ftp_STOR(file, mode)

        def ftp_PASV(self, line):
            (FOLDER / "ftp-mode").write_text("passive")
            return super().ftp_PASV(line)

        def ftp_PORT(self, line):
            (FOLDER / "ftp-mode").write_text("active")
            return super().ftp_PORT(line)

        def respond(self, resp, logfun=logging.debug):
            if resp.startswith("226") and getattr(self, "refuse", False):
                resp = "452 No room for that."
            super().respond(resp, logfun)

    authorizer = DummyAuthorizer()
    authorizer.add_user("me", "secret", str(home), perm="elradfmw")
    Handler.authorizer = authorizer
    server = FTPServer(("127.0.0.1", 0), Handler)
    PORTS["ftp"] = server.socket.getsockname()[1]
    threading.Thread(target=server.serve_forever, daemon=True).start()


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def proxies():
    for name, more in (("proxy", ""), ("proxy-private", "BasicAuth me pr0xy\n")):
        PORTS[name] = port = free_port()
        file = FOLDER / (name + ".conf")
        file.write_text(f'Port {port}\nListen 127.0.0.1\nTimeout 60\nLogLevel Critical\nLogFile "{FOLDER}/{name}.log"\n'
                        f"MaxClients 20\nAllow 127.0.0.1\n{more}")
        CHILDREN.append(subprocess.Popen(["tinyproxy", "-d", "-c", str(file)], stdout=subprocess.DEVNULL))
        wait_for(port)


def wait_for(port):
    end = time.monotonic() + 20
    while time.monotonic() < end:
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) == 0:
                return
        time.sleep(0.02)
    raise RuntimeError(f"nobody listens on port {port}")


def odd_ones():
    """One that takes connections and never reads; one whose queue is full, so that connecting to it never ends."""
    deaf = socket.socket()
    deaf.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
    deaf.bind(("127.0.0.1", 0))
    deaf.listen(50)
    PORTS["deaf"] = deaf.getsockname()[1]
    full = socket.socket()
    full.bind(("127.0.0.1", 0))
    full.listen(0)
    PORTS["unreachable"] = full.getsockname()[1]
    PORTS["closed"] = free_port()
    waiting = [deaf, full]
    for _ in range(4):
        client = socket.socket()
        client.setblocking(False)
        client.connect_ex(full.getsockname())
        waiting.append(client)
    return waiting


def main():
    kept = odd_ones()
    serve("http")
    certificates()
    ftp()
    proxies()
    (FOLDER / "ports.part").write_text("".join(f"{name} {port}\n" for name, port in PORTS.items()))
    (FOLDER / "ports.part").rename(FOLDER / "ports")
    end = time.monotonic() + 300
    while time.monotonic() < end and FOLDER.is_dir() and not (FOLDER / "stop").exists():
        time.sleep(0.1)
    for child in CHILDREN:
        child.terminate()
    del kept
    os._exit(0)


if __name__ == "__main__":
    child = os.fork()
    if child:
        while not (FOLDER / "ports").exists():
            if os.waitpid(child, os.WNOHANG)[0] == child:
                sys.exit((FOLDER / "errors").read_text())
            time.sleep(0.02)
        sys.exit(0)
    os.setsid()
    silence = os.open(os.devnull, os.O_RDWR)
    errors = os.open(FOLDER / "errors", os.O_WRONLY | os.O_CREAT)
    for stream, to in ((0, silence), (1, silence), (2, errors)):
        os.dup2(to, stream)
    main()
