"""A server on 127.0.0.1 that remembers each connection and what was asked for."""

import socket
import socketserver
import threading

CONTENTS = {
    "xml": '<doc xmlns:xml="http://www.w3.org/XML/1998/namespace" xml:id="part">fetched</doc>',
    "dtd": '<!ENTITY fetched "fetched">',
    "ent": "fetched",
    "txt": "fetched",
    "json": '{"a":"fetched"}',
    "xsl": '<xsl:stylesheet version="1.0" id="part" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
    '<xsl:template match="/" name="t"><out>fetched</out></xsl:template></xsl:stylesheet>',
}


class Handler(socketserver.StreamRequestHandler):
    timeout = 20

    def handle(self) -> None:
        if self.connection.recv(1, socket.MSG_PEEK) == b"\x16":
            return  # the beginning of TLS
        line = self.rfile.readline(4096).decode("latin-1").strip()
        host = ""
        while header := self.rfile.readline(4096).decode("latin-1").strip():
            if header.lower().startswith("host:"):
                host = header.split(":", 1)[1].strip()
        self.server.note(line, host)
        path = line.split(" ")[1] if line.count(" ") == 2 else "/"
        if path.startswith("/redirect/"):
            target = path.removeprefix("/redirect/")
            self.wfile.write(f"HTTP/1.1 302 Found\r\nLocation: {target}\r\nContent-Length: 0\r\n\r\n".encode())
            return
        body = CONTENTS.get(path.rsplit(".", 1)[-1], "").encode()
        status = "200 OK" if body else "404 Not Found"
        self.wfile.write(f"HTTP/1.1 {status}\r\nContent-Length: {len(body)}\r\nConnection: close\r\n\r\n".encode() + body)


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True

    def __init__(self) -> None:
        super().__init__(("127.0.0.1", 0), Handler)
        self.lock = threading.Lock()
        self.connections = 0
        self.requests: list[tuple[str, str]] = []  # path and host
        threading.Thread(target=self.serve_forever, daemon=True).start()

    @property
    def address(self) -> str:
        return f"127.0.0.1:{self.server_address[1]}"

    def verify_request(self, request, client_address) -> bool:
        with self.lock:
            self.connections += 1
        return True

    def handle_error(self, request, client_address) -> None:
        pass  # what is not HTTP has been counted

    def note(self, line: str, host: str) -> None:
        with self.lock:
            self.requests.append((line.split(" ")[1] if line.count(" ") == 2 else line, host))

    def take(self) -> tuple[int, list[tuple[str, str]]]:
        """What came since the last call."""
        with self.lock:
            taken = self.connections, self.requests
            self.connections, self.requests = 0, []
        return taken
